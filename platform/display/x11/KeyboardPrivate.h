// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bitset>
#include <memory>
#include <optional>
#include <string>

#include "ConnectionPrivate.h"
#include "display/Event.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;
struct xkb_compose_table;
struct xkb_compose_state;

namespace brindle::display {

/// The keyboard: keymap, composition, repeats. The server is asked about its keyboard when the first focus or the first key comes,
/// and for the keymap, which takes many answers and libraries of its own, when the first key comes.
class Keyboard {
public:
    Keyboard(Connection& connection, CommandKey command);
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    CommandKey command() const { return command_; }
    /// Says whether changes of modifiers are to be told; elsewhere they would only wake us up.
    /// - Returns: the server's mask of the modifiers that are down; nothing when it was not asked.
    std::optional<std::uint32_t> follow(bool follows);
    /// Answers the flags of the server's modifier mask.
    Modifiers flags(std::uint32_t mask) const;
    /// Answers whether the key does nothing but change modifiers.
    bool isModifier(std::uint8_t keycode) const;
    /// Answers the number that events give to a key of the server.
    static std::uint16_t keyCode(std::uint8_t keycode);
    /// Fills in the key fields of an event.
    /// - isDown: false never composes.
    void translate(Event& event, std::uint8_t keycode, std::uint16_t mask, bool isDown);
    /// Forgets pressed keys and an open composition, because the focus went.
    void reset();
    /// Handles an event of the keyboard extension.
    /// - Returns: whether it was a change of modifiers; `mask` and `keycode` then tell it.
    bool handle(const xcb_generic_event_t& event, std::uint32_t& mask, std::uint8_t& keycode);

private:
    struct Delete {
        void operator()(xkb_context* p) const;
        void operator()(xkb_keymap* p) const;
        void operator()(xkb_state* p) const;
        void operator()(xkb_compose_table* p) const;
        void operator()(xkb_compose_state* p) const;
    };
    template <typename T> using Handle = std::unique_ptr<T, Delete>;

    void ensureKeymap();
    void loadKeymap();
    void selectEvents();
    char32_t latin(std::uint8_t keycode, bool shift) const;
    /// Answers whether a composition has taken the key; `text` is then what it made, empty in the middle.
    bool compose(std::uint32_t keysym, std::u16string& text);
    std::u16string charactersOf(std::uint32_t keysym, Modifiers flags) const;

    Connection& connection_;
    CommandKey command_;
    Handle<xkb_context> context_;
    Handle<xkb_keymap> keymap_;
    Handle<xkb_state> state_; // with all modifiers of the event
    Handle<xkb_state> plain_; // with Shift and the locks only
    Handle<xkb_compose_table> composeTable_;
    Handle<xkb_compose_state> composeState_;
    std::bitset<256> pressed_;
    std::uint32_t lockMask_ = 0; // Num Lock
    bool selected_ = false;
    bool triedKeymap_ = false;
    bool follows_ = false;
    bool triedCompose_ = false;
};

}
