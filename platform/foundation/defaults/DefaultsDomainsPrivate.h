// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "DefaultsStorePrivate.h"
#include "foundation/desktop/ColorScheme.h"

namespace brindle {

class NSUserDefaults;

}

namespace brindle::defaults {

/// A domain that no file keeps.
struct VolatileDomain {
    Ref<NSString> name;
    Ref<NSDictionary> values;
};

/// What all defaults of the process share beside the stores.
class Domains {
public:
    static Domains& shared();

    /// Looks for what changed on the disk when the last look is a second old.
    void look();
    /// Makes everything as at the start of the process.
    void reset();
    /// Takes what the desktop said while the program ran, which counts more than its files.
    /// - Returns: whether another value is found now.
    bool setColorScheme(desktop::ColorScheme scheme);

    static constexpr std::ptrdiff_t kSearched
        = 3; // the first of the volatile domains, always there

    // To be used under `memory` only; all dictionaries are immutable.
    NSDictionary* arguments() const { return volatile_[0].values.get(); }
    NSDictionary* language() const { return volatile_[1].values.get(); }
    NSDictionary* registration() const { return volatile_[2].values.get(); }
    void setRegistration(Ref<NSDictionary> values) { volatile_[2].values = std::move(values); }
    NSDictionary* desktop() const { return desktop_.get(); }
    std::vector<VolatileDomain>& volatileDomains() { return volatile_; }
    VolatileDomain* volatileDomain(NSString* name);

private:
    Domains() { reset(); }
    /// Answers "AppleInterfaceStyle" = "Dark" or nothing.
    Ref<NSDictionary> desktopNow() const;

    std::atomic<std::int64_t> nextLook_ { 0 };
    std::atomic<desktop::ColorScheme> scheme_ { desktop::ColorScheme::noPreference };
    std::vector<VolatileDomain> volatile_;
    Ref<NSDictionary> desktop_;
};

/// Tells the observers of an object that values changed.
void postChange(NSUserDefaults& defaults);
/// Answers the application's own name, which is that of its domain.
std::string applicationName();
/// Answers the values of a command line.
/// - Shape: every argument `-Key` before one that does not begin with "-", or is a number; a value that reads as a
///   property list in braces, parentheses or angle brackets is one, any other is a string.
Ref<NSDictionary> valuesOfArguments(const std::vector<std::string>& arguments);

}
