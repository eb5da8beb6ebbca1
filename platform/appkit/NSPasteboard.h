// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "foundation/StringConstant.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSArray;
class NSData;
class NSDictionary;

/// Names of pasteboards.
inline constexpr StringConstant<"NSGeneralPboard"> NSGeneralPboard; ///< the desktop's clipboard
inline constexpr StringConstant<"NSSelectionPboard">
    NSSelectionPboard; ///< what is selected somewhere, for the middle button
inline constexpr StringConstant<"NSFindPboard"> NSFindPboard;
inline constexpr StringConstant<"NSFontPboard"> NSFontPboard;
inline constexpr StringConstant<"NSRulerPboard"> NSRulerPboard;
inline constexpr StringConstant<"NSDragPboard"> NSDragPboard;

/// Types of what lies on a pasteboard; a program may use names of its own.
inline constexpr StringConstant<"public.utf8-plain-text"> NSPasteboardTypeString;
inline constexpr StringConstant<"public.html"> NSPasteboardTypeHTML;
inline constexpr StringConstant<"public.rtf"> NSPasteboardTypeRTF;
inline constexpr StringConstant<"public.png"> NSPasteboardTypePNG;
inline constexpr StringConstant<"public.tiff"> NSPasteboardTypeTIFF;
inline constexpr StringConstant<"public.url"> NSPasteboardTypeURL;
inline constexpr StringConstant<"public.file-url"> NSPasteboardTypeFileURL;
/// The same as `NSPasteboardTypeString`.
inline constexpr StringConstant<"NSStringPboardType"> NSStringPboardType;
/// An array of paths, as a property list; the desktop sees a list of URLs.
inline constexpr StringConstant<"NSFilenamesPboardType"> NSFilenamesPboardType;

/// Where data waits to be taken over by somebody else, in this program or another.
///
/// The general pasteboard is the desktop's clipboard, `NSSelectionPboard` its selection; the others belong to this
/// program. `changeCount` grows whenever the contents begin anew, whoever did it. An owner may promise types and
/// provide their data when somebody asks: `pasteboard:provideDataForType:`; it is told `pasteboardChangedOwner:` when
/// somebody else has taken the pasteboard.
/// Thread: main.
class NSPasteboard : public NSObject {
    BRINDLE_OBJECT(NSPasteboard, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSPasteboard> generalPasteboard() const
        {
            return send<"generalPasteboard", Ref<NSPasteboard>>();
        }
        /// Answers the pasteboard of a name, the same one each time. - Nil: the general one.
        Ref<NSPasteboard> pasteboardWithName(NSString* name) const
        {
            return send<"pasteboardWithName:", Ref<NSPasteboard>>(name);
        }
        Ref<NSPasteboard> pasteboardWithUniqueName() const
        {
            return send<"pasteboardWithUniqueName", Ref<NSPasteboard>>();
        }
    };

    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    NSInteger changeCount() const { return send<"changeCount", NSInteger>(); }

    // ---- writing

    /// Empties it and takes it over. - Returns: the new change count.
    NSInteger clearContents() { return send<"clearContents", NSInteger>(); }
    /// The same, and promises types in the order in which they are preferred.
    /// - owner: not kept; provides what has not been set. Nil when everything will be set.
    NSInteger declareTypes_owner(NSArray* types, NSObject* owner)
    {
        return send<"declareTypes:owner:", NSInteger>(types, owner);
    }
    NSInteger addTypes_owner(NSArray* types, NSObject* owner)
    {
        return send<"addTypes:owner:", NSInteger>(types, owner);
    }
    /// Sets data of a type, declared or new. - Returns: NO for nil, and when another program has it by now.
    bool setData_forType(NSData* data, NSString* type)
    {
        return send<"setData:forType:", bool>(data, type);
    }
    bool setString_forType(NSString* text, NSString* type)
    {
        return send<"setString:forType:", bool>(text, type);
    }
    /// - list: strings, numbers, dates, data, arrays and dictionaries.
    bool setPropertyList_forType(NSObject* list, NSString* type)
    {
        return send<"setPropertyList:forType:", bool>(list, type);
    }
    /// Adds strings, URLs, and objects that answer `writableTypesForPasteboard:` and `pasteboardPropertyListForType:`.
    bool writeObjects(NSArray* objects) { return send<"writeObjects:", bool>(objects); }

    // ---- reading

    /// Answers the types that are there, the preferred one first.
    Ref<NSArray> types() const { return send<"types", Ref<NSArray>>(); }
    /// Answers the first of the wanted types that is there, or nil.
    Ref<NSString> availableTypeFromArray(NSArray* wanted) const
    {
        return send<"availableTypeFromArray:", Ref<NSString>>(wanted);
    }
    bool canReadItemWithDataConformingToTypes(NSArray* types) const
    {
        return send<"canReadItemWithDataConformingToTypes:", bool>(types);
    }
    Ref<NSData> dataForType(NSString* type) const
    {
        return send<"dataForType:", Ref<NSData>>(type);
    }
    /// Answers text; bytes that are no UTF-8 are replaced. - Nil: when there is no data of the type.
    Ref<NSString> stringForType(NSString* type) const
    {
        return send<"stringForType:", Ref<NSString>>(type);
    }
    Ref<NSObject> propertyListForType(NSString* type) const
    {
        return send<"propertyListForType:", Ref<NSObject>>(type);
    }
    /// Answers objects of the first class that something can be made of: NSString, NSURL, or classes that answer
    /// `readableTypesForPasteboard:` and whose objects are made by `initWithPasteboardPropertyList:ofType:`.
    Ref<NSArray> readObjectsForClasses_options(NSArray* classes, NSDictionary* options) const
    {
        return send<"readObjectsForClasses:options:", Ref<NSArray>>(classes, options);
    }
    bool canReadObjectForClasses_options(NSArray* classes, NSDictionary* options) const
    {
        return send<"canReadObjectForClasses:options:", bool>(classes, options);
    }
    /// Forgets a pasteboard with a name of its own.
    void releaseGlobally() { send<"releaseGlobally">(); }

private:
    friend struct PasteboardAccess;
    std::shared_ptr<struct PasteboardState> state_;
};

}
