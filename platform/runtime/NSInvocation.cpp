// SPDX-License-Identifier: Apache-2.0
#include "NSInvocation.h"

#include "ClassPrivate.h"
#include "DynamicCallPrivate.h"
#include "InvocationPrivate.h"
#include "NSException.h"

namespace brindle {

template <> struct NSMethodSignature::Methods<struct Types> {

    static Ref<NSMethodSignature> signatureWithObjCTypes(Class& self, const char* types)
    {
        const char* const clean = canonicalTypes(types);
        if (!clean)
            raise("NSInvalidArgumentException",
                std::string(
                    "+[NSMethodSignature signatureWithObjCTypes:]: unsupported type encoding '")
                    + (types ? types : "(null)") + "'");
        auto signature = Ref<NSMethodSignature>::adopt(
            static_cast<NSMethodSignature*>(class_createInstance(&self)));
        signature->types_ = clean;
        const char* at = encodingSkipType(clean);
        signature->returnType_.assign(clean, at);
        while (*at) {
            const char* const next = encodingSkipType(at);
            signature->argumentTypes_.emplace_back(at, next);
            at = next;
        }
        return signature;
    }

    static std::uint64_t numberOfArguments(NSMethodSignature& self)
    {
        return self.argumentTypes_.size();
    }

    static const char* argumentType(NSMethodSignature& self, std::uint64_t index)
    {
        if (index >= self.argumentTypes_.size())
            raise("NSInvalidArgumentException",
                "-[NSMethodSignature getArgumentTypeAtIndex:]: index " + std::to_string(index)
                    + " out of bounds [0, " + std::to_string(self.argumentTypes_.size()) + ")");
        return self.argumentTypes_[index].c_str();
    }

    static const char* methodReturnType(NSMethodSignature& self)
    {
        return self.returnType_.c_str();
    }

    static std::uint64_t methodReturnLength(NSMethodSignature& self)
    {
        std::size_t size = 0;
        std::size_t alignment = 0;
        encodingSizeAndAlignment(self.returnType_.c_str(), &size, &alignment);
        return size;
    }

    static bool isEqual(NSMethodSignature& self, NSObject* other)
    {
        return other && other->isKindOfClass(classOf<NSMethodSignature>())
            && static_cast<NSMethodSignature*>(other)->types_ == self.types_;
    }

    static std::uint64_t hash(NSMethodSignature& self)
    {
        return reinterpret_cast<std::uintptr_t>(self.types_) >> 4;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "signatureWithObjCTypes:", imp<signatureWithObjCTypes> } });
        t.methods({
            { "numberOfArguments", imp<numberOfArguments> },
            { "getArgumentTypeAtIndex:", imp<argumentType> },
            { "methodReturnType", imp<methodReturnType> },
            { "methodReturnLength", imp<methodReturnLength> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
        });
    }
};
BRINDLE_RECORD(NSMethodSignature, Types)

void NSInvocation::releaseArguments()
{
    if (!std::exchange(retained_, false))
        return;
    for (const Place& place : arguments_) {
        if (NSObject* const object = place.isObject ? *static_cast<NSObject**>(at(place)) : nullptr)
            release(object);
    }
}

void NSInvocation::storeAnswer(const void* location, bool adopt)
{
    if (!answer_.size || !location)
        return;
    if (!answer_.isObject) {
        std::memcpy(at(answer_), location, answer_.size);
        return;
    }
    NSObject* fresh = *static_cast<NSObject* const*>(location);
    if (fresh && !adopt)
        retain(fresh);
    if (NSObject* const old = std::exchange(*static_cast<NSObject**>(at(answer_)), fresh))
        release(old);
}

void NSInvocation::Frame::take(const char* types, void* const* arguments)
{
    std::size_t index = 0;
    for (const char* type = encodingSkipType(types); *type && index < invocation_.arguments_.size();
         type = encodingSkipType(type), ++index) {
        std::size_t size = 0;
        std::size_t alignment = 0;
        const Place& place = invocation_.arguments_[index];
        if (encodingSizeAndAlignment(type, &size, &alignment) && size == place.size)
            std::memcpy(invocation_.at(place), arguments[index], size);
    }
}

void NSInvocation::Frame::give(const char* types, void* result, std::size_t resultSize)
{
    const Place& answer = invocation_.answer_;
    std::size_t size = 0;
    std::size_t alignment = 0;
    if (!result || !encodingSizeAndAlignment(types, &size, &alignment) || size != answer.size
        || size > resultSize)
        return;
    std::memcpy(result, invocation_.at(answer), size);
    NSObject* const object = answer.isObject ? *static_cast<NSObject**>(result) : nullptr;
    if (object)
        retain(object);
}

template <> struct NSInvocation::Methods<struct Message> {

    static Ref<NSInvocation> invocationWithMethodSignature(
        Class& self, NSMethodSignature* signature)
    {
        if (!signature)
            raise("NSInvalidArgumentException",
                "+[NSInvocation invocationWithMethodSignature:]: method signature argument cannot "
                "be nil");
        auto invocation
            = Ref<NSInvocation>::adopt(static_cast<NSInvocation*>(class_createInstance(&self)));
        invocation->signature_ = signature;
        std::size_t offset = 0;
        const auto place = [&](const char* type) {
            std::size_t size = 0;
            std::size_t alignment = 1;
            encodingSizeAndAlignment(type, &size, &alignment);
            const Place made { (offset + 7) / 8 * 8, size, *type == '@' };
            offset = made.offset + size;
            return made;
        };
        for (std::uint64_t i = 0; i < signature->numberOfArguments(); ++i)
            invocation->arguments_.push_back(place(signature->getArgumentTypeAtIndex(i)));
        invocation->answer_ = place(signature->methodReturnType());
        invocation->frame_.resize((offset + 7) / 8 + 1);
        return invocation;
    }

    static Ref<NSMethodSignature> methodSignature(NSInvocation& self) { return self.signature_; }

    static const Place& checked(NSInvocation& self, std::int64_t index, const char* selector)
    {
        if (index < 0 || static_cast<std::size_t>(index) >= self.arguments_.size())
            raise("NSInvalidArgumentException",
                std::string("-[NSInvocation ") + selector + "]: index " + std::to_string(index)
                    + " out of bounds [0, " + std::to_string(self.arguments_.size()) + ")");
        return self.arguments_[static_cast<std::size_t>(index)];
    }

    static void requireLocation(const void* location, const char* selector)
    {
        if (!location)
            raise("NSInvalidArgumentException",
                std::string("-[NSInvocation ") + selector + "]: nil location");
    }

    static void getArgument(NSInvocation& self, void* location, std::int64_t index)
    {
        requireLocation(location, "getArgument:atIndex:");
        const Place& place = checked(self, index, "getArgument:atIndex:");
        std::memcpy(location, self.at(place), place.size);
    }

    static void setArgument(NSInvocation& self, void* location, std::int64_t index)
    {
        requireLocation(location, "setArgument:atIndex:");
        const Place& place = checked(self, index, "setArgument:atIndex:");
        if (self.retained_ && place.isObject) {
            NSObject* const fresh = *static_cast<NSObject**>(location);
            if (fresh)
                retain(fresh);
            if (NSObject* const old
                = std::exchange(*static_cast<NSObject**>(self.at(place)), fresh))
                release(old);
            return;
        }
        std::memcpy(self.at(place), location, place.size);
    }

    // The types of a message need not begin with an object and a selector: those of a closure do not.
    static void requireKind(
        NSInvocation& self, std::int64_t index, const char* kinds, const char* selector)
    {
        checked(self, index, selector);
        const char* const type
            = self.signature_->getArgumentTypeAtIndex(static_cast<std::uint64_t>(index));
        if (!std::strchr(kinds, *type))
            raise("NSInvalidArgumentException",
                std::string("-[NSInvocation ") + selector + "]: argument " + std::to_string(index)
                    + " is of type " + type);
    }
    static Ref<NSObject> target(NSInvocation& self)
    {
        requireKind(self, 0, "@#", "target");
        NSObject* object = nullptr;
        getArgument(self, &object, 0);
        return object;
    }
    static void setTarget(NSInvocation& self, NSObject* target)
    {
        requireKind(self, 0, "@#", "setTarget:");
        setArgument(self, &target, 0);
    }
    static SEL selectorOfMessage(NSInvocation& self)
    {
        requireKind(self, 1, ":", "selector");
        SEL sel;
        getArgument(self, &sel, 1);
        return sel;
    }
    static void setSelector(NSInvocation& self, SEL sel)
    {
        requireKind(self, 1, ":", "setSelector:");
        setArgument(self, &sel, 1);
    }

    static void getReturnValue(NSInvocation& self, void* location)
    {
        if (location && self.answer_.size)
            std::memcpy(location, self.at(self.answer_), self.answer_.size);
    }
    static void setReturnValue(NSInvocation& self, void* location)
    {
        self.storeAnswer(location, false);
    }

    static void retainArguments(NSInvocation& self)
    {
        if (std::exchange(self.retained_, true))
            return;
        for (const Place& place : self.arguments_) {
            NSObject* const object
                = place.isObject ? *static_cast<NSObject**>(self.at(place)) : nullptr;
            if (object)
                retain(object);
        }
    }
    static bool argumentsRetained(NSInvocation& self) { return self.retained_; }

    static void invokeWithTarget(NSInvocation& self, NSObject* target)
    {
        setTarget(self, target);
        std::vector<std::uint64_t> room((self.answer_.size + 7) / 8 + 1);
        if (!target) {
            self.storeAnswer(room.data(), true);
            return;
        }
        std::vector<void*> arguments;
        for (const Place& place : self.arguments_)
            arguments.push_back(self.at(place));
        const char* const types = self.signature_->types_;
        const SEL sel = selectorOfMessage(self);
        ensureInitialized(target->isa_);
        const Method* const method = class_getInstanceMethod(target->isa_, sel);
        if (!method)
            forwardTypes(types, arguments.data(), room.data(), self.answer_.size);
        else if (std::strcmp(method_getTypeEncoding(method), types) != 0)
            raise("NSInvalidArgumentException",
                std::string("-[") + class_getName(target->isa_) + " " + sel_getName(sel)
                    + "]: invoked as " + types + ", implemented as "
                    + method_getTypeEncoding(method));
        else
            callDynamically(method_getImplementation(method), types, arguments.data(), room.data());
        self.storeAnswer(room.data(), true);
    }
    static void invoke(NSInvocation& self) { invokeWithTarget(self, target(self).get()); }

    static void dealloc(NSInvocation& self)
    {
        self.releaseArguments();
        NSObject* nothing = nullptr;
        if (self.answer_.isObject)
            self.storeAnswer(&nothing, true);
    }

    static void table(Builder& t)
    {
        t.classMethods(
            { { "invocationWithMethodSignature:", imp<invocationWithMethodSignature> } });
        t.methods({
            { "methodSignature", imp<methodSignature> },
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "selector", imp<selectorOfMessage> },
            { "setSelector:", imp<setSelector> },
            { "getArgument:atIndex:", imp<getArgument> },
            { "setArgument:atIndex:", imp<setArgument> },
            { "getReturnValue:", imp<getReturnValue> },
            { "setReturnValue:", imp<setReturnValue> },
            { "retainArguments", imp<retainArguments> },
            { "argumentsRetained", imp<argumentsRetained> },
            { "invoke", imp<invoke> },
            { "invokeWithTarget:", imp<invokeWithTarget> },
            { "dealloc", imp<dealloc> },
        });
    }
};
BRINDLE_RECORD(NSInvocation, Message)

}
