// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "display/Display.h"

namespace brindle::display {

class HeadlessSurface;

/// What a surface was told, for tests.
struct SurfaceDescription {
    std::string title;
    SurfaceKind kind = SurfaceKind::normal;
    int level = 0;
    double alpha = 1;
    bool opaque = true;
    bool overrideRedirect = false;
    bool acceptsFocus = true;
    bool resizable = true;
    bool inputPassthrough = false;
    bool concealed = false;
    SurfaceId transientFor = 0;
    std::optional<Strut> strut;
};

/// An image that owns its pixels; the words are as in `Pixels`, without gaps between rows.
struct Snapshot {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> words;

    std::uint32_t at(int x, int y) const
    {
        return words[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)
            + static_cast<std::size_t>(x)];
    }
    Pixels pixels() const
    {
        return { words.data(), width, height, static_cast<std::ptrdiff_t>(width) * 4 };
    }
};

/// A key for scripted input. What is left empty is derived: see `pressKey`.
struct ScriptedKey {
    std::u16string characters {};
    std::uint16_t keyCode = 0xFFFF;
    Modifiers modifiers = 0; ///< held down together with it
    std::u16string charactersIgnoringModifiers {};
    char32_t latinCharacter = 0;
    bool repeat = false;
};

/// A display in memory: surfaces are really composed, input is scripted, the clock is turned by hand.
///
/// It behaves like a small, obedient desktop: frames are honoured at once, a click focuses and raises, the surface of
/// a pressed button gets all movements until the release. Nothing depends on time or chance. Script calls
/// queue events; `pollEvent` hands them out.
class BRINDLE_EXPORT HeadlessDisplay : public Display {
public:
    /// - screens: the first is the primary one; none makes the display `none`.
    explicit HeadlessDisplay(std::vector<Screen> screens = { defaultScreen() });
    ~HeadlessDisplay() override;

    /// Answers a screen of 1280 x 800 points at scale 1.
    static Screen defaultScreen();
    /// Answers a primary screen of that size, in points.
    static Screen screenOfSize(double width, double height, double scale = 1);

    // The interface of every display.
    std::string_view name() const override;
    bool isConnected() const override;
    const std::vector<Screen>& screens() const override;
    std::unique_ptr<Surface> createSurface(const SurfaceOptions& options) override;
    bool pollEvent(Event& event) override;
    int fileDescriptor() const override;
    void flush() override;
    double now() const override;
    CGPoint pointerLocation() const override;
    Modifiers modifiers() const override;
    bool grab(Surface& surface) override;
    void ungrab() override;
    void setCursor(Cursor cursor) override;
    void beep() override;
    const Counters& counters() const override;

    // The desktop.

    /// Replaces the screens and sends `screensChanged`. Struts of shown surfaces are taken off their visible frames.
    void setScreens(std::vector<Screen> screens);
    /// Sends `appearanceChanged`.
    void changeAppearance();
    /// Sets the colour behind all surfaces: an opaque word as in `Pixels`.
    void setBackground(std::uint32_t color);
    /// Sets whether grabs are granted; false also takes away the present one, with `grabLost`.
    void setAllowsGrabs(bool allows);
    /// Lets the server die: queued events are lost, `disconnected` follows.
    void disconnect();

    // The clock.

    /// Moves the display's clock.
    void advance(double seconds);
    /// Reads time from another clock from now on; `advance` then has no effect. An empty function ends that.
    void setTimeSource(std::function<double()> source);

    // The user's hands. Places are in screen coordinates, points, y up. The pointer rests off the screen at first.

    void movePointer(CGPoint place);
    void pressButton(int button = 0);
    void releaseButton(int button = 0);
    /// Moves, presses and releases, so many times.
    void click(CGPoint place, int count = 1, int button = 0);
    /// Presses at one place, moves in equal steps, releases at the other.
    void drag(CGPoint from, CGPoint to, int steps = 1, int button = 0);
    /// Scrolls at the pointer's place; as in `Event`.
    void scroll(double x, double y, bool precise = false);

    /// Presses or releases a key on the focused surface. Without characters for the unmodified key the plain ones are used,
    /// and a Latin character is taken from them where there is one.
    void pressKey(const ScriptedKey& key);
    void releaseKey(const ScriptedKey& key);
    /// Presses and releases a key for each character.
    void typeText(std::u16string_view text);
    /// Sets the modifiers that are down; sends `modifiersChanged` to the focused surface.
    void setModifiers(Modifiers modifiers);

    /// What the user does to a surface through the desktop's own means.
    void requestClose(Surface& surface);
    void setFrameByUser(Surface& surface, CGRect frame);
    void setStateByUser(Surface& surface, SurfaceState state);
    /// Moves the focus; null takes it away from all.
    void focus(Surface* surface);

    // What can be seen.

    /// Composes a screen in its device pixels. A screen that does not exist gives an empty image.
    Snapshot snapshot(std::size_t screen = 0) const;
    /// Answers the presented pixels of one surface alone.
    Snapshot snapshot(const Surface& surface) const;
    /// Answers the surfaces that are to be seen, the lowest first.
    std::vector<SurfaceId> stackingOrder() const;
    /// Answers the surface that would get a click there; 0 when none.
    SurfaceId surfaceAt(CGPoint place) const;
    /// Answers the focused surface; 0 when none.
    SurfaceId focusedSurface() const;
    SurfaceId grabbingSurface() const;
    /// Answers what a surface was told last.
    SurfaceDescription describe(const Surface& surface) const;
    /// Answers the pointer's shape where it is.
    Cursor visibleCursor() const;

    /// Saves images for `saveSnapshot`; this folder knows no file format.
    using ImageWriter = std::function<bool(const Pixels& image, const std::string& path)>;
    void setImageWriter(ImageWriter writer);
    /// Composes a screen and hands it to the image writer.
    /// - Returns: the writer's answer; false without one.
    bool saveSnapshot(const std::string& path, std::size_t screen = 0) const;

private:
    friend class HeadlessSurface;

    struct Grabs {
        HeadlessSurface* menu = nullptr; // explicit, for menus
        HeadlessSurface* pressed = nullptr; // implicit, while a button is down
        std::uint32_t buttons = 0;
        bool allowed = true;
    };

    Event& post(Event::Kind kind, const HeadlessSurface* surface);
    void postPointer(Event::Kind kind, const HeadlessSurface* surface, int button = 0);
    void postKey(Event::Kind kind, const ScriptedKey& key);
    HeadlessSurface* topSurfaceAt(CGPoint place) const;
    HeadlessSurface* pointerTarget() const;
    void updatePointerSurface();
    void setFocus(HeadlessSurface* surface);
    void forget(HeadlessSurface& surface);
    void vanish(HeadlessSurface& surface);
    void raise(HeadlessSurface& surface);
    void sortByLevel();
    void updateStruts();
    std::size_t screenIndexFor(CGRect frame) const;
    double scaleFor(CGRect frame) const;

    std::vector<Screen> bareScreens_; // without struts
    std::vector<Screen> screens_;
    std::vector<HeadlessSurface*> surfaces_; // the lowest first
    std::deque<Event> events_;
    std::function<double()> timeSource_;
    ImageWriter imageWriter_;
    Counters counters_;
    Event dropped_; // takes what is posted after the end
    Grabs grabs_;
    HeadlessSurface* focused_ = nullptr;
    HeadlessSurface* underPointer_ = nullptr;
    CGPoint pointer_ { -1, -1 };
    Modifiers modifiers_ = 0;
    Cursor cursor_ = Cursor::arrow;
    std::uint32_t background_ = 0xFF5A6473;
    double now_ = 0;
    bool connected_ = true;
    bool hasDisplay_ = true;
};

}
