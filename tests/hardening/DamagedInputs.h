// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/Figures.h"

namespace brindle::test {

/// Tests of inputs that were damaged on purpose: each may take half a second and 64 MB.
class DamagedInputs : public testing::Test {
protected:
    /// - what: the inputs, in the table of figures. - read: reads one and looks at the outcome.
    DamagedInputs(std::string what, void (*read)(const std::string&))
        : what_(std::move(what))
        , read_(read)
    {
    }
    void expect(const std::string& bytes)
    {
        cost_.of([&] { read_(bytes); });
    }
    /// - how: they were damaged.
    void publish(const char* how) const { cost_.publish(what_ + ": " + how, 500, 64); }

private:
    std::string what_;
    void (*read_)(const std::string&);
    Cost cost_;
};

}
