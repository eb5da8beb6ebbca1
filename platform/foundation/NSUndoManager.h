// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "StringConstant.h"
#include "runtime/Block.h"

namespace brindle {

class NSArray;

inline constexpr StringConstant<"NSUndoManagerCheckpointNotification">
    NSUndoManagerCheckpointNotification;
inline constexpr StringConstant<"NSUndoManagerDidOpenUndoGroupNotification">
    NSUndoManagerDidOpenUndoGroupNotification;
inline constexpr StringConstant<"NSUndoManagerWillCloseUndoGroupNotification">
    NSUndoManagerWillCloseUndoGroupNotification;
inline constexpr StringConstant<"NSUndoManagerDidCloseUndoGroupNotification">
    NSUndoManagerDidCloseUndoGroupNotification;
inline constexpr StringConstant<"NSUndoManagerWillUndoChangeNotification">
    NSUndoManagerWillUndoChangeNotification;
inline constexpr StringConstant<"NSUndoManagerDidUndoChangeNotification">
    NSUndoManagerDidUndoChangeNotification;
inline constexpr StringConstant<"NSUndoManagerWillRedoChangeNotification">
    NSUndoManagerWillRedoChangeNotification;
inline constexpr StringConstant<"NSUndoManagerDidRedoChangeNotification">
    NSUndoManagerDidRedoChangeNotification;

/// Remembers how to take changes back, and how to make them again.
///
/// Whoever changes something registers what undoes it. Registrations lie in groups, and a group is undone as a whole,
/// the last registration first. What is registered meanwhile is what redoes it. A change that is registered
/// otherwise ends the possibility to redo.
///
/// Unless `groupsByEvent` is off, a registration outside every group opens one that closes at the end of the run loop's
/// turn, or when something is undone. Targets are not kept: what would be sent to one that has gone is left out, and
/// a group of such alone is forgotten.
/// Thread: one at a time.
class NSUndoManager : public NSObject {
    BRINDLE_OBJECT(NSUndoManager, NSObject)

public:
    // ---- registering

    /// Registers a message with one argument, which is kept.
    /// - Raises: `NSInternalInconsistencyException` outside every group when events do not make them;
    ///   `NSInvalidArgumentException` for a nil target or selector.
    void registerUndoWithTarget_selector_object(NSObject* target, SEL selector, NSObject* object)
    {
        send<"registerUndoWithTarget:selector:object:">(target, selector, object);
    }
    /// Registers a closure, which receives the target.
    void registerUndoWithTarget_handler(
        NSObject* target, const Block<void(NSObject* target)>& handler)
    {
        send<"registerUndoWithTarget:handler:">(target, handler.get());
    }
    /// Answers an object that registers the next message it receives, with all its arguments, instead of handling it:
    /// `manager->prepareWithInvocationTarget(view)->send<"setFrame:">(view->frame())`.
    Ref<NSObject> prepareWithInvocationTarget(NSObject* target)
    {
        return send<"prepareWithInvocationTarget:", Ref<NSObject>>(target);
    }
    bool isUndoRegistrationEnabled() const { return send<"isUndoRegistrationEnabled", bool>(); }
    /// Ignores registrations until `enableUndoRegistration` was sent as often.
    void disableUndoRegistration() { send<"disableUndoRegistration">(); }
    /// - Raises: `NSInternalInconsistencyException` when it is not disabled.
    void enableUndoRegistration() { send<"enableUndoRegistration">(); }

    // ---- groups

    /// Opens a group in the open one, or a new one.
    void beginUndoGrouping() { send<"beginUndoGrouping">(); }
    /// - Raises: `NSInternalInconsistencyException` when no group is open.
    void endUndoGrouping() { send<"endUndoGrouping">(); }
    /// Answers how many groups are open in one another.
    NSInteger groupingLevel() const { return send<"groupingLevel", NSInteger>(); }
    bool groupsByEvent() const { return send<"groupsByEvent", bool>(); }
    void setGroupsByEvent(bool groups) { send<"setGroupsByEvent:">(groups); }
    /// The modes of the run loop whose turns close groups; the default mode at first.
    Ref<NSArray> runLoopModes() const { return send<"runLoopModes", Ref<NSArray>>(); }
    void setRunLoopModes(NSArray* modes) { send<"setRunLoopModes:">(modes); }
    /// How many groups can be undone; the oldest are forgotten. 0 means: all.
    NSUInteger levelsOfUndo() const { return send<"levelsOfUndo", NSUInteger>(); }
    void setLevelsOfUndo(NSUInteger levels) { send<"setLevelsOfUndo:">(levels); }

    // ---- undo and redo

    bool canUndo() const { return send<"canUndo", bool>(); }
    bool canRedo() const { return send<"canRedo", bool>(); }
    bool isUndoing() const { return send<"isUndoing", bool>(); }
    bool isRedoing() const { return send<"isRedoing", bool>(); }
    /// Closes the open group and undoes it, or else the last one.
    /// - Raises: `NSInternalInconsistencyException` while groups are open in one another, or while it undoes or redoes.
    void undo() { send<"undo">(); }
    /// Undoes the last closed group.
    void undoNestedGroup() { send<"undoNestedGroup">(); }
    /// Makes what was undone last again; nothing happens when there is none. - Raises: as `undo`.
    void redo() { send<"redo">(); }
    void removeAllActions() { send<"removeAllActions">(); }
    /// Forgets what would be sent to a target.
    void removeAllActionsWithTarget(NSObject* target)
    {
        send<"removeAllActionsWithTarget:">(target);
    }

    // ---- names for menus

    /// Names the open group, or else the last one.
    void setActionName(NSString* name) { send<"setActionName:">(name); }
    /// Answers "" for a group without a name and where there is nothing to undo.
    Ref<NSString> undoActionName() const { return send<"undoActionName", Ref<NSString>>(); }
    Ref<NSString> redoActionName() const { return send<"redoActionName", Ref<NSString>>(); }
    /// Answers "Undo Typing", or "Undo" alone without a name.
    Ref<NSString> undoMenuItemTitle() const { return send<"undoMenuItemTitle", Ref<NSString>>(); }
    Ref<NSString> redoMenuItemTitle() const { return send<"redoMenuItemTitle", Ref<NSString>>(); }
    Ref<NSString> undoMenuTitleForUndoActionName(NSString* name) const
    {
        return send<"undoMenuTitleForUndoActionName:", Ref<NSString>>(name);
    }
    Ref<NSString> redoMenuTitleForUndoActionName(NSString* name) const
    {
        return send<"redoMenuTitleForUndoActionName:", Ref<NSString>>(name);
    }

private:
    struct History;
    std::shared_ptr<History> history_;
};

}
