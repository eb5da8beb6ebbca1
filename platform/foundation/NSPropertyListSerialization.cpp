// SPDX-License-Identifier: Apache-2.0
#include "NSPropertyListSerialization.h"

#include "NSError.h"
#include "NSString.h"
#include "foundation/lists/BinaryListReaderPrivate.h"
#include "foundation/lists/PropertyListPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    std::string textOf(const lists::Failure& failure)
    {
        using Unit = lists::Failure::Place;
        if (failure.place == Unit::none)
            return failure.reason;
        return (failure.place == Unit::line ? "line " : "byte ") + std::to_string(failure.position)
            + ": " + failure.reason;
    }

    void report(Ref<NSError>* error, NSCocoaErrorCode code, const lists::Failure& failure)
    {
        if (error)
            reportError(
                error, code, { { NSDebugDescriptionErrorKey, stringFrom(textOf(failure)).get() } });
    }

    lists::Mutability mutabilityOf(NSPropertyListMutabilityOptions options)
    {
        return options & NSPropertyListMutableContainersAndLeaves ? lists::Mutability::leaves
            : options & NSPropertyListMutableContainers           ? lists::Mutability::containers
                                                                  : lists::Mutability::none;
    }

    Ref<NSObject> read(NSData* data, NSPropertyListMutabilityOptions options,
        NSPropertyListFormat* format, lists::Failure& failure)
    {
        if (!data) {
            failure.reason = "there is no data";
            return nullptr;
        }
        NSPropertyListFormat found {};
        Ref<NSObject> list = lists::read(bytesOf(data), mutabilityOf(options), found, failure);
        if (list && format)
            *format = found;
        return list;
    }

    Ref<NSData> write(NSObject* list, NSPropertyListFormat format, lists::Failure& failure)
    {
        if (!list)
            failure.reason = "there is no list";
        else if (format == NSPropertyListBinaryFormat_v1_0)
            return lists::writeBinary(list, failure);
        else if (format == NSPropertyListXMLFormat_v1_0)
            return lists::writeXML(list, failure);
        else
            failure.reason = "lists are not written in this format";
        return nullptr;
    }

}

template <> struct NSPropertyListSerialization::Methods<struct Conversion> {

    static Ref<NSObject> fromData(Class&, NSData* data, NSPropertyListReadOptions options,
        NSPropertyListFormat* format, Ref<NSError>* error)
    {
        lists::Failure failure;
        Ref<NSObject> list = read(data, options, format, failure);
        if (!list)
            report(error, NSPropertyListReadCorruptError, failure);
        return list;
    }
    static Ref<NSData> toData(Class&, NSObject* list, NSPropertyListFormat format,
        NSPropertyListWriteOptions, Ref<NSError>* error)
    {
        lists::Failure failure;
        Ref<NSData> data = write(list, format, failure);
        if (!data)
            report(error, NSPropertyListWriteStreamError, failure);
        return data;
    }
    static bool isValid(Class&, NSObject* list, NSPropertyListFormat format)
    {
        lists::Failure failure;
        if (format == NSPropertyListOpenStepFormat)
            return list && lists::fitsText(list, failure);
        return static_cast<bool>(write(list, format, failure));
    }
    static Ref<NSObject> fromDataDescribed(Class&, NSData* data,
        NSPropertyListMutabilityOptions option, NSPropertyListFormat* format, Ref<NSString>* error)
    {
        lists::Failure failure;
        Ref<NSObject> list = read(data, option, format, failure);
        if (!list && error)
            *error = stringFrom(textOf(failure));
        return list;
    }
    static Ref<NSData> toDataDescribed(
        Class&, NSObject* list, NSPropertyListFormat format, Ref<NSString>* error)
    {
        lists::Failure failure;
        Ref<NSData> data = write(list, format, failure);
        if (!data && error)
            *error = stringFrom(textOf(failure));
        return data;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "propertyListWithData:options:format:error:", imp<fromData> },
            { "dataWithPropertyList:format:options:error:", imp<toData> },
            { "propertyList:isValidForFormat:", imp<isValid> },
            { "propertyListFromData:mutabilityOption:format:errorDescription:",
                imp<fromDataDescribed> },
            { "dataFromPropertyList:format:errorDescription:", imp<toDataDescribed> },
        });
    }
};
BRINDLE_RECORD(NSPropertyListSerialization, Conversion)

}
