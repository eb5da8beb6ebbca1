// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSViewController.h"

#include <algorithm>

#include "CodingPrivate.h"
#include "FlagScopePrivate.h"
#include "NSViewPrivate.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    /// Hangs on a view and names its controller.
    class ControllerLink : public NSObject {
        BRINDLE_OBJECT(ControllerLink, NSObject)

    public:
        WeakRef<NSViewController> controller_;
    };

    constexpr char kLink = 0;

    Ref<NSViewController> controllerOf(const NSView& view)
    {
        auto* const link = static_cast<ControllerLink*>(objc_borrowAssociatedObject(&view, &kLink));
        return link ? link->controller_.get() : nullptr;
    }
    void connect(NSView& view, NSViewController* controller)
    {
        Ref<ControllerLink> link;
        if (controller) {
            link = make<ControllerLink>();
            link->controller_ = controller;
        }
        objc_setAssociatedObject(&view, &kLink, link.get(), OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }

}

template <> struct ControllerLink::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(ControllerLink, Nothing)

NSViewController::~NSViewController()
{
    for (const Ref<NSViewController>& child : children_)
        child->parent_ = nullptr;
}

void ControllerAccess::willMove(NSView& view, NSWindow* window)
{
    const Ref<NSViewController> controller = controllerOf(view);
    if (!controller || controller->appeared_ == (window != nullptr))
        return;
    if (window)
        controller->viewWillAppear();
    else
        controller->viewWillDisappear();
}

void ControllerAccess::didMove(NSView& view)
{
    const Ref<NSViewController> controller = controllerOf(view);
    const bool shows = ViewAccess::window(view) != nullptr;
    if (!controller || std::exchange(controller->appeared_, shows) == shows)
        return;
    if (shows)
        controller->viewDidAppear();
    else
        controller->viewDidDisappear();
}

// A controller stands between its view and whatever comes next.
template <> struct NSView::Methods<struct Controlled> {

    static void setNextResponder(NSView& self, NSResponder* next)
    {
        const Ref<NSViewController> controller = controllerOf(self);
        if (!controller || next == controller.get())
            return super<NSView, "setNextResponder:">(self, next);
        controller->setNextResponder(next);
        super<NSView, "setNextResponder:">(self, static_cast<NSResponder*>(controller.get()));
    }
    static void table(Builder& t) { t.methods({ { "setNextResponder:", imp<setNextResponder> } }); }
};
BRINDLE_RECORD(NSView, Controlled)

template <> struct NSViewController::Methods<struct Controllers> {

    static Ref<NSViewController> initWithNib(
        NSViewController& self, NSString* name, NSBundle* bundle)
    {
        if (!super<NSViewController, "init", Ref<NSObject>>(self))
            return nullptr;
        self.nibName_ = name ? cast<NSString>(name->copy()) : nullptr;
        self.nibBundle_ = reinterpret_cast<NSObject*>(bundle);
        return &self;
    }
    static Ref<NSObject> init(NSViewController& self)
    {
        return self.initWithNibName_bundle(nullptr, nullptr);
    }
    static void dealloc(NSViewController& self)
    {
        if (self.view_)
            release(self);
    }
    static Ref<NSString> nibName(NSViewController& self) { return self.nibName_; }
    static Ref<NSObject> nibBundle(NSViewController& self) { return self.nibBundle_; }

    // ---- the view

    /// Lets go of the view: what stood behind the controller comes next after the view.
    static void release(NSViewController& self)
    {
        const Ref<NSView> old = std::exchange(self.view_, nullptr);
        const Ref<NSResponder> next = self.nextResponder();
        connect(*old, nullptr);
        old->setNextResponder(next.get());
        self.setNextResponder(nullptr);
    }
    static Ref<NSView> view(NSViewController& self)
    {
        if (self.view_ || self.loading_)
            return self.view_;
        const Ref<NSViewController> alive(&self);
        {
            const FlagScope loading(self.loading_);
            self.loadView();
        }
        if (!self.view_)
            raise("NSInternalInconsistencyException",
                "*** -[NSViewController loadView]: no view was set");
        if (self.preferredSize_ == NSSize {})
            self.preferredSize_ = self.view_->frame().size;
        self.viewDidLoad();
        return self.view_;
    }
    static void setView(NSViewController& self, NSView* lent)
    {
        if (lent && !lent->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException", "*** -[NSViewController setView:]: not a view");
        if (self.view_ == lent)
            return;
        const Ref<NSView> fresh(lent);
        if (self.view_)
            release(self);
        if (!fresh)
            return;
        if (const Ref<NSViewController> other = controllerOf(*fresh))
            release(*other);
        self.view_ = fresh;
        const Ref<NSResponder> next = fresh->nextResponder();
        connect(*fresh, &self);
        self.appeared_ = ViewAccess::window(*fresh) != nullptr;
        fresh->setNextResponder(next.get());
    }
    static bool isLoaded(NSViewController& self) { return self.view_ != nullptr; }
    static void loadView(NSViewController& self) { self.setView(make<NSView>().get()); }
    static void nothing(NSViewController&) { }

    static NSSize preferredSize(NSViewController& self) { return self.preferredSize_; }
    static void setPreferredSize(NSViewController& self, NSSize size)
    {
        self.preferredSize_ = size;
    }

    // ---- parents and children

    static Ref<NSViewController> parent(NSViewController& self) { return self.parent_; }
    static Ref<NSArray> children(NSViewController& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.children_.begin(), self.children_.end()));
    }
    static void insert(NSViewController& self, NSViewController* lent, NSInteger index)
    {
        if (!lent)
            return;
        if (!lent->isKindOfClass(NSViewController::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSViewController insertChildViewController:atIndex:]: not a controller");
        for (NSViewController* above = &self; above; above = above->parent_) {
            if (above == lent)
                raise("NSInvalidArgumentException",
                    "*** -[NSViewController insertChildViewController:atIndex:]: a controller "
                    "cannot be put into itself");
        }
        if (index < 0 || static_cast<std::size_t>(index) > self.children_.size())
            raise("NSRangeException",
                "*** -[NSViewController insertChildViewController:atIndex:]: index out of bounds");
        const Ref<NSViewController> child(lent);
        child->removeFromParentViewController();
        const auto place
            = std::min<std::size_t>(static_cast<std::size_t>(index), self.children_.size());
        self.children_.insert(self.children_.begin() + static_cast<std::ptrdiff_t>(place), child);
        child->parent_ = &self;
    }
    static void add(NSViewController& self, NSViewController* child)
    {
        if (child && child->isKindOfClass(NSViewController::cls()) && child->parent_ == &self)
            child->removeFromParentViewController();
        self.insertChildViewController_atIndex(
            child, static_cast<NSInteger>(self.children_.size()));
    }
    static void removeAt(NSViewController& self, NSInteger index)
    {
        if (index < 0 || static_cast<std::size_t>(index) >= self.children_.size())
            raise("NSRangeException",
                "*** -[NSViewController removeChildViewControllerAtIndex:]: index out of bounds");
        const auto place = self.children_.begin() + static_cast<std::ptrdiff_t>(index);
        const Ref<NSViewController> child = *place;
        child->parent_ = nullptr;
        self.children_.erase(place);
    }
    static void removeFromParent(NSViewController& self)
    {
        const Ref<NSViewController> above(self.parent_);
        if (!above)
            return;
        const auto place = std::find(above->children_.begin(), above->children_.end(), &self);
        above->removeChildViewControllerAtIndex(
            static_cast<NSInteger>(place - above->children_.begin()));
    }

    // ---- archives: the view, where it was made, and the children

    static void encode(NSViewController& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.nibName_.get(), "NSNibName"_ns);
        coder->encodeObject_forKey(self.title_.get(), "NSTitle"_ns);
        coder->encodeObject_forKey(self.view_.get(), "NSView"_ns);
        coder->encodeObject_forKey(children(self).get(), "NSChildViewControllers"_ns);
    }
    static Ref<NSObject> initWithCoder(NSViewController& self, NSCoder* coder)
    {
        if (!self.initWithNibName_bundle(decode<NSString>(coder, "NSNibName"_ns).get(), nullptr))
            return nullptr;
        self.title_ = decode<NSString>(coder, "NSTitle"_ns);
        if (const Ref<NSView> view = decode<NSView>(coder, "NSView"_ns))
            self.setView(view.get());
        for (const auto& child : decodeAll<NSViewController>(coder, "NSChildViewControllers"_ns))
            self.addChildViewController(child.get());
        return &self;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "init", imp<init> },
            { "initWithNibName:bundle:", imp<initWithNib> },
            { "dealloc", imp<dealloc> },
            { "nibName", imp<nibName> },
            { "nibBundle", imp<nibBundle> },
            { "view", imp<view> },
            { "setView:", imp<setView> },
            { "isViewLoaded", imp<isLoaded> },
            { "loadView", imp<loadView> },
            { "viewDidLoad", imp<nothing> },
            { "viewWillAppear", imp<nothing> },
            { "viewDidAppear", imp<nothing> },
            { "viewWillDisappear", imp<nothing> },
            { "viewDidDisappear", imp<nothing> },
            { "preferredContentSize", imp<preferredSize> },
            { "setPreferredContentSize:", imp<setPreferredSize> },
            { "parentViewController", imp<parent> },
            { "childViewControllers", imp<children> },
            { "addChildViewController:", imp<add> },
            { "insertChildViewController:atIndex:", imp<insert> },
            { "removeChildViewControllerAtIndex:", imp<removeAt> },
            { "removeFromParentViewController", imp<removeFromParent> },
        });
        t.properties({
            property<&NSViewController::title_>("title", copied, nonatomic),
            property<&NSViewController::represented_>(
                "representedObject", nonatomic, ivarName("_represented")),
        });
        declareCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSViewController, Controllers)

}
