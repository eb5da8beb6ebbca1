// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>

#include "XcbPrivate.h"

namespace brindle::display {

/// The atoms we use, in the order of their names in Atoms.cpp.
enum class Atom : std::size_t {
    utf8String,
    wmProtocols,
    wmDeleteWindow,
    wmTakeFocus,
    wmState,
    wmChangeState,
    netWmPing,
    netWmName,
    netWmIconName,
    netWmPid,
    netWmWindowType,
    netWmWindowTypeNormal,
    netWmWindowTypeUtility,
    netWmWindowTypeDialog,
    netWmWindowTypeDock,
    netWmWindowTypePopupMenu,
    netWmWindowTypeTooltip,
    netWmState,
    netWmStateAbove,
    netWmStateModal,
    netWmStateHidden,
    netWmStateFullScreen,
    netWmStateMaximizedVertically,
    netWmStateMaximizedHorizontally,
    netWmStateSkipTaskbar,
    netWmStateSkipPager,
    netWmDesktop,
    netWmWindowOpacity,
    netWmStrut,
    netWmStrutPartial,
    netWmMoveResize,
    netActiveWindow,
    netRestackWindow,
    netSupported,
    netSupportingWmCheck,
    netWorkArea,
    netCurrentDesktop,
    netClientList,
    brindleScreenEdge,
    motifWmHints,
    manager,
    settings,
    // Of the first screen; servers have no second one any more.
    settingsProgram,
    netWmCompositor,
    count,
};

/// The numbers the server gives to names. All are asked for at once; the answers are taken when they have come.
class Atoms {
public:
    /// Sends the questions, without waiting.
    void ask(xcb_connection_t* connection);
    /// Takes the answers.
    void receive(xcb_connection_t* connection);

    xcb_atom_t operator[](Atom atom) const { return values_[static_cast<std::size_t>(atom)]; }

private:
    static constexpr std::size_t kCount = static_cast<std::size_t>(Atom::count);
    std::array<xcb_intern_atom_cookie_t, kCount> cookies_ {};
    std::array<xcb_atom_t, kCount> values_ {};
};

}
