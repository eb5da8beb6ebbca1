// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSCoder.h"

namespace brindle {

class NSData;

namespace archives {
    class Reader;
}

/// Reads keyed archives, binary or XML, whoever made them.
///
/// An object is allocated, gets `initWithCoder:` and then `awakeAfterUsingCoder:`. Objects that refer to each other in a
/// circle meet each other before the inner one is complete. Missing keys are nil; keys nobody asks for are left alone.
/// Unless secure coding is required, the classes named by `decodeObjectOfClass:forKey:` are ignored. Where it is required, an object is
/// built only when its class is one of those that the decode in progress allows, and supports secure coding.
/// - Raises: `NSInvalidArgumentException`, "*** -[NSKeyedUnarchiver initForReadingWithData:]: incomprehensible archive (0x62,
///   …)" for data that is no archive; `NSInvalidUnarchiveOperationException` for an unknown class, "*** -[NSKeyedUnarchiver
///   decodeObjectForKey:]: cannot decode object of class (X) for key (k); …", for a class that is not allowed, for references and
///   structures that make no sense, and for objects nested more than 10,000 deep.
/// Thread: one at a time.
class NSKeyedUnarchiver : public NSCoder {
    BRINDLE_OBJECT(NSKeyedUnarchiver, NSCoder)

public:
    struct Meta : NSCoder::Meta {
        /// Answers the object under "root", unchecked: for data of one's own.
        /// - Nil: for nil data, and where nil was archived.
        Ref<NSObject> unarchiveObjectWithData(const NSData* data) const
        {
            return send<"unarchiveObjectWithData:", Ref<NSObject>>(data);
        }
        /// - Nil: also for a file that cannot be read.
        Ref<NSObject> unarchiveObjectWithFile(const NSString* path) const
        {
            return send<"unarchiveObjectWithFile:", Ref<NSObject>>(path);
        }
        /// The same with errors instead of exceptions.
        Ref<NSObject> unarchiveTopLevelObjectWithData_error(
            const NSData* data, Ref<NSError>* error) const
        {
            return send<"unarchiveTopLevelObjectWithData:error:", Ref<NSObject>>(data, error);
        }
        /// Answers the object under "root" with secure coding: for data of unknown origin.
        Ref<NSObject> unarchivedObjectOfClass_fromData_error(
            Class* cls, const NSData* data, Ref<NSError>* error) const
        {
            return send<"unarchivedObjectOfClass:fromData:error:", Ref<NSObject>>(cls, data, error);
        }
        /// - classes: a set of class objects, for the root and for what it holds.
        Ref<NSObject> unarchivedObjectOfClasses_fromData_error(
            NSSet* classes, const NSData* data, Ref<NSError>* error) const
        {
            return send<"unarchivedObjectOfClasses:fromData:error:", Ref<NSObject>>(
                classes, data, error);
        }
        /// Sets the class that every unarchiver builds where this name was archived; nil: the class of the name.
        void setClass_forClassName(Class* cls, NSString* name) const
        {
            send<"setClass:forClassName:">(cls, name);
        }
        Class* classForClassName(NSString* name) const
        {
            return send<"classForClassName:", Class*>(name);
        }
    };

    /// Begins without secure coding and with exceptions.
    Ref<NSKeyedUnarchiver> initForReadingWithData(const NSData* data)
    {
        return send<"initForReadingWithData:", Ref<NSKeyedUnarchiver>>(data);
    }
    /// Begins with secure coding and with `NSDecodingFailurePolicySetErrorAndReturn`.
    /// - Nil: for data that is no archive; `error` says why.
    Ref<NSKeyedUnarchiver> initForReadingFromData_error(const NSData* data, Ref<NSError>* error)
    {
        return send<"initForReadingFromData:error:", Ref<NSKeyedUnarchiver>>(data, error);
    }
    /// Lets the archive go; later decodes raise.
    void finishDecoding() { send<"finishDecoding">(); }
    void setRequiresSecureCoding(bool secure) { send<"setRequiresSecureCoding:">(secure); }
    void setDecodingFailurePolicy(NSDecodingFailurePolicy policy)
    {
        send<"setDecodingFailurePolicy:">(policy);
    }

    /// Not kept. It may answer:
    /// - `unarchiver:cannotDecodeObjectOfClassName:originalClasses:`: a class for a name nobody knows, or nil;
    /// - `unarchiver:didDecodeObject:`: what takes the object's place, or nil;
    /// - `unarchiver:willReplaceObject:withObject:`, `unarchiverWillFinish:`, `unarchiverDidFinish:`.
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }
    /// Classes of this unarchiver come before those of the class.
    void setClass_forClassName(Class* cls, NSString* name)
    {
        send<"setClass:forClassName:">(cls, name);
    }
    Class* classForClassName(NSString* name) const
    {
        return send<"classForClassName:", Class*>(name);
    }

private:
    friend struct UnarchiverAccess;

    std::unique_ptr<archives::Reader, void (*)(archives::Reader*)> reader_ { nullptr, nullptr };
    NSDecodingFailurePolicy policy_ = NSDecodingFailurePolicyRaiseException;
};

}
