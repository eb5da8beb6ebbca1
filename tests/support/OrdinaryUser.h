// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

namespace brindle::test {

/// Lets what may not be read not be read, also where the tests are run by the administrator.
class OrdinaryUser {
public:
    OrdinaryUser()
        : was_(::geteuid())
        , worked_(was_ != 0 || ::seteuid(kNobody) == 0)
    {
    }
    ~OrdinaryUser() { worked_ = ::seteuid(was_) == 0; }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    bool worked() const { return worked_; }

private:
    static constexpr uid_t kNobody = 65534;
    uid_t was_;
    bool worked_;
};

}
