// SPDX-License-Identifier: Apache-2.0
#include "KeyboardPrivate.h"
#include "LateLibrariesPrivate.h"

#include <cstdlib>
#include <utility>

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include "KeyTablesPrivate.h"

namespace brindle::display {

namespace {

    constexpr xcb_xkb_device_spec_t kDevice = XCB_XKB_ID_USE_CORE_KBD; // whichever that is

    void append(std::u16string& text, char32_t character)
    {
        if (character >= 0x10000) {
            text += static_cast<char16_t>(0xD7C0 + (character >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        } else if (character != 0) {
            text += static_cast<char16_t>(character);
        }
    }

    // xkbcommon writes well-formed UTF-8.
    std::u16string utf16From(const char* bytes)
    {
        std::u16string text;
        for (const char* p = bytes; *p;) {
            const auto lead = static_cast<unsigned char>(*p++);
            const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
            char32_t character = more == 0 ? lead : lead & (0x3FU >> more);
            for (int i = 0; i < more && *p; ++i)
                character = (character << 6) | (static_cast<unsigned char>(*p++) & 0x3F);
            append(text, character);
        }
        return text;
    }

    char32_t controlCharacter(char32_t character)
    {
        if (character == ' ' || character == '@')
            return 0;
        const bool isLetter
            = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= '_');
        return isLetter ? character & 0x1F : character;
    }

    bool startsComposition(std::uint32_t keysym)
    {
        return (keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_greek)
            || keysym == XKB_KEY_Multi_key;
    }

    bool isModifierKey(std::uint32_t keysym)
    {
        return (keysym >= XKB_KEY_Shift_L && keysym <= XKB_KEY_Hyper_R)
            || (keysym >= XKB_KEY_ISO_Lock && keysym <= XKB_KEY_ISO_Last_Group_Lock)
            || keysym == XKB_KEY_Mode_switch || keysym == XKB_KEY_Num_Lock;
    }

    const char* composeLocale()
    {
        for (const char* name : { "LC_ALL", "LC_CTYPE", "LANG" }) {
            const char* value = std::getenv(name);
            if (value && *value)
                return value;
        }
        return "C";
    }

}

void Keyboard::Delete::operator()(xkb_context* p) const { KEYMAP(xkb_context_unref)(p); }
void Keyboard::Delete::operator()(xkb_keymap* p) const { KEYMAP(xkb_keymap_unref)(p); }
void Keyboard::Delete::operator()(xkb_state* p) const { KEYMAP(xkb_state_unref)(p); }
void Keyboard::Delete::operator()(xkb_compose_table* p) const
{
    KEYMAP(xkb_compose_table_unref)(p);
}
void Keyboard::Delete::operator()(xkb_compose_state* p) const
{
    KEYMAP(xkb_compose_state_unref)(p);
}

Keyboard::Keyboard(Connection& connection, CommandKey command)
    : connection_(connection)
    , command_(command)
{
}

Keyboard::~Keyboard() = default;

void Keyboard::ensureKeymap()
{
    selectEvents();
    if (triedKeymap_ || !selected_ || !keymapLibrary())
        return;
    triedKeymap_ = true;
    context_.reset(KEYMAP(xkb_context_new)(XKB_CONTEXT_NO_FLAGS));
    if (context_)
        loadKeymap();
}

void Keyboard::selectEvents()
{
    if (selected_ || !connection_.extensions().xkbEvent)
        return;
    selected_ = true;
    constexpr std::uint16_t kEvents
        = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS
        | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS
        | XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events_details_t details {};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    xcb_connection_t* raw = connection_.raw();
    const auto select = KEYBOARD(xcb_xkb_select_events_aux);
    select(raw, kDevice, kEvents, 0, 0, kMapParts, kMapParts, &details);
    // With it a held key sends presses without releases in between.
    xcb_discard_reply(raw,
        KEYBOARD(xcb_xkb_per_client_flags)(raw, kDevice,
            XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
            XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0)
            .sequence);
}

std::optional<std::uint32_t> Keyboard::follow(bool follows)
{
    if (follows)
        selectEvents();
    if (!selected_ || std::exchange(follows_, follows) == follows)
        return std::nullopt;
    constexpr std::uint16_t kParts
        = XCB_XKB_STATE_PART_MODIFIER_STATE | XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_details_t details {};
    details.affectState = kParts;
    details.stateDetails = follows ? kParts : 0;
    xcb_connection_t* raw = connection_.raw();
    const auto select = KEYBOARD(xcb_xkb_select_events_aux);
    select(raw, kDevice, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &details);
    if (!follows)
        return std::nullopt;
    const auto state = owned(
        KEYBOARD(xcb_xkb_get_state_reply)(raw, KEYBOARD(xcb_xkb_get_state)(raw, kDevice), nullptr));
    return state ? std::optional<std::uint32_t>(state->mods) : std::nullopt;
}

void Keyboard::loadKeymap()
{
    xcb_connection_t* const raw = connection_.raw();
    const std::int32_t device = KEYMAP(xkb_x11_get_core_keyboard_device_id)(raw);
    if (device < 0)
        return;
    Handle<xkb_keymap> keymap(KEYMAP(xkb_x11_keymap_new_from_device)(
        context_.get(), raw, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) {
        ++connection_.counters().malformed;
        return;
    }
    keymap_ = std::move(keymap);
    state_.reset(KEYMAP(xkb_state_new)(keymap_.get()));
    plain_.reset(KEYMAP(xkb_state_new)(keymap_.get()));
    // Num Lock has no fixed place among the server's eight modifiers; Mod2 is where it is on every common keymap.
    const xkb_mod_index_t lock = KEYMAP(xkb_keymap_mod_get_index)(keymap_.get(), "Mod2");
    lockMask_ = lock == XKB_MOD_INVALID ? 0 : 1U << lock;
}

Modifiers Keyboard::flags(std::uint32_t mask) const
{
    const bool controlIsCommand = command_ == CommandKey::control;
    Modifiers flags = 0;
    if (mask & XCB_MOD_MASK_SHIFT)
        flags |= kShift;
    if (mask & XCB_MOD_MASK_LOCK)
        flags |= kCapsLock;
    if (mask & XCB_MOD_MASK_1)
        flags |= kOption;
    if (mask & XCB_MOD_MASK_CONTROL)
        flags |= controlIsCommand ? kCommand : kControl;
    if (mask & XCB_MOD_MASK_4)
        flags |= controlIsCommand ? kControl : kCommand;
    return flags;
}

bool Keyboard::isModifier(std::uint8_t keycode) const
{
    return plain_ && isModifierKey(KEYMAP(xkb_state_key_get_one_sym)(plain_.get(), keycode));
}

std::uint16_t Keyboard::keyCode(std::uint8_t keycode) { return keyCodeOf(keycode); }

void Keyboard::reset()
{
    pressed_.reset();
    if (composeState_)
        KEYMAP(xkb_compose_state_reset)(composeState_.get());
}

std::u16string Keyboard::charactersOf(std::uint32_t keysym, Modifiers flags) const
{
    std::u16string text;
    if (const char16_t special = specialCharacter(keysym))
        return { special };
    const char32_t character = KEYMAP(xkb_keysym_to_utf32)(keysym);
    if (!(flags & kControl)) {
        append(text, character);
        return text;
    }
    const char32_t control = controlCharacter(character);
    if (control == 0 && character != 0)
        text += u'\0';
    append(text, control);
    return text;
}

char32_t Keyboard::latin(std::uint8_t keycode, bool shift) const
{
    const xkb_layout_index_t layouts
        = KEYMAP(xkb_keymap_num_layouts_for_key)(keymap_.get(), keycode);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const xkb_level_index_t levels
            = KEYMAP(xkb_keymap_num_levels_for_key)(keymap_.get(), keycode, layout);
        const xkb_keysym_t* syms = nullptr;
        const int count = KEYMAP(xkb_keymap_key_get_syms_by_level)(
            keymap_.get(), keycode, layout, shift && levels > 1 ? 1 : 0, &syms);
        const char32_t character = count == 1 ? KEYMAP(xkb_keysym_to_utf32)(syms[0]) : 0;
        if (character >= 0x20 && character < 0x7F && !isKeypad(syms[0]))
            return character;
    }
    return americanCharacter(keycode, shift);
}

bool Keyboard::compose(std::uint32_t keysym, std::u16string& text)
{
    if (!composeState_) {
        // The table is large; most people never press a dead key.
        if (triedCompose_ || !startsComposition(keysym))
            return false;
        triedCompose_ = true;
        composeTable_.reset(KEYMAP(xkb_compose_table_new_from_locale)(
            context_.get(), composeLocale(), XKB_COMPOSE_COMPILE_NO_FLAGS));
        if (!composeTable_)
            return false;
        composeState_.reset(
            KEYMAP(xkb_compose_state_new)(composeTable_.get(), XKB_COMPOSE_STATE_NO_FLAGS));
    }
    if (!composeState_)
        return false;
    KEYMAP(xkb_compose_state_feed)(composeState_.get(), keysym);
    switch (KEYMAP(xkb_compose_state_get_status)(composeState_.get())) {
    case XKB_COMPOSE_COMPOSING:
        return true;
    case XKB_COMPOSE_CANCELLED:
        KEYMAP(xkb_compose_state_reset)(composeState_.get());
        return true;
    case XKB_COMPOSE_COMPOSED: {
        char bytes[64] = {};
        KEYMAP(xkb_compose_state_get_utf8)(composeState_.get(), bytes, sizeof bytes);
        text = utf16From(bytes);
        KEYMAP(xkb_compose_state_reset)(composeState_.get());
        return true;
    }
    case XKB_COMPOSE_NOTHING:
        break;
    }
    return false;
}

void Keyboard::translate(Event& event, std::uint8_t keycode, std::uint16_t mask, bool isDown)
{
    ensureKeymap();
    event.keyCode = keyCodeOf(keycode);
    event.modifiers = flags(mask);
    event.repeat = isDown && pressed_[keycode];
    pressed_[keycode] = isDown;
    if (!state_ || !plain_)
        return;

    // The mask of the event itself is used: it belongs to this very key press, whatever came later.
    const std::uint32_t mods = mask & 0xFF;
    const xkb_layout_index_t group = (mask >> 13) & 3;
    const bool shift = mods & XCB_MOD_MASK_SHIFT;
    const auto update = KEYMAP(xkb_state_update_mask);
    update(state_.get(), mods, 0, 0, 0, 0, group);
    update(plain_.get(), mods & (XCB_MOD_MASK_SHIFT | lockMask_), 0, 0, 0, 0, group);
    const xkb_keysym_t plain = KEYMAP(xkb_state_key_get_one_sym)(plain_.get(), keycode);
    event.charactersIgnoringModifiers = charactersOf(plain, 0);
    event.latinCharacter = latin(keycode, shift);
    if (event.charactersIgnoringModifiers.size() == 1)
        event.modifiers |= flagsOfCharacter(event.charactersIgnoringModifiers[0]);
    if (isKeypad(plain))
        event.modifiers |= kKeypad;

    const xkb_keysym_t keysym = KEYMAP(xkb_state_key_get_one_sym)(state_.get(), keycode);
    const bool types = !(event.modifiers & (kCommand | kControl));
    if (isDown && types && !isModifierKey(keysym) && compose(keysym, event.characters))
        return;
    event.characters = charactersOf(keysym, event.modifiers);
    if (event.characters.empty())
        event.characters = event.charactersIgnoringModifiers;
}

bool Keyboard::handle(const xcb_generic_event_t& event, std::uint32_t& mask, std::uint8_t& keycode)
{
    if (!selected_)
        return false;
    switch (event.pad0) { // the kind of the extension's event
    case XCB_XKB_STATE_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        mask = change.mods;
        keycode = change.keycode;
        return true;
    }
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        if (context_) // else it is read, as it is then, with the first key
            loadKeymap();
        return false;
    default:
        return false;
    }
}

}
