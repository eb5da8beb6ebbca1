// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "foundation/NSUserDefaults.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    bool isName(NSString* name) { return maybe(name)->length() > 0; }
    Ref<NSString> keyFor(NSString* name)
    {
        return "NSWindow Frame "_ns->stringByAppendingString(name);
    }

    /// Reads the numbers at the beginning of a text; none when there are fewer than four or one is out of all bounds.
    std::optional<NSRect> frameIn(const std::string& text)
    {
        constexpr double kFar = 1e6;
        std::array<double, 4> numbers {};
        const char* at = text.data();
        const char* const end = at + text.size();
        for (double& number : numbers) {
            while (at != end && *at == ' ')
                ++at;
            const std::from_chars_result read = std::from_chars(at, end, number);
            if (read.ec != std::errc() || !(std::abs(number) <= kFar))
                return std::nullopt;
            at = read.ptr;
        }
        if (numbers[2] < 0 || numbers[3] < 0)
            return std::nullopt;
        return NSMakeRect(numbers[0], numbers[1], numbers[2], numbers[3]);
    }
    void append(std::string& text, NSRect rect)
    {
        for (const double number :
            { rect.origin.x, rect.origin.y, rect.size.width, rect.size.height }) {
            std::array<char, 32> digits {};
            const std::to_chars_result written
                = std::to_chars(digits.data(), digits.data() + digits.size(), number);
            text.append(digits.data(), written.ptr);
            text += ' ';
        }
    }

}

void WindowAccess::autosaveFrame(NSWindow& window)
{
    const WindowState& s = state(window);
    if (s.autosaveName && !s.fullScreen)
        window.saveFrameUsingName(s.autosaveName.get());
}

template <> struct NSWindow::Methods<struct Saving> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }

    static Ref<NSString> savedFrame(NSWindow& self)
    {
        std::string text;
        append(text, self.frame());
        const display::Screen* screen = ScreenAccess::screenFor(self.frame());
        append(text, screen ? screen->visibleFrame : NSRect {});
        return NSString::cls().stringWithUTF8String(text.c_str());
    }
    static void applySaved(NSWindow& self, NSString* text, bool force)
    {
        const std::optional<NSRect> saved = frameIn(utf8Of(text));
        if (!saved)
            return;
        NSRect frame = *saved;
        if (force || (self.styleMask() & NSResizableWindowMask)) {
            frame.size = WindowAccess::limited(self, frame.size);
        } else { // the top left corner is what people remember
            const CGFloat top = NSMaxY(frame);
            frame.size = self.frame().size;
            frame.origin.y = top - frame.size.height;
        }
        self.setFrame_display(frame, true);
    }
    static void setFromString(NSWindow& self, NSString* text) { applySaved(self, text, false); }

    static void save(NSWindow& self, NSString* name)
    {
        if (isName(name))
            defaults()->setObject_forKey(self.stringWithSavedFrame().get(), keyFor(name).get());
    }
    static bool setUsing(NSWindow& self, NSString* name, bool force)
    {
        const Ref<NSString> saved
            = isName(name) ? defaults()->stringForKey(keyFor(name).get()) : Ref<NSString>();
        if (!saved)
            return false;
        applySaved(self, saved.get(), force);
        return true;
    }
    static bool setUsingName(NSWindow& self, NSString* name)
    {
        return self.setFrameUsingName_force(name, false);
    }
    static void remove(Class&, NSString* name)
    {
        if (isName(name))
            defaults()->removeObjectForKey(keyFor(name).get());
    }

    static bool setAutosaveName(NSWindow& self, NSString* name)
    {
        if (!isName(name)) {
            of(self).autosaveName = nullptr;
            return true;
        }
        for (const NSWindow* other : ApplicationAccess::state().windows) {
            if (other != &self
                && maybe(WindowAccess::state(*other).autosaveName)->isEqualToString(name))
                return false;
        }
        const Ref<NSString> kept = cast<NSString>(name->copy());
        self.setFrameUsingName(kept.get());
        of(self).autosaveName = kept;
        return true;
    }
    static Ref<NSString> autosaveName(NSWindow& self)
    {
        return of(self).autosaveName ? of(self).autosaveName : Ref<NSString>(""_ns);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "removeFrameUsingName:", imp<remove> } });
        t.methods({
            { "stringWithSavedFrame", imp<savedFrame> },
            { "setFrameFromString:", imp<setFromString> },
            { "saveFrameUsingName:", imp<save> },
            { "setFrameUsingName:", imp<setUsingName> },
            { "setFrameUsingName:force:", imp<setUsing> },
            { "setFrameAutosaveName:", imp<setAutosaveName> },
            { "frameAutosaveName", imp<autosaveName> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Saving)

}
