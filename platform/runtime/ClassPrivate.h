// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Runtime.h"

namespace brindle {

struct Method {
    SEL sel;
    Class* owner;
    std::atomic<IMP> imp;
    std::atomic<const char*> types;
    std::atomic<const Signature*>
        signature; ///< nullptr where no C++ function of these types is known
    std::atomic<const char*>
        details; ///< the types as `Row` has them; nullptr where nothing more is known
    const char* topic; ///< where the entry comes from, for the message about two of them
    enum class Origin : std::uint8_t { generated, own, extension, added } origin;
    /// Its types are a guess: the first message of other types may have it adapted.
    std::atomic<bool> isAdaptable { false };
};

/// Gives an adaptable method an implementation of these types; false when it cannot. Set by the C interface.
using MethodAdapter = bool (*)(Class* owner, SEL sel, const char* types);
extern std::atomic<MethodAdapter> methodAdapter;

struct Property {
    std::string name;
    std::string type;
    unsigned flags = 0;
    std::string getter, setter, ivar;
    mutable std::string attributes; ///< made when first asked for
};

struct Ivar {
    std::string name;
    std::string type;
    std::size_t offset = 0;
    unsigned flags = 0;
};

/// A flat table from selector to method; grows, never forgets.
class MethodTable {
public:
    Method* find(SEL sel) const
    {
        if (slots_.empty())
            return nullptr;
        for (std::size_t i = sel.value & mask_;; i = (i + 1) & mask_) {
            Method* method = slots_[i];
            if (!method || method->sel == sel)
                return method;
        }
    }
    Method* add(SEL sel);
    /// Makes room for so many more: most methods come with others, and then none is left empty.
    void reserve(std::size_t count);
    std::size_t count() const { return count_; }
    /// Calls with each method, in the order in which they were added.
    template <class Visit> void forEach(Visit visit) const
    {
        for (const Piece& piece : pieces_) {
            for (std::size_t i = 0; i < piece.count; ++i)
                visit(piece.methods[i]);
        }
    }

private:
    struct Piece {
        std::unique_ptr<Method[]> methods; // addresses stay
        std::size_t count = 0;
        std::size_t room = 0;
    };

    void place(Method* method);

    std::vector<Piece> pieces_;
    std::vector<Method*> slots_;
    std::size_t mask_ = 0;
    std::size_t count_ = 0;
};

enum class Initialization : int { none, running, done };

/// What a slot of a dispatch table answers for. Kept apart: tables are mostly empty.
struct CachedAnswer {
    std::size_t slot;
    SEL sel;
    const Signature* signature;
};

/// What sends need not see of a class.
struct ClassData {
    std::string name;
    bool isMeta = false;
    bool isRegistered = true;
    std::size_t instanceSize = 0;
    void (*construct)(void*) = nullptr;
    void (*destruct)(void*) = nullptr;
    Class* plainClass = nullptr; ///< of a metaclass: the class it belongs to; of a class: itself
    MethodTable methods;
    std::vector<std::unique_ptr<Property>> properties;
    std::vector<std::unique_ptr<Ivar>> ivars;
    std::vector<Ivar*>
        addedObjects; ///< object fields added at run time, ancestors' included: ended by the runtime
    std::vector<Protocol*> protocols;
    std::vector<Class*> subclasses;
    std::atomic<Initialization> initialization { Initialization::none };
    std::atomic<std::uintptr_t> initializer { 0 }; ///< the thread that runs `+initialize`
    std::vector<CachedAnswer> cached; ///< of the filled slots, for the update after a change
    std::vector<dispatch::Slot*> oldTables; ///< kept: another thread may still be reading one
};

/// The one lock round classes, tables and names. Recursive, never held while user code runs.
std::recursive_mutex& runtimeLock();

/// Answers the names of all classes, used or not, in alphabetical order.
std::vector<std::string> knownClassNames();

/// Answers where a type begins behind its qualifiers.
const char* encodingSkipQualifiers(const char* type);
Method* findMethod(const Class* cls, SEL sel);
/// Brings cached answers of the class and its descendants in line after an entry changed. The lock is held.
void updateCaches(Class* cls, SEL sel);
/// Sends `+initialize` where it has not been sent: ancestors first, once, other threads wait.
void ensureInitialized(Class* cls);

SEL registerSelector(SEL sel, const char* name, bool copy);
/// Answers a type string without offsets, qualifiers and class names, kept for ever; nullptr when malformed.
const char* canonicalTypes(const char* types);
/// Answers the signature of a type string where any C++ code of the process has it.
const Signature* signatureForTypes(const char* types);

/// An empty dispatch table that every class begins with.
dispatch::Slot* emptySlots();

/// Remembers a buffer as handed out, so that `releaseBuffer` knows it.
void* handOut(void* buffer);

/// Ends what hangs on an object: first weak references, later associated values.
void clearWeakReferences(void* object);
void clearExtras(void* object);

/// The class of closures; nullptr before the first one is made.
extern constinit std::atomic<Class*> knownClosureClass;

/// Closures are made and ended by the thousand: their end needs no message.
inline bool isClosure(const NSObject* object)
{
    return object->isa_ == knownClosureClass.load(std::memory_order_relaxed);
}
void endClosure(NSObject* object);
void freeClosure(NSObject* object);

[[noreturn]] void raiseUnrecognized(const NSObject* self, SEL sel);

}
