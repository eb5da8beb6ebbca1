// SPDX-License-Identifier: Apache-2.0
#include "KeyedArchiveHosts.h"

namespace brindle {

template <> struct ArchivedNode::Methods<struct Coding> {
    static bool isSecure(Class&) { return true; }
    static void encode(ArchivedNode& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.name_.get(), "name"_ns);
        coder->encodeObject_forKey(self.next_.get(), "next"_ns);
        coder->encodeConditionalObject_forKey(self.known_.get(), "known"_ns);
    }
    static Ref<NSObject> initWithCoder(ArchivedNode& self, NSCoder* coder)
    {
        self.name_ = decode<NSString>(coder, "name"_ns);
        self.next_ = decode<ArchivedNode>(coder, "next"_ns);
        self.known_ = coder->decodeObjectOfClass_forKey(ArchivedNode::cls(), "known"_ns);
        return &self;
    }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSSecureCoding" });
        t.classMethods({ { "supportsSecureCoding", imp<isSecure> } });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedNode, Coding)

template <> struct ArchivedScalars::Methods<struct Coding> {
    static void encode(ArchivedScalars& self, NSCoder* coder)
    {
        coder->encodeBool_forKey(self.yes_, "yes"_ns);
        coder->encodeInt_forKey(self.whole_, "whole"_ns);
        coder->encodeInt32_forKey(self.small_, "small"_ns);
        coder->encodeInt64_forKey(self.large_, "large"_ns);
        coder->encodeFloat_forKey(self.single_, "single"_ns);
        coder->encodeDouble_forKey(self.real_, "real"_ns);
        coder->encodeBytes_length_forKey(self.bytes_.data(), self.bytes_.size(), "bytes"_ns);
        coder->encodeRect_forKey(self.rect_, "rect"_ns);
    }
    static Ref<NSObject> initWithCoder(ArchivedScalars& self, NSCoder* coder)
    {
        self.yes_ = coder->decodeBoolForKey("yes"_ns);
        self.whole_ = coder->decodeIntForKey("whole"_ns);
        self.small_ = coder->decodeInt32ForKey("small"_ns);
        self.large_ = coder->decodeInt64ForKey("large"_ns);
        self.single_ = coder->decodeFloatForKey("single"_ns);
        self.real_ = coder->decodeDoubleForKey("real"_ns);
        NSUInteger length = 0;
        const std::uint8_t* bytes = coder->decodeBytesForKey_returnedLength("bytes"_ns, &length);
        self.bytes_.assign(reinterpret_cast<const char*>(bytes), length);
        self.rect_ = coder->decodeRectForKey("rect"_ns);
        return &self;
    }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSCoding" });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedScalars, Coding)

template <> struct ArchivedPlainly::Methods<struct Coding> {
    static bool isSecure(Class&) { return false; }
    static void encode(ArchivedPlainly&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(ArchivedPlainly& self, NSCoder*) { return &self; }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSCoding" });
        t.classMethods({ { "supportsSecureCoding", imp<isSecure> } });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(ArchivedPlainly, Coding)

}
