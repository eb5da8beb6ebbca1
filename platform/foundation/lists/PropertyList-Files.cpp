// SPDX-License-Identifier: Apache-2.0
#include "PropertyListPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSStringPrivate.h"
#include "runtime/Table.h"

// What collections and strings do with property lists.

namespace brindle {

namespace {

    /// Answers the list in a file when it is of this class.
    template <class T> Ref<T> readFile(const NSString* path)
    {
        const Ref<NSData> data = NSData::cls().dataWithContentsOfFile(path);
        const Ref<NSObject> list
            = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                data.get(), NSPropertyListImmutable, nullptr, nullptr);
        return list && list->isKindOfClass(classOf<T>()) ? cast<T>(list) : nullptr;
    }

    bool writeFile(NSObject& list, const NSString* path, bool atomically)
    {
        const Ref<NSData> data
            = NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
                &list, NSPropertyListXMLFormat_v1_0, 0, nullptr);
        return data && data->writeToFile_atomically(path, atomically);
    }

    /// Hands the text of a string to a reader of lists.
    template <class Read> Ref<NSObject> readString(const NSString& self, Read read)
    {
        const strings::Contents text(&self);
        const bool isGood = text->isNarrow()
            || lists::isPaired(text->size(), [&](std::size_t i) { return text.view()[i]; });
        return isGood ? read(strings::toUtf8(text)) : nullptr;
    }

}

template <> struct NSArray::Methods<struct Files> {

    static Ref<NSArray> arrayWithContentsOfFile(Class& self, NSString* path)
    {
        return cast<NSArray>(NSObject::Meta { &self }.alloc())->initWithContentsOfFile(path);
    }
    static Ref<NSArray> initWithContentsOfFile(NSArray& self, NSString* path)
    {
        const Ref<NSArray> list = readFile<NSArray>(path);
        return list ? self.initWithArray(list.get()) : nullptr;
    }
    static bool writeToFile(NSArray& self, NSString* path, bool atomically)
    {
        return writeFile(self, path, atomically);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "arrayWithContentsOfFile:", imp<arrayWithContentsOfFile> } });
        t.methods({
            { "initWithContentsOfFile:", imp<initWithContentsOfFile> },
            { "writeToFile:atomically:", imp<writeToFile> },
        });
    }
};
BRINDLE_RECORD(NSArray, Files)

template <> struct NSDictionary::Methods<struct Files> {

    static Ref<NSDictionary> dictionaryWithContentsOfFile(Class& self, NSString* path)
    {
        return cast<NSDictionary>(NSObject::Meta { &self }.alloc())->initWithContentsOfFile(path);
    }
    static Ref<NSDictionary> initWithContentsOfFile(NSDictionary& self, NSString* path)
    {
        const Ref<NSDictionary> list = readFile<NSDictionary>(path);
        return list ? self.initWithDictionary(list.get()) : nullptr;
    }
    static bool writeToFile(NSDictionary& self, NSString* path, bool atomically)
    {
        return writeFile(self, path, atomically);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "dictionaryWithContentsOfFile:", imp<dictionaryWithContentsOfFile> } });
        t.methods({
            { "initWithContentsOfFile:", imp<initWithContentsOfFile> },
            { "writeToFile:atomically:", imp<writeToFile> },
        });
    }
};
BRINDLE_RECORD(NSDictionary, Files)

template <> struct NSString::Methods<struct PropertyLists> {

    static Ref<NSObject> propertyList(NSString& self)
    {
        return readString(self, [](const std::string& utf8) {
            NSPropertyListFormat format {};
            lists::Failure failure;
            return lists::readAnyText(utf8, lists::Mutability::none, format, failure);
        });
    }
    static Ref<NSDictionary> propertyListFromStringsFileFormat(NSString& self)
    {
        return cast<NSDictionary>(readString(self, [](const std::string& utf8) {
            lists::Failure failure;
            return lists::readStrings(utf8, failure);
        }));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "propertyList", imp<propertyList> },
            { "propertyListFromStringsFileFormat", imp<propertyListFromStringsFileFormat> },
        });
    }
};
BRINDLE_RECORD(NSString, PropertyLists)

}
