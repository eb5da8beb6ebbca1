// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <bit>
#include <cstdlib>

#include "CInterfacePrivate.h"
#include "ClassPrivate.h"
#include "DynamicCallPrivate.h"
#include "Function.h"
#include "InvocationPrivate.h"
#include "StringsPrivate.h"

namespace brindle::plain {

constinit thread_local int sendDepth = 0;

namespace {

    std::atomic<int> errorCount { 0 };
    static_assert(sizeof errorCount == sizeof(int));

    /// The exception that this thread has yet to take.
    struct KeptError {
        Ref<NSException> exception;

        void keep(Ref<NSException> fresh)
        {
            errorCount += (fresh ? 1 : 0) - (exception ? 1 : 0);
            exception.swap(fresh);
        }
        ~KeptError() { keep(nullptr); }
    };
    thread_local KeptError keptError;

    Ref<NSException> makeException(const char* name, const char* reason)
    {
        return NSException::cls().exceptionWithName_reason_userInfo(
            makeString(name ? name : "").get(), makeString(reason ? reason : "").get(), nullptr);
    }

    Ref<NSException> currentException()
    {
        try {
            throw;
        } catch (const Exception& exception) {
            return exception.get();
        } catch (const std::exception& exception) {
            return makeException("NSInternalInconsistencyException", exception.what());
        } catch (...) {
            return makeException("NSInternalInconsistencyException", "an unknown C++ exception");
        }
    }

    Ref<NSObject> currentLoop()
    {
        return requireClass("NSRunLoop")->send<"currentRunLoop", Ref<NSObject>>();
    }

    /// Answers the field of a name that is an object; nullptr when there is none.
    const Ivar* objectField(brindle_id object, const char* name)
    {
        const Ivar* const ivar
            = object ? class_getInstanceVariable(plain::object(object)->isa_, name) : nullptr;
        return ivar && *ivar_getTypeEncoding(ivar) == '@' ? ivar : nullptr;
    }

    /// Joins texts as lines, for somebody who frees them.
    class Lines {
    public:
        void add(std::string_view line) { (text_ += line) += '\n'; }
        char* copy() const { return strdup(text_.c_str()); }

    private:
        std::string text_;
    };

}

void keepError() noexcept { keptError.keep(currentException()); }

}

namespace brindle {

void keepCurrentException() noexcept { plain::keepError(); }

}

using namespace brindle;
using namespace brindle::plain;

extern "C" {

// ---- classes

brindle_class brindle_classNamed(const char* name)
{
    return guarded([&] { return plainOf(objc_getClass(name)); });
}

brindle_class brindle_classOf(brindle_id object)
{
    return plainOf(object_getClass(plain::object(object)));
}

brindle_class brindle_superclass(brindle_class cls)
{
    return plainOf(class_getSuperclass(plain::classOf(cls)));
}

const char* brindle_className(brindle_class cls) { return class_getName(plain::classOf(cls)); }

int brindle_isMetaclass(brindle_class cls) { return class_isMetaClass(plain::classOf(cls)); }

char* brindle_copyClassNames(void)
{
    Lines lines;
    for (const std::string& name : knownClassNames())
        lines.add(name);
    return lines.copy();
}

brindle_class brindle_makeClass(brindle_class parent, const char* name)
{
    if (!parent || !name)
        return nullptr;
    return guarded(
        [&] { return plainOf(objc_allocateClassPair(plain::classOf(parent), name, 0)); });
}

int brindle_addField(brindle_class cls, const char* name, const char* type)
{
    std::size_t size = 0;
    std::size_t alignment = 0;
    return cls && name && encodingSizeAndAlignment(type, &size, &alignment)
        && guarded([&] { return class_addIvar(plain::classOf(cls), name, size, alignment, type); });
}

void brindle_registerClass(brindle_class cls)
{
    guarded([&] { objc_registerClassPair(plain::classOf(cls)); });
}

int brindle_adoptProtocol(brindle_class cls, const char* protocol)
{
    return class_addProtocol(plain::classOf(cls), objc_getProtocol(protocol));
}

void* brindle_field(brindle_id object, const char* name)
{
    const Ivar* const ivar
        = object && name ? class_getInstanceVariable(plain::object(object)->isa_, name) : nullptr;
    return ivar ? reinterpret_cast<char*>(object) + ivar_getOffset(ivar) : nullptr;
}

// ---- selectors, methods, properties

brindle_selector brindle_selectorNamed(const char* name)
{
    return guarded([&] { return sel_registerName(name).value; });
}

const char* brindle_selectorName(brindle_selector selector) { return sel_getName({ selector }); }

const char* brindle_methodTypes(brindle_class cls, brindle_selector selector)
{
    return method_getTypeEncoding(class_getInstanceMethod(plain::classOf(cls), { selector }));
}

const char* brindle_methodDetailedTypes(brindle_class cls, brindle_selector selector)
{
    return method_getDetailedTypes(class_getInstanceMethod(plain::classOf(cls), { selector }));
}

const char* brindle_messageTypes(brindle_id object, brindle_selector selector)
{
    NSObject* const self = plain::object(object);
    if (!self || !selector)
        return nullptr;
    if (const Method* const method = class_getInstanceMethod(self->isa_, { selector }))
        return method_getTypeEncoding(method);
    return guarded([&]() -> const char* {
        ensureInitialized(self->isa_);
        const Ref<NSMethodSignature> signature = self->methodSignatureForSelector({ selector });
        if (!signature)
            return nullptr;
        std::string types = signature->methodReturnType();
        for (std::uint64_t i = 0; i < signature->numberOfArguments(); ++i)
            types += signature->getArgumentTypeAtIndex(i);
        return canonicalTypes(types.c_str());
    });
}

char* brindle_copyMethodNames(brindle_class cls)
{
    Lines lines;
    unsigned count = 0;
    Method** const methods = class_copyMethodList(plain::classOf(cls), &count);
    for (unsigned i = 0; i < count; ++i)
        lines.add(sel_getName(method_getName(methods[i])));
    releaseBuffer(methods);
    return lines.copy();
}

char* brindle_copyProperties(brindle_class cls)
{
    Lines lines;
    unsigned count = 0;
    objc_property_t* const list = class_copyPropertyList(plain::classOf(cls), &count);
    for (unsigned i = 0; i < count; ++i)
        lines.add(std::string(property_getName(list[i])) + ' ' + property_getAttributes(list[i]));
    releaseBuffer(list);
    return lines.copy();
}

const char* brindle_propertyAttributes(brindle_class cls, const char* name)
{
    return property_getAttributes(class_getProperty(plain::classOf(cls), name));
}

int brindle_addProperty(brindle_class cls, const char* name, const char* attributes)
{
    return guarded([&] { return class_addProperty(plain::classOf(cls), name, attributes); });
}

brindle_id brindle_objectField(brindle_id object, const char* name)
{
    return guarded([&] {
        return plainOf(object_getIvar(plain::object(object), objectField(object, name)).leak());
    });
}

void brindle_setObjectField(brindle_id object, const char* name, brindle_id value)
{
    guarded([&] {
        object_setIvar(plain::object(object), objectField(object, name), plain::object(value));
    });
}

// ---- ownership

brindle_id brindle_retain(brindle_id object)
{
    if (object)
        retain(object);
    return object;
}

void brindle_release(brindle_id object)
{
    if (!object)
        return;
    guarded([&] { release(object); });
}

void* brindle_makeWeak(brindle_id object) { return object ? makeWeakCell(object) : nullptr; }
brindle_id brindle_loadWeak(void* weak)
{
    return static_cast<brindle_id>(loadWeakCell(static_cast<WeakCell*>(weak)));
}
void brindle_dropWeak(void* weak) { dropWeakCell(static_cast<WeakCell*>(weak)); }

int brindle_whenGone(brindle_id object, void (*end)(void* context), void* context)
{
    if (!object)
        return 0; // the end belongs to nobody and must not run
    return guarded([&] {
        const auto marker
            = brindle_makeClosure("v@?", reinterpret_cast<brindle_code>(end), context, end);
        const auto value = Ref<NSObject>::adopt(plain::object(marker));
        // The marker itself is the key, so that several ends can hang on one object.
        objc_setAssociatedObject(
            plain::object(object), marker, value.get(), OBJC_ASSOCIATION_RETAIN);
        return marker != nullptr;
    });
}

void brindle_free(void* buffer) { std::free(buffer); }

brindle_id brindle_makeString(const char* text, size_t length)
{
    constexpr std::uint64_t utf8 = 4; // NSUTF8StringEncoding
    return guarded([&] {
        static Class* const strings = requireClass("NSString");
        Ref<NSObject> string = strings->send<"alloc", Ref<NSObject>>();
        string = string->send<"initWithBytes:length:encoding:", Ref<NSObject>>(
            static_cast<const void*>(text), std::uint64_t { length }, utf8);
        return plainOf(string.leak());
    });
}

// ---- errors

brindle_id brindle_takeError(void)
{
    Ref<NSException> taken = keptError.exception;
    keptError.keep(nullptr);
    return plainOf(taken.leak());
}

const int* brindle_errorCount(void) { return reinterpret_cast<const int*>(&errorCount); }

brindle_id brindle_makeException(const char* name, const char* reason)
{
    return guarded([&] { return plainOf(makeException(name, reason).leak()); });
}

// ---- messages known as text

brindle_id brindle_send(brindle_id object, brindle_selector selector, const char* types,
    void* const* arguments, void* result)
{
    if (!object)
        return nullptr;
    ++sendDepth;
    guarded([&] {
        NSObject* self = plain::object(object);
        SEL sel { selector };
        ensureInitialized(self->isa_);
        const Method* const method = class_getInstanceMethod(self->isa_, sel);
        const char* const own = brindle_messageTypes(object, selector);
        const char* const asked = types ? canonicalTypes(types) : own;
        if (!own || !asked)
            raiseUnrecognized(self, sel);
        if (method && std::strcmp(own, asked) != 0)
            raise("NSInvalidArgumentException",
                std::string("-[") + class_getName(self->isa_) + " " + sel_getName(sel)
                    + "]: sent as " + asked + ", implemented as " + own);
        std::vector<void*> all { &self, &sel };
        std::size_t count = 0;
        for (const char* at = encodingSkipType(asked); *at; at = encodingSkipType(at))
            ++count;
        if (count > 2)
            all.insert(all.end(), arguments, arguments + (count - 2));
        std::size_t size = 0;
        std::size_t alignment = 1;
        encodingSizeAndAlignment(asked, &size, &alignment);
        std::vector<std::max_align_t> unwanted;
        if (!result)
            unwanted.resize(size / sizeof(std::max_align_t) + 1);
        void* const answer = result ? result : unwanted.data();
        if (method)
            callDynamically(method_getImplementation(method), asked, all.data(), answer);
        else
            forwardTypes(asked, all.data(), answer, size);
        if (!result && *asked == '@')
            Ref<NSObject>::adopt(*static_cast<NSObject**>(answer));
    });
    --sendDepth;
    return brindle_takeError();
}

const char* brindle_closureTypes(brindle_id closure)
{
    NSObject* const object = plain::object(closure);
    return object && isClosure(object) ? static_cast<ClosureBase*>(object)->kind->encoding
                                       : nullptr;
}

brindle_id brindle_runClosure(brindle_id closure, void* const* arguments, void* result)
{
    const char* const types = brindle_closureTypes(closure);
    if (!types)
        return brindle_makeException("NSInvalidArgumentException", "only a closure can be run");
    ++sendDepth;
    guarded([&] {
        auto* self = static_cast<ClosureBase*>(plain::object(closure));
        const Ref<ClosureBase> alive(self);
        std::vector<void*> all { &self };
        std::size_t count = 0;
        for (const char* at = encodingSkipType(types); *at; at = encodingSkipType(at))
            ++count;
        if (count > 1)
            all.insert(all.end(), arguments, arguments + (count - 1));
        callDynamically(self->code, types, all.data(), result);
    });
    --sendDepth;
    return brindle_takeError();
}

// ---- plain functions

brindle_code brindle_functionNamed(const char* name, const char** types)
{
    const auto* const begin = functions::__start_brindle_functions;
    const auto* const end = functions::__stop_brindle_functions;
    const auto* const found = std::find_if(begin, end,
        [&](const FunctionRow* row) { return name && std::strcmp(row->name, name) == 0; });
    if (found == end)
        return nullptr;
    if (types)
        *types = (*found)->types;
    return (*found)->code();
}

char* brindle_copyFunctionNames(void)
{
    Lines lines;
    for (const auto* at = functions::__start_brindle_functions;
         at != functions::__stop_brindle_functions; ++at)
        lines.add((*at)->name);
    return lines.copy();
}

// ---- the run loop

int brindle_runUntilIdle(void)
{
    return guarded([] {
        const Ref<NSString> mode = makeString("NSDefaultRunLoopMode");
        return currentLoop()->send<"runUntilIdle:", bool>(mode.get());
    });
}

void brindle_advance(double seconds)
{
    guarded([&] { currentLoop()->send<"advance:">(seconds); });
}
}
