// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>

namespace brindle {

/// Has several served of whom each may raise: all have their turn, and then the first that was raised goes on.
class AllServed {
public:
    /// Answers false when the body raised.
    template <class Body> bool serve(Body&& body)
    {
        try {
            body();
            return true;
        } catch (...) {
            if (!raised_)
                raised_ = std::current_exception();
            return false;
        }
    }
    /// Raises what was raised. Called once, last.
    void end() const
    {
        if (raised_)
            std::rethrow_exception(raised_);
    }

private:
    std::exception_ptr raised_;
};

}
