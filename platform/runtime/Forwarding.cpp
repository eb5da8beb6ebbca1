// SPDX-License-Identifier: Apache-2.0
#include <cstdarg>

#include "ClassPrivate.h"
#include "DynamicCallPrivate.h"
#include "InvocationPrivate.h"
#include "NSException.h"

namespace brindle {

namespace {

    bool resolve(NSObject* self, SEL sel)
    {
        Class* const cls = self->isa_;
        return cls->data_->isMeta ? cls->data_->plainClass->send<"resolveClassMethod:", bool>(sel)
                                  : cls->send<"resolveInstanceMethod:", bool>(sel);
    }

    /// Calls what the receiver's class answers with now, when its types are the call's; false when there is nothing.
    bool callFound(const char* types, void* const* arguments, void* result)
    {
        NSObject* const self = *static_cast<NSObject* const*>(arguments[0]);
        const SEL sel = *static_cast<const SEL*>(arguments[1]);
        const Method* const method = class_getInstanceMethod(self->isa_, sel);
        if (!method)
            return false;
        const char* const found = method_getTypeEncoding(method);
        if (std::strcmp(found, types) != 0)
            raise("NSInvalidArgumentException",
                std::string("-[") + class_getName(self->isa_) + " " + sel_getName(sel)
                    + "]: sent as " + types + ", implemented as " + found);
        callDynamically(method_getImplementation(method), types, arguments, result);
        return true;
    }

    void forwardByInvocation(
        const char* types, void* const* arguments, void* result, std::size_t resultSize)
    {
        NSObject* const self = *static_cast<NSObject* const*>(arguments[0]);
        const SEL sel = *static_cast<const SEL*>(arguments[1]);
        const Ref<NSMethodSignature> signature = self->methodSignatureForSelector(sel);
        if (!signature) {
            self->doesNotRecognizeSelector(sel);
            return;
        }
        const Ref<NSInvocation> invocation
            = NSInvocation::cls().invocationWithMethodSignature(signature.get());
        NSInvocation::Frame frame(*invocation);
        frame.take(types, arguments);
        self->forwardInvocation(invocation.get());
        frame.give(types, result, resultSize);
    }

}

void forwardTypes(const char* types, void* const* arguments, void* result, std::size_t resultSize)
{
    NSObject* const self = *static_cast<NSObject* const*>(arguments[0]);
    const SEL sel = *static_cast<const SEL*>(arguments[1]);
    if (resolve(self, sel) && callFound(types, arguments, result))
        return;
    Ref<NSObject> target = self->forwardingTargetForSelector(sel);
    if (target && target.get() != self) {
        NSObject* receiver = target.get();
        std::vector<void*> moved { &receiver };
        std::size_t count = 0;
        for (const char* at = encodingSkipType(types); *at; at = encodingSkipType(at))
            ++count;
        moved.insert(moved.end(), arguments + 1, arguments + count);
        if (!callFound(types, moved.data(), result))
            forwardTypes(types, moved.data(), result, resultSize);
        return;
    }
    forwardByInvocation(types, arguments, result, resultSize);
}

void forwardMessage(
    const Signature& signature, void* const* arguments, void* result, std::size_t resultSize)
{
    forwardTypes(signature.types, arguments, result, resultSize);
}

namespace {

    /// Stands for "nobody answers" where an implementation is asked for by selector alone. The types come from
    /// `methodSignatureForSelector:`; integers and pointers are read, and an object is answered.
    NSObject* forwardUntyped(NSObject* self, SEL sel, ...)
    {
        const Ref<NSMethodSignature> signature = self->methodSignatureForSelector(sel);
        if (!signature) {
            self->doesNotRecognizeSelector(sel);
            return nullptr;
        }
        const std::uint64_t count = signature->numberOfArguments();
        std::vector<std::uint64_t> words(count);
        std::vector<void*> arguments { &self, &sel };
        std::va_list list;
        va_start(list, sel);
        for (std::uint64_t i = 2; i < count; ++i) {
            std::size_t size = 0;
            std::size_t alignment = 1;
            if (!encodingSizeAndAlignment(signature->getArgumentTypeAtIndex(i), &size, &alignment)
                || size > sizeof words[i])
                raise("NSInvalidArgumentException",
                    std::string("-[") + class_getName(self->isa_) + " " + sel_getName(sel)
                        + "]: only words can be forwarded by an implementation without types");
            if (*signature->getArgumentTypeAtIndex(i) == 'd') {
                const double number = va_arg(list, double);
                std::memcpy(&words[i], &number, sizeof number);
            } else
                words[i] = va_arg(list, std::uint64_t);
            arguments.push_back(&words[i]);
        }
        va_end(list);
        NSObject* answer = nullptr;
        const Ref<NSInvocation> invocation
            = NSInvocation::cls().invocationWithMethodSignature(signature.get());
        NSInvocation::Frame frame(*invocation);
        frame.take(frame.types(), arguments.data());
        self->forwardInvocation(invocation.get());
        if (*signature->methodReturnType() == '@')
            frame.give(frame.types(), &answer, sizeof answer);
        return answer;
    }

}

IMP forwardingImplementation() { return reinterpret_cast<IMP>(&forwardUntyped); }

}
