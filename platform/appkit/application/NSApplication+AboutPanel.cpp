// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication+AboutPanel.h"

#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSImageView.h"
#include "appkit/NSPanel.h"
#include "appkit/NSRunningApplication.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSTextView.h"
#include "foundation/NSBundle.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    // In points. The gaps have room for texts that somebody enlarges.
    constexpr CGFloat kWidth = 284;
    constexpr CGFloat kMargin = 18;
    constexpr CGFloat kIconSide = 64;
    constexpr CGFloat kNameGap = 14;
    constexpr CGFloat kGap = 9;
    constexpr CGFloat kCreditsHeight = 90;

    /// What the panel is to say.
    struct Facts {
        Ref<NSString> name;
        Ref<NSString> version;
        Ref<NSString> copyright;
        Ref<NSAttributedString> credits;
        Ref<NSImage> icon;
    };

    template <class T> Ref<T> option(NSDictionary* options, NSString* key)
    {
        const Ref<NSObject> value = options ? options->objectForKey(key) : Ref<NSObject>();
        return value && value->isKindOfClass(T::cls()) ? cast<T>(value) : Ref<T>();
    }
    /// Answers an option, else what the Info.plist says, else "".
    Ref<NSString> text(NSDictionary* options, NSString* key, NSString* infoKey)
    {
        if (Ref<NSString> given = option<NSString>(options, key))
            return given;
        const Ref<NSObject> value
            = NSBundle::cls().mainBundle()->objectForInfoDictionaryKey(infoKey);
        return value && value->isKindOfClass(NSString::cls()) ? cast<NSString>(value)
                                                              : Ref<NSString>(""_ns);
    }
    Ref<NSString> versionText(NSDictionary* options)
    {
        const Ref<NSString> version
            = text(options, "ApplicationVersion"_ns, "CFBundleShortVersionString"_ns);
        const Ref<NSString> build = text(options, "Version"_ns, "CFBundleVersion"_ns);
        if (version->length() && build->length())
            return NSString::cls().stringWithFormat("Version %@ (%@)"_ns, version, build);
        const Ref<NSString> only = version->length() ? version : build;
        return only->length() ? NSString::cls().stringWithFormat("Version %@"_ns, only) : only;
    }
    Ref<NSAttributedString> creditsFrom(NSDictionary* options)
    {
        if (Ref<NSAttributedString> given = option<NSAttributedString>(options, "Credits"_ns))
            return given;
        Ref<NSString> plain = option<NSString>(options, "Credits"_ns);
        const Ref<NSString> path
            = NSBundle::cls().mainBundle()->pathForResource_ofType("Credits"_ns, "txt"_ns);
        if (!plain && path)
            plain = NSString::cls().stringWithContentsOfFile_encoding_error(
                path.get(), NSUTF8StringEncoding, nullptr);
        if (!plain)
            return nullptr;
        const Ref<NSDictionary> attributes = NSDictionary::cls().dictionaryWithObject_forKey(
            NSFont::cls().systemFontOfSize(11).get(), NSFontAttributeName);
        return alloc<NSAttributedString>()->initWithString_attributes(
            plain.get(), attributes.get());
    }
    Facts factsFrom(NSDictionary* options)
    {
        Facts facts;
        facts.name = text(options, "ApplicationName"_ns, "CFBundleName"_ns);
        if (!option<NSString>(options, "ApplicationName"_ns) && facts.name->length() == 0)
            facts.name = NSRunningApplication::cls().currentApplication()->localizedName();
        facts.version = versionText(options);
        facts.copyright = text(options, "Copyright"_ns, "NSHumanReadableCopyright"_ns);
        facts.credits = creditsFrom(options);
        facts.icon = option<NSImage>(options, "ApplicationIcon"_ns);
        if (!facts.icon)
            facts.icon = NSImage::cls().imageNamed("NSApplicationIcon"_ns);
        return facts;
    }

    Ref<NSTextField> label(NSFont* font)
    {
        Ref<NSTextField> made = NSTextField::cls().labelWithString(""_ns);
        made->setFont(font);
        made->setSelectable(true);
        return made;
    }

    /// The one panel. A text that says nothing is not among its views.
    class AboutPanel {
    public:
        AboutPanel()
            : window_(cast<NSPanel>(alloc<NSPanel>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(0, 0, kWidth, 10), NSTitledWindowMask | NSClosableWindowMask,
                NSBackingStoreBuffered, true)))
            , icon_(cast<NSImageView>(
                  alloc<NSImageView>()->initWithFrame(NSMakeRect(0, 0, kIconSide, kIconSide))))
            , name_(label(NSFont::cls().boldSystemFontOfSize(14).get()))
            , version_(label(NSFont::cls().systemFontOfSize(11).get()))
            , copyright_(label(NSFont::cls().systemFontOfSize(11).get()))
        {
            icon_->setImageScaling(NSImageScaleProportionallyUpOrDown);
            const NSRect room = NSMakeRect(0, 0, kWidth - 2 * kMargin, kCreditsHeight);
            credits_ = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(room));
            creditsText_ = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(room));
            creditsText_->setEditable(false);
            creditsText_->setDrawsBackground(false);
            credits_->setHasVerticalScroller(true);
            credits_->setDrawsBackground(false);
            credits_->setDocumentView(creditsText_.get());
            window_->setReleasedWhenClosed(false);
        }

        void show(const Facts& facts)
        {
            const bool isFirst = !maybe(icon_)->superview();
            if (take(facts) || isFirst)
                layOut();
            if (isFirst)
                window_->center();
            window_->orderFrontRegardless();
            window_->makeKeyWindow();
        }

    private:
        static bool takeText(NSTextField& field, const Ref<NSString>& text)
        {
            if (field.stringValue()->isEqualToString(text.get()))
                return false;
            field.setStringValue(text.get());
            field.sizeToFit();
            return true;
        }
        /// Answers whether anything is different.
        bool take(const Facts& facts)
        {
            icon_->setImage(facts.icon.get());
            bool changed = takeText(*name_, facts.name);
            changed |= takeText(*version_, facts.version);
            changed |= takeText(*copyright_, facts.copyright);
            const Ref<NSAttributedString> credits
                = facts.credits ? facts.credits : make<NSAttributedString>();
            if (creditsText_->textStorage()->isEqualToAttributedString(credits.get()))
                return changed;
            creditsText_->textStorage()->setAttributedString(credits.get());
            return true;
        }

        void layOut()
        {
            CGFloat width = kWidth;
            for (const Ref<NSTextField>& text : { name_, version_, copyright_ })
                width = std::max(width, text->frame().size.width + 2 * kMargin);
            // From the bottom up, which is where views are placed from.
            CGFloat y = kMargin;
            const auto put = [&](NSView& view, CGFloat gap) {
                view.removeFromSuperview();
                if (!isShown(view))
                    return;
                const NSSize size = view.frame().size;
                view.setFrameOrigin({ std::round((width - size.width) / 2), y });
                y += size.height + gap;
            };
            put(*copyright_, kGap);
            put(*credits_, kGap);
            put(*version_, kGap);
            put(*name_, kNameGap);
            put(*icon_, kMargin);
            window_->setContentSize({ width, y });
            // The order in which they are read.
            for (NSView* view : std::initializer_list<NSView*> {
                     icon_.get(), name_.get(), version_.get(), credits_.get(), copyright_.get() }) {
                if (isShown(*view))
                    window_->contentView()->addSubview(view);
            }
        }
        bool isShown(NSView& view) const
        {
            if (&view == credits_.get())
                return creditsText_->textStorage()->length() > 0;
            return &view == icon_.get()
                || static_cast<NSTextField&>(view).stringValue()->length() > 0;
        }

        Ref<NSPanel> window_;
        Ref<NSImageView> icon_;
        Ref<NSTextField> name_;
        Ref<NSTextField> version_;
        Ref<NSTextField> copyright_;
        Ref<NSScrollView> credits_;
        Ref<NSTextView> creditsText_;
    };

}

template <> struct NSApplication::Methods<struct About> {

    static void showWithOptions(NSApplication&, NSDictionary* options)
    {
        static auto* const panel = new AboutPanel; // never destroyed, as all windows
        panel->show(factsFrom(options));
    }
    static void show(NSApplication& self, NSObject*)
    {
        orderFrontStandardAboutPanelWithOptions(self, nullptr);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "orderFrontStandardAboutPanelWithOptions:", imp<showWithOptions> },
            { "orderFrontStandardAboutPanel:", imp<show> },
        });
    }
};
BRINDLE_RECORD(NSApplication, About)

}
