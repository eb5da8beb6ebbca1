// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSData;
class NSError;

enum NSPropertyListFormat : NSUInteger {
    NSPropertyListOpenStepFormat = 1, ///< text in braces and parentheses; read only
    NSPropertyListXMLFormat_v1_0 = 100,
    NSPropertyListBinaryFormat_v1_0 = 200,
};

/// What of a list that was read can be changed.
using NSPropertyListMutabilityOptions = NSUInteger;
enum : NSUInteger {
    NSPropertyListImmutable = 0,
    NSPropertyListMutableContainers = 1,
    NSPropertyListMutableContainersAndLeaves = 2, ///< strings and data too; keys never
};
using NSPropertyListReadOptions = NSPropertyListMutabilityOptions;
using NSPropertyListWriteOptions = NSUInteger; ///< 0

/// Turns property lists into bytes and back. A property list is a string, number, boolean, date, data or
/// `PropertyListUID`, or an array or dictionary of them; a dictionary's keys are strings.
///
/// Reading takes what others write: binary lists, XML in UTF-8, UTF-16 or UTF-32, and old-style text, which includes
/// strings files and a single bare word. Nothing in a list makes the reader open a file.
/// Both ways refuse containers nested more than 512 deep and containers that contain themselves. Children shared by
/// several parents stay shared in binary lists; in XML each is written again, up to 64 MB and 20 times the size of the
/// objects. XML keeps whole seconds of a date, and it has no place for control characters in a string.
///
/// - Errors: domain `NSCocoaErrorDomain`, code 3840 for bytes that are no list and 3851 for objects that cannot be
///   written; "NSDebugDescription" names the line, or in binary lists the offset of the byte, and the reason.
/// Thread: any.
class NSPropertyListSerialization : public NSObject {
    BRINDLE_OBJECT(NSPropertyListSerialization, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - format: set to the format that was read; may be nullptr.
        /// - Nil: for bytes that are no property list, nil and empty data included.
        Ref<NSObject> propertyListWithData_options_format_error(NSData* data,
            NSPropertyListReadOptions options, NSPropertyListFormat* format,
            Ref<NSError>* error) const
        {
            return send<"propertyListWithData:options:format:error:", Ref<NSObject>>(
                data, options, format, error);
        }
        /// - format: XML or binary; dictionaries are written in their own order.
        /// - Nil: for nil, for what is no property list, and for any other format.
        Ref<NSData> dataWithPropertyList_format_options_error(NSObject* list,
            NSPropertyListFormat format, NSPropertyListWriteOptions options,
            Ref<NSError>* error) const
        {
            return send<"dataWithPropertyList:format:options:error:", Ref<NSData>>(
                list, format, options, error);
        }
        /// Answers whether an object could be written.
        bool propertyList_isValidForFormat(NSObject* list, NSPropertyListFormat format) const
        {
            return send<"propertyList:isValidForFormat:", bool>(list, format);
        }
        /// The older form: `error` receives the text of "NSDebugDescription".
        Ref<NSObject> propertyListFromData_mutabilityOption_format_errorDescription(NSData* data,
            NSPropertyListMutabilityOptions option, NSPropertyListFormat* format,
            Ref<NSString>* error) const
        {
            return send<"propertyListFromData:mutabilityOption:format:errorDescription:",
                Ref<NSObject>>(data, option, format, error);
        }
        Ref<NSData> dataFromPropertyList_format_errorDescription(
            NSObject* list, NSPropertyListFormat format, Ref<NSString>* error) const
        {
            return send<"dataFromPropertyList:format:errorDescription:", Ref<NSData>>(
                list, format, error);
        }
    };
};

}
