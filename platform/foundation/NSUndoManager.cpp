// SPDX-License-Identifier: Apache-2.0
#include "NSUndoManager.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "Each.h"
#include "Exceptions.h"
#include "NSArray.h"
#include "NSNotificationCenter.h"
#include "NSRunLoop.h"
#include "runtime/NSInvocation.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Action {
        WeakRef<NSObject> target;
        Block<void(NSObject*)> perform;
    };

    /// Actions in the order in which they were registered; those of inner groups lie among them.
    struct Group {
        std::vector<Action> actions;
        Ref<NSString> name;
    };

    enum class Doing { changes, undo, redo };

    /// Whether a target of it is left.
    bool doesSomething(const Group& group)
    {
        return std::ranges::any_of(
            group.actions, [](const Action& action) { return !action.target.isGone(); });
    }

    constexpr std::size_t kFirstTidying = 64; // groups

    [[noreturn]] void complain(const char* operation, const char* reason)
    {
        raise("NSInternalInconsistencyException",
            std::string("*** -[NSUndoManager ") + operation + "]: " + reason);
    }

}

struct NSUndoManager::History {
    std::vector<Group> undo;
    std::vector<Group> redo;
    Group open; // means something while the level is not 0
    NSInteger level = 0;
    NSInteger disabled = 0;
    NSUInteger limit = 0;
    std::size_t tidyAt = kFirstTidying; // groups
    Doing doing = Doing::changes;
    bool groupsByEvent = true;
    Ref<NSArray> modes;
    Ref<NSRunLoopObserver> endOfTurn; // while an event's group is open
};

/// Registers the first message that it receives.
class UndoRecorder : public NSObject {
    BRINDLE_OBJECT(UndoRecorder, NSObject)

public:
    Ref<NSUndoManager> manager_;
    Ref<NSObject> target_;
};

template <> struct UndoRecorder::Methods<struct Recording> {
    static Ref<NSMethodSignature> signature(UndoRecorder& self, SEL sel)
    {
        return maybe(self.target_)->methodSignatureForSelector(sel);
    }
    static bool responds(UndoRecorder& self, SEL sel)
    {
        return maybe(self.target_)->respondsToSelector(sel);
    }
    static void forward(UndoRecorder& self, NSInvocation* message)
    {
        if (!self.manager_ || !message)
            return;
        const Ref<NSInvocation> kept(message);
        kept->setTarget(nullptr); // known to the manager, which does not keep it
        kept->retainArguments();
        self.manager_->registerUndoWithTarget_handler(
            self.target_.get(), [kept](NSObject* target) { kept->invokeWithTarget(target); });
    }
    static void table(Builder& t)
    {
        t.methods({
            { "methodSignatureForSelector:", imp<signature> },
            { "respondsToSelector:", imp<responds> },
            { "forwardInvocation:", imp<forward> },
        });
    }
};
BRINDLE_RECORD(UndoRecorder, Recording)

template <> struct NSUndoManager::Methods<struct Recording> {

    static History& of(NSUndoManager& self)
    {
        if (!self.history_)
            self.history_ = std::make_shared<History>();
        return *self.history_;
    }
    static void post(NSUndoManager& self, NSString* name)
    {
        NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(name, &self);
    }

    // ---- groups

    static void begin(NSUndoManager& self)
    {
        post(self, NSUndoManagerCheckpointNotification);
        History& h = of(self);
        if (++h.level == 1)
            h.open = {};
        post(self, NSUndoManagerDidOpenUndoGroupNotification);
    }

    // What goes ends when the history is in order again: its end may come back here.

    static void store(History& h)
    {
        if (h.open.actions.empty())
            return;
        std::vector<Group>& stack = h.doing == Doing::undo ? h.redo : h.undo;
        const std::vector<Group> gone = takeRedo(h);
        stack.push_back(std::exchange(h.open, {}));
        trim(h);
        if (h.undo.size() + h.redo.size() < h.tidyAt)
            return;
        forget(h, nullptr);
        h.tidyAt = std::max(kFirstTidying, 2 * (h.undo.size() + h.redo.size()));
    }
    /// A change ends what could be done again.
    static std::vector<Group> takeRedo(History& h)
    {
        return h.doing == Doing::changes ? std::exchange(h.redo, {}) : std::vector<Group>();
    }
    static void trim(History& h)
    {
        const auto isOver
            = [&h](const std::vector<Group>& stack) { return h.limit && stack.size() > h.limit; };
        std::vector<Group> gone;
        for (std::vector<Group>* stack : { &h.undo, &h.redo }) {
            if (!isOver(*stack))
                continue;
            const auto idle = std::stable_partition(stack->begin(), stack->end(), doesSomething);
            gone.insert(
                gone.end(), std::make_move_iterator(idle), std::make_move_iterator(stack->end()));
            stack->erase(idle, stack->end()); // they are no levels
            if (!isOver(*stack))
                continue;
            const auto kept = stack->end() - static_cast<std::ptrdiff_t>(h.limit);
            gone.insert(
                gone.end(), std::make_move_iterator(stack->begin()), std::make_move_iterator(kept));
            stack->erase(stack->begin(), kept);
        }
    }
    /// Takes out what concerns a target, and what concerns those that have gone.
    static void forget(History& h, NSObject* target)
    {
        std::vector<Action> gone;
        for (std::vector<Group>* stack : { &h.undo, &h.redo }) {
            for (Group& group : *stack)
                takeActions(group, target, gone);
            std::erase_if(*stack, [](const Group& group) { return group.actions.empty(); });
        }
        takeActions(h.open, target, gone);
    }
    static void takeActions(Group& group, NSObject* target, std::vector<Action>& gone)
    {
        const auto isKept = [target](const Action& action) {
            const Ref<NSObject> present = action.target.get();
            return present && present != target;
        };
        const auto kept = std::stable_partition(group.actions.begin(), group.actions.end(), isKept);
        gone.insert(gone.end(), std::make_move_iterator(kept),
            std::make_move_iterator(group.actions.end()));
        group.actions.erase(kept, group.actions.end());
    }
    /// Leaves on top a group that still does something.
    static void forgetGoneOnTop(std::vector<Group>& stack)
    {
        std::vector<Group> gone;
        while (!stack.empty() && !doesSomething(stack.back())) {
            gone.push_back(std::move(stack.back()));
            stack.pop_back();
        }
    }

    static void end(NSUndoManager& self)
    {
        History& h = of(self);
        if (!h.level)
            complain("endUndoGrouping", "no group is open");
        post(self, NSUndoManagerCheckpointNotification);
        post(self, NSUndoManagerWillCloseUndoGroupNotification);
        if (h.level && --h.level == 0) {
            dropEndOfTurn(h);
            store(h);
        }
        post(self, NSUndoManagerDidCloseUndoGroupNotification);
    }

    static void dropEndOfTurn(History& h)
    {
        if (const Ref<NSRunLoopObserver> observer = std::exchange(h.endOfTurn, nullptr))
            observer->invalidate();
    }
    // Closes the group when the loop has come to the end of its turn; the loop does not keep the manager.
    static void closeAtEndOfTurn(NSUndoManager& self)
    {
        History& h = of(self);
        h.endOfTurn = NSRunLoopObserver::cls().observerWithOrder_handler(
            -1, [weak = WeakRef<NSUndoManager>(&self)] {
                const Ref<NSUndoManager> manager = weak.get();
                if (!manager)
                    return;
                dropEndOfTurn(of(*manager));
                if (manager->groupingLevel() == 1)
                    manager->endUndoGrouping();
            });
        const Ref<NSRunLoop> loop = NSRunLoop::cls().currentRunLoop();
        for (NSString* mode : each<NSString>(self.runLoopModes()))
            loop->addObserver_forMode(h.endOfTurn.get(), mode);
    }

    static NSInteger level(NSUndoManager& self) { return of(self).level; }
    static bool groupsByEvent(NSUndoManager& self) { return of(self).groupsByEvent; }
    static void setGroupsByEvent(NSUndoManager& self, bool groups)
    {
        of(self).groupsByEvent = groups;
    }
    static Ref<NSArray> modes(NSUndoManager& self)
    {
        if (!of(self).modes)
            of(self).modes = NSArray::cls().arrayWithObject(NSDefaultRunLoopMode.get());
        return of(self).modes;
    }
    static void setModes(NSUndoManager& self, NSArray* modes)
    {
        of(self).modes = modes ? cast<NSArray>(modes->copy()) : nullptr;
    }
    static NSUInteger limit(NSUndoManager& self) { return of(self).limit; }
    static void setLimit(NSUndoManager& self, NSUInteger levels)
    {
        of(self).limit = levels;
        trim(of(self));
    }

    // ---- registering

    static void keep(NSUndoManager& self, NSObject* target, Block<void(NSObject*)> perform)
    {
        History& h = of(self);
        if (h.disabled)
            return;
        if (!h.level && !h.groupsByEvent)
            complain("registerUndoWithTarget:", "no group is open");
        if (!h.level) {
            self.beginUndoGrouping();
            closeAtEndOfTurn(self);
        }
        const std::vector<Group> gone = takeRedo(h);
        h.open.actions.push_back({ WeakRef<NSObject>(target), std::move(perform) });
    }
    static void requireTarget(NSObject* target, const char* operation)
    {
        if (!target)
            raise("NSInvalidArgumentException",
                std::string("*** -[NSUndoManager ") + operation + "]: nil argument");
    }
    static void registerMessage(NSUndoManager& self, NSObject* target, SEL sel, NSObject* object)
    {
        requireTarget(
            target && sel.value ? target : nullptr, "registerUndoWithTarget:selector:object:");
        keep(self, target, [sel, kept = Ref<NSObject>(object)](NSObject* receiver) {
            receiver->performSelector_withObject(sel, kept.get());
        });
    }
    static void registerHandler(
        NSUndoManager& self, NSObject* target, Closure<void(NSObject*)>* handler)
    {
        requireTarget(handler ? target : nullptr, "registerUndoWithTarget:handler:");
        keep(self, target, handler);
    }
    static Ref<NSObject> prepare(NSUndoManager& self, NSObject* target)
    {
        requireTarget(target, "prepareWithInvocationTarget:");
        const Ref<UndoRecorder> recorder = make<UndoRecorder>();
        recorder->manager_ = &self;
        recorder->target_ = target;
        return recorder;
    }
    static bool isEnabled(NSUndoManager& self) { return of(self).disabled == 0; }
    static void disable(NSUndoManager& self) { ++of(self).disabled; }
    static void enable(NSUndoManager& self)
    {
        if (!of(self).disabled)
            complain("enableUndoRegistration", "registration is not disabled");
        --of(self).disabled;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "beginUndoGrouping", imp<begin> },
            { "endUndoGrouping", imp<end> },
            { "groupingLevel", imp<level> },
            { "groupsByEvent", imp<groupsByEvent> },
            { "setGroupsByEvent:", imp<setGroupsByEvent> },
            { "runLoopModes", imp<modes> },
            { "setRunLoopModes:", imp<setModes> },
            { "levelsOfUndo", imp<limit> },
            { "setLevelsOfUndo:", imp<setLimit> },
            { "registerUndoWithTarget:selector:object:", imp<registerMessage> },
            { "registerUndoWithTarget:handler:", imp<registerHandler> },
            { "prepareWithInvocationTarget:", imp<prepare> },
            { "isUndoRegistrationEnabled", imp<isEnabled> },
            { "disableUndoRegistration", imp<disable> },
            { "enableUndoRegistration", imp<enable> },
        });
    }
};
BRINDLE_RECORD(NSUndoManager, Recording)

template <> struct NSUndoManager::Methods<struct Undoing> {

    static History& of(NSUndoManager& self)
    {
        return NSUndoManager::Methods<struct Recording>::of(self);
    }
    static void post(NSUndoManager& self, NSString* name)
    {
        NSUndoManager::Methods<struct Recording>::post(self, name);
    }
    static std::vector<Group>& undoStack(NSUndoManager& self) { return tidied(of(self).undo); }
    static std::vector<Group>& redoStack(NSUndoManager& self) { return tidied(of(self).redo); }
    static std::vector<Group>& tidied(std::vector<Group>& stack)
    {
        NSUndoManager::Methods<struct Recording>::forgetGoneOnTop(stack);
        return stack;
    }

    /// Says what is being done, as long as it lives; what an action that raises has registered is kept.
    class Span {
    public:
        Span(NSUndoManager& manager, Doing doing)
            : Span(of(manager), manager, doing)
        {
            manager.beginUndoGrouping(); // an exception ends the span as well
        }
        ~Span()
        {
            History& h = of(manager_);
            dropInner(h);
            h.doing = Doing::changes;
        }
        Span(const Span&) = delete;
        Span& operator=(const Span&) = delete;

    private:
        Span(History& history, NSUndoManager& manager, Doing doing)
            : manager_(manager)
        {
            history.doing = doing;
        }
        static void dropInner(History& h)
        {
            if (h.level) // an action raised, or left a group of its own open
                NSUndoManager::Methods<struct Recording>::store(h);
            h.level = 0;
        }
        NSUndoManager& manager_;
    };

    static void run(NSUndoManager& self, std::vector<Group>& stack, Doing doing)
    {
        const Span span(self, doing);
        Group group;
        if (!stack.empty()) { // else who was told has emptied it
            group = std::move(stack.back());
            stack.pop_back();
        }
        of(self).open.name = group.name;
        while (!group.actions.empty()) {
            Action action = std::move(group.actions.back());
            group.actions.pop_back();
            if (const Ref<NSObject> target = action.target.get())
                action.perform(target.get());
        }
        if (of(self).level)
            self.endUndoGrouping();
    }

    static void requireRest(NSUndoManager& self, const char* operation)
    {
        if (of(self).doing != Doing::changes)
            complain(operation, "something is being undone or redone");
    }
    static void undo(NSUndoManager& self)
    {
        requireRest(self, "undo");
        if (of(self).level > 1)
            complain("undo", "groups are open in one another");
        if (of(self).level == 1)
            self.endUndoGrouping();
        self.undoNestedGroup();
    }
    static void undoNested(NSUndoManager& self)
    {
        const Ref<NSUndoManager> alive(&self);
        requireRest(self, "undoNestedGroup");
        if (of(self).level)
            complain("undoNestedGroup", "a group is open");
        post(self, NSUndoManagerCheckpointNotification);
        if (undoStack(self).empty())
            return;
        post(self, NSUndoManagerWillUndoChangeNotification);
        if (!undoStack(self).empty())
            run(self, of(self).undo, Doing::undo);
        post(self, NSUndoManagerDidUndoChangeNotification);
    }
    static void redo(NSUndoManager& self)
    {
        const Ref<NSUndoManager> alive(&self);
        requireRest(self, "redo");
        if (of(self).level > 1)
            complain("redo", "groups are open in one another");
        if (of(self).level == 1)
            self.endUndoGrouping();
        post(self, NSUndoManagerCheckpointNotification);
        if (redoStack(self).empty())
            return;
        post(self, NSUndoManagerWillRedoChangeNotification);
        if (!redoStack(self).empty())
            run(self, of(self).redo, Doing::redo);
        post(self, NSUndoManagerDidRedoChangeNotification);
    }

    static bool canUndo(NSUndoManager& self)
    {
        const History& h = of(self);
        return (h.level && doesSomething(h.open)) || !undoStack(self).empty();
    }
    static bool canRedo(NSUndoManager& self) { return !redoStack(self).empty(); }
    static bool isUndoing(NSUndoManager& self) { return of(self).doing == Doing::undo; }
    static bool isRedoing(NSUndoManager& self) { return of(self).doing == Doing::redo; }

    static void removeAll(NSUndoManager& self)
    {
        History& h = of(self);
        const std::vector<Group> undo = std::exchange(h.undo, {});
        const std::vector<Group> redo = std::exchange(h.redo, {});
        const Group open = std::exchange(h.open, {});
    }
    static void removeAllWithTarget(NSUndoManager& self, NSObject* target)
    {
        NSUndoManager::Methods<struct Recording>::forget(of(self), target);
    }

    // ---- names

    static void setActionName(NSUndoManager& self, NSString* name)
    {
        History& h = of(self);
        const Ref<NSString> copy = name ? cast<NSString>(name->copy()) : nullptr;
        if (h.level)
            h.open.name = copy;
        else if (std::vector<Group>& stack = undoStack(self); !stack.empty())
            stack.back().name = copy;
    }
    static Ref<NSString> nameOf(const Group& group)
    {
        return group.name ? group.name : Ref<NSString>(""_ns);
    }
    static Ref<NSString> nameOfLast(const std::vector<Group>& stack)
    {
        return stack.empty() ? Ref<NSString>(""_ns) : nameOf(stack.back());
    }
    static Ref<NSString> undoName(NSUndoManager& self)
    {
        const History& h = of(self);
        if (h.level && h.doing == Doing::changes && doesSomething(h.open))
            return nameOf(h.open);
        return nameOfLast(undoStack(self));
    }
    static Ref<NSString> redoName(NSUndoManager& self) { return nameOfLast(redoStack(self)); }
    static Ref<NSString> title(NSString* word, NSString* name)
    {
        if (!maybe(name)->length())
            return word;
        return word->stringByAppendingString(" "_ns)->stringByAppendingString(name);
    }
    static Ref<NSString> undoTitleFor(NSUndoManager&, NSString* name)
    {
        return title("Undo"_ns, name);
    }
    static Ref<NSString> redoTitleFor(NSUndoManager&, NSString* name)
    {
        return title("Redo"_ns, name);
    }
    static Ref<NSString> undoTitle(NSUndoManager& self)
    {
        return self.undoMenuTitleForUndoActionName(self.undoActionName().get());
    }
    static Ref<NSString> redoTitle(NSUndoManager& self)
    {
        return self.redoMenuTitleForUndoActionName(self.redoActionName().get());
    }
    static void dealloc(NSUndoManager& self)
    {
        NSUndoManager::Methods<struct Recording>::dropEndOfTurn(of(self));
        removeAll(self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "undo", imp<undo> },
            { "undoNestedGroup", imp<undoNested> },
            { "redo", imp<redo> },
            { "canUndo", imp<canUndo> },
            { "canRedo", imp<canRedo> },
            { "isUndoing", imp<isUndoing> },
            { "isRedoing", imp<isRedoing> },
            { "removeAllActions", imp<removeAll> },
            { "removeAllActionsWithTarget:", imp<removeAllWithTarget> },
            { "setActionName:", imp<setActionName> },
            { "undoActionName", imp<undoName> },
            { "redoActionName", imp<redoName> },
            { "undoMenuItemTitle", imp<undoTitle> },
            { "redoMenuItemTitle", imp<redoTitle> },
            { "undoMenuTitleForUndoActionName:", imp<undoTitleFor> },
            { "redoMenuTitleForUndoActionName:", imp<redoTitleFor> },
            { "dealloc", imp<dealloc> },
        });
    }
};
BRINDLE_RECORD(NSUndoManager, Undoing)

}
