// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSTextField.h"

namespace brindle {

/// The cell of a field for passwords: it draws a bullet for each character as a reader counts them.
class NSSecureTextFieldCell : public NSTextFieldCell {
    BRINDLE_OBJECT(NSSecureTextFieldCell, NSTextFieldCell)

public:
    /// Answers whether bullets are drawn; nothing is drawn otherwise. YES at first.
    bool echosBullets() const { return send<"echosBullets", bool>(); }
    void setEchosBullets(bool echos) { send<"setEchosBullets:">(echos); }

private:
    bool hidesBullets_ = false;
};

/// A field for passwords. Its text cannot be copied, cut or dragged out of it, and words in it are not found.
class NSSecureTextField : public NSTextField {
    BRINDLE_OBJECT(NSSecureTextField, NSTextField)
};

}
