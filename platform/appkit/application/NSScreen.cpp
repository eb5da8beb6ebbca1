// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScreen.h"

#include <algorithm>

#include "NSApplicationPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

const std::vector<display::Screen>& ScreenAccess::all()
{
    ApplicationState& app = ApplicationAccess::state();
    return app.screenOverride ? *app.screenOverride : ApplicationAccess::display().screens();
}

Ref<NSScreen> ScreenAccess::make(const display::Screen& screen)
{
    Ref<NSScreen> made = brindle::make<NSScreen>();
    made->frame_ = screen.frame;
    made->visibleFrame_ = screen.visibleFrame;
    made->scale_ = screen.scale;
    made->name_ = stringFrom(std::string_view(screen.name));
    return made;
}

display::Screen ScreenAccess::describe(NSScreen& screen)
{
    return { screen.frame_, screen.visibleFrame_, screen.scale_, utf8Of(screen.name_.get()),
        false };
}

const display::Screen* ScreenAccess::screenFor(NSRect rect)
{
    const std::vector<display::Screen>& screens = all();
    const display::Screen* best = screens.empty() ? nullptr : &screens.front();
    double most = 0;
    for (const display::Screen& screen : screens) {
        const NSRect shown = NSIntersectionRect(screen.frame, rect);
        const double area = shown.size.width * shown.size.height;
        if (area > most) {
            most = area;
            best = &screen;
        }
    }
    return best;
}

template <> struct NSScreen::Methods<struct Values> {

    static Ref<NSScreen> initWithFrame(NSScreen& self, NSRect frame, NSRect visible, CGFloat scale)
    {
        if (!super<NSScreen, "init", Ref<NSObject>>(self))
            return nullptr;
        self.frame_ = frame;
        self.visibleFrame_ = visible;
        self.scale_ = scale > 0 ? scale : 1;
        self.name_ = ""_ns;
        return &self;
    }
    static NSRect frame(NSScreen& self) { return self.frame_; }
    static NSRect visibleFrame(NSScreen& self) { return self.visibleFrame_; }
    static CGFloat scale(NSScreen& self) { return self.scale_; }
    static Ref<NSString> name(NSScreen& self) { return self.name_; }

    // Two descriptions of one screen are equal.
    static bool isEqual(NSScreen& self, NSObject* other)
    {
        if (!other || !other->isKindOfClass(NSScreen::cls()))
            return false;
        const auto& screen = static_cast<NSScreen&>(*other);
        return screen.frame_ == self.frame_ && screen.visibleFrame_ == self.visibleFrame_
            && screen.scale_ == self.scale_;
    }
    static std::uint64_t hash(NSScreen& self)
    {
        return std::hash<double> {}(self.frame_.size.width)
            ^ std::hash<double> {}(self.frame_.origin.x) << 1;
    }

    static Ref<NSArray> screens(Class&)
    {
        std::vector<Ref<NSObject>> found;
        for (const display::Screen& screen : ScreenAccess::all())
            found.emplace_back(ScreenAccess::make(screen));
        return makeArray(std::move(found));
    }
    static Ref<NSScreen> mainScreen(Class&)
    {
        const ApplicationState& app = ApplicationAccess::state();
        const NSRect place = app.keyWindow ? WindowAccess::state(*app.keyWindow).frame : NSRect {};
        const display::Screen* screen = ScreenAccess::screenFor(place);
        return screen ? ScreenAccess::make(*screen) : Ref<NSScreen>();
    }
    static Ref<NSScreen> deepestScreen(Class&)
    {
        const std::vector<display::Screen>& screens = ScreenAccess::all();
        const auto deepest = std::max_element(screens.begin(), screens.end(),
            [](const auto& a, const auto& b) { return a.scale < b.scale; });
        return deepest == screens.end() ? Ref<NSScreen>() : ScreenAccess::make(*deepest);
    }
    static void setOverride(Class&, NSArray* screens)
    {
        std::vector<display::Screen> fresh;
        for (NSScreen* screen : each<NSScreen>(Ref<NSArray>(screens)))
            fresh.push_back(ScreenAccess::describe(*screen));
        if (!fresh.empty())
            fresh.front().primary = true;
        ApplicationState& app = ApplicationAccess::state();
        app.screenOverride.reset();
        if (screens)
            app.screenOverride = std::move(fresh);
        ApplicationAccess::screensChanged();
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "screens", imp<screens> },
            { "mainScreen", imp<mainScreen> },
            { "deepestScreen", imp<deepestScreen> },
            { "setScreensOverride:", imp<setOverride> },
        });
        t.methods({
            { "initWithFrame:visibleFrame:backingScaleFactor:", imp<initWithFrame> },
            { "frame", imp<frame> },
            { "visibleFrame", imp<visibleFrame> },
            { "backingScaleFactor", imp<scale> },
            { "localizedName", imp<name> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
        });
    }
};
BRINDLE_RECORD(NSScreen, Values)

}
