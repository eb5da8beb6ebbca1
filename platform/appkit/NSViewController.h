// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

namespace brindle {

class NSBundle;

/// Owns a view and makes it when it is first asked for; stands behind it in the responder chain.
///
/// A subclass overrides `loadView` to make the view with `setView:`, or `viewDidLoad` to fill the plain one that is made
/// otherwise. The four hooks of appearing are sent when the view comes into a window and leaves it. A parent owns its
/// children; their views are put where the host wants them.
/// Thread: main.
class NSViewController : public NSResponder {
    BRINDLE_OBJECT(NSViewController, NSResponder)

public:
    /// - name, bundle: kept for the host, who may load its view from there.
    Ref<NSViewController> initWithNibName_bundle(NSString* name, NSBundle* bundle)
    {
        return send<"initWithNibName:bundle:", Ref<NSViewController>>(name, bundle);
    }
    Ref<NSString> nibName() const { return send<"nibName", Ref<NSString>>(); }
    Ref<NSBundle> nibBundle() const { return send<"nibBundle", Ref<NSBundle>>(); }

    /// Answers the view, which is made by `loadView` when there is none yet.
    /// - Raises: `NSInternalInconsistencyException` when `loadView` has set none.
    Ref<NSView> view() { return send<"view", Ref<NSView>>(); }
    /// - Nil: the next question makes a new one. - Raises: `NSInvalidArgumentException` for what is no view.
    void setView(NSView* view) { send<"setView:">(view); }
    bool isViewLoaded() const { return send<"isViewLoaded", bool>(); }
    /// Hook: sets the view; an empty one here.
    void loadView() { send<"loadView">(); }
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    Ref<NSObject> representedObject() const { return send<"representedObject", Ref<NSObject>>(); }
    void setRepresentedObject(NSObject* object) { send<"setRepresentedObject:">(object); }
    /// The size that the host would like the view to have; its size after loading at first.
    NSSize preferredContentSize() const { return send<"preferredContentSize", NSSize>(); }
    void setPreferredContentSize(NSSize size) { send<"setPreferredContentSize:">(size); }

    // ---- hooks, empty here

    void viewDidLoad() { send<"viewDidLoad">(); }
    void viewWillAppear() { send<"viewWillAppear">(); }
    void viewDidAppear() { send<"viewDidAppear">(); }
    void viewWillDisappear() { send<"viewWillDisappear">(); }
    void viewDidDisappear() { send<"viewDidDisappear">(); }

    // ---- parents and children

    Ref<NSViewController> parentViewController() const
    {
        return send<"parentViewController", Ref<NSViewController>>();
    }
    Ref<NSArray> childViewControllers() const
    {
        return send<"childViewControllers", Ref<NSArray>>();
    }
    /// Takes a controller over from whatever parent it has. - Nil: ignored.
    /// - Raises: `NSInvalidArgumentException` for the receiver and for one of its parents.
    void addChildViewController(NSViewController* child) { send<"addChildViewController:">(child); }
    /// - Raises: `NSRangeException` past the end.
    void insertChildViewController_atIndex(NSViewController* child, NSInteger index)
    {
        send<"insertChildViewController:atIndex:">(child, index);
    }
    void removeChildViewControllerAtIndex(NSInteger index)
    {
        send<"removeChildViewControllerAtIndex:">(index);
    }
    void removeFromParentViewController() { send<"removeFromParentViewController">(); }

protected:
    /// Children that live on forget the controller.
    BRINDLE_EXPORT ~NSViewController();

private:
    friend struct ControllerAccess;

    Ref<NSView> view_;
    Ref<NSString> title_;
    Ref<NSObject> represented_;
    Ref<NSString> nibName_;
    Ref<NSObject> nibBundle_; // NSBundle
    std::vector<Ref<NSViewController>> children_;
    NSViewController* parent_ = nullptr; // bare: the parent owns this controller
    NSSize preferredSize_ {};
    bool loading_ = false;
    bool appeared_ = false;
};

/// What the files of this folder do with controllers beside sending messages.
struct ControllerAccess {
    /// Told of a view that has a controller before and after its window changes.
    static void willMove(NSView& view, NSWindow* window);
    static void didMove(NSView& view);
};

}
