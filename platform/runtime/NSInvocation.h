// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSObject.h"

namespace brindle {

/// The types of a message's result and arguments, receiver (0) and selector (1) included. A value.
class NSMethodSignature : public NSObject {
    BRINDLE_OBJECT(NSMethodSignature, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the signature of a type string such as "@@:@".
        /// - Raises: `NSInvalidArgumentException` for a string that is none, or nullptr.
        Ref<NSMethodSignature> signatureWithObjCTypes(const char* types) const
        {
            return send<"signatureWithObjCTypes:", Ref<NSMethodSignature>>(types);
        }
    };

    std::uint64_t numberOfArguments() const { return send<"numberOfArguments", std::uint64_t>(); }
    /// Answers one argument's type, readable while the signature lives.
    /// - Raises: `NSInvalidArgumentException` past the last argument.
    const char* getArgumentTypeAtIndex(std::uint64_t index) const
    {
        return send<"getArgumentTypeAtIndex:", const char*>(index);
    }
    const char* methodReturnType() const { return send<"methodReturnType", const char*>(); }
    /// Answers the result's size in bytes, 0 for none.
    std::uint64_t methodReturnLength() const { return send<"methodReturnLength", std::uint64_t>(); }

private:
    friend class NSInvocation;
    const char* types_ = nullptr; // canonical, kept for ever
    std::vector<std::string> argumentTypes_;
    std::string returnType_;
};

/// A message as an object: receiver, selector, arguments, and the answer once there is one.
///
/// Arguments and the answer are copied in and out by address. Objects among the arguments are lent until
/// `retainArguments`; an object answer is owned by the invocation. A new invocation's answer reads zero.
class NSInvocation : public NSObject {
    BRINDLE_OBJECT(NSInvocation, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Raises: `NSInvalidArgumentException` for a nil signature.
        Ref<NSInvocation> invocationWithMethodSignature(NSMethodSignature* signature) const
        {
            return send<"invocationWithMethodSignature:", Ref<NSInvocation>>(signature);
        }
    };

    Ref<NSMethodSignature> methodSignature() const
    {
        return send<"methodSignature", Ref<NSMethodSignature>>();
    }
    Ref<NSObject> target() const { return send<"target", Ref<NSObject>>(); }
    void setTarget(NSObject* target) { send<"setTarget:">(target); }
    SEL selector() const { return send<"selector", SEL>(); }
    void setSelector(SEL sel) { send<"setSelector:">(sel); }
    /// Copies an argument out; 0 is the receiver, 1 the selector.
    /// - Raises: `NSInvalidArgumentException` past the last argument.
    void getArgument_atIndex(void* location, std::int64_t index)
    {
        send<"getArgument:atIndex:">(location, index);
    }
    void setArgument_atIndex(void* location, std::int64_t index)
    {
        send<"setArgument:atIndex:">(location, index);
    }
    void getReturnValue(void* location) { send<"getReturnValue:">(location); }
    void setReturnValue(void* location) { send<"setReturnValue:">(location); }
    /// Keeps target and object arguments until the invocation goes.
    void retainArguments() { send<"retainArguments">(); }
    bool argumentsRetained() const { return send<"argumentsRetained", bool>(); }
    /// Sends the message and keeps the answer. A nil target answers zero.
    void invoke() { send<"invoke">(); }
    void invokeWithTarget(NSObject* target) { send<"invokeWithTarget:">(target); }

private:
    friend void forwardMessage(const Signature&, void* const*, void*, std::size_t);

    struct Place {
        std::size_t offset;
        std::size_t size;
        bool isObject;
    };
    void* at(const Place& place) { return reinterpret_cast<char*>(frame_.data()) + place.offset; }
    void releaseArguments();
    void storeAnswer(const void* location, bool adopt);

    Ref<NSMethodSignature> signature_;
    std::vector<std::uint64_t> frame_; // arguments in order, then the answer
    std::vector<Place> arguments_;
    Place answer_ {};
    bool retained_ = false;

public:
    struct Frame; // the runtime's own access to the above
};

}
