// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace brindle {

/// Sets a flag for a scope.
class FlagScope {
public:
    explicit FlagScope(bool& flag)
        : flag_(flag)
    {
        flag_ = true;
    }
    ~FlagScope() { flag_ = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& flag_;
};

}
