// SPDX-License-Identifier: Apache-2.0
#include "NSError.h"

#include "NSDictionary.h"
#include "NSMutableDictionary.h"
#include "NSNumber.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

#include <cerrno>
#include <system_error>

namespace brindle {

namespace {

    Ref<NSString> entry(NSError& error, NSString* key)
    {
        const auto userInfo = error.userInfo();
        return cast<NSString>(userInfo->objectForKey(key));
    }

    std::string numbered(NSError& error)
    {
        return utf8Of(error.domain().get()) + " error " + std::to_string(error.code()) + ".";
    }

    NSCocoaErrorCode readingCode(int systemError)
    {
        switch (systemError) {
        case ENOENT:
        case ENOTDIR:
            return NSFileReadNoSuchFileError;
        case EACCES:
        case EPERM:
            return NSFileReadNoPermissionError;
        case ENAMETOOLONG:
            return NSFileReadInvalidFileNameError;
        case EFBIG:
        case ENOMEM:
            return NSFileReadTooLargeError;
        default:
            return NSFileReadUnknownError;
        }
    }

    NSCocoaErrorCode writingCode(int systemError)
    {
        switch (systemError) {
        case ENOENT:
        case ENOTDIR:
            return NSFileNoSuchFileError;
        case EACCES:
        case EPERM:
            return NSFileWriteNoPermissionError;
        case ENAMETOOLONG:
            return NSFileWriteInvalidFileNameError;
        case EEXIST:
        case ENOTEMPTY:
            return NSFileWriteFileExistsError;
        case EDQUOT:
        case ENOSPC:
            return NSFileWriteOutOfSpaceError;
        case EROFS:
            return NSFileWriteVolumeReadOnlyError;
        default:
            return NSFileWriteUnknownError;
        }
    }

}

template <> struct NSError::Methods<struct Failure> {

    static Ref<NSError> make(Class& self, NSString* domain, NSInteger code, NSDictionary* userInfo)
    {
        return cast<NSError>(self.send<"alloc", Ref<NSObject>>())
            ->initWithDomain_code_userInfo(domain, code, userInfo);
    }
    static Ref<NSError> init(
        NSError& self, NSString* domain, NSInteger code, NSDictionary* userInfo)
    {
        if (!domain)
            raise("NSInvalidArgumentException",
                "*** -[NSError initWithDomain:code:userInfo:]: nil domain");
        self.domain_ = cast<NSString>(domain->copy());
        self.code_ = code;
        self.userInfo_ = userInfo ? cast<NSDictionary>(userInfo->copy()) : Ref<NSDictionary>();
        return &self;
    }
    static Ref<NSString> domain(NSError& self)
    {
        return self.domain_ ? self.domain_ : Ref<NSString>(""_ns); // after a bare init
    }
    static NSInteger code(NSError& self) { return self.code_; }
    static Ref<NSDictionary> userInfo(NSError& self)
    {
        return self.userInfo_ ? self.userInfo_ : makeDictionary({});
    }

    static Ref<NSString> localizedDescription(NSError& self)
    {
        if (auto given = entry(self, NSLocalizedDescriptionKey))
            return given;
        const std::string start = "The operation couldn’t be completed. ";
        if (const auto reason = self.localizedFailureReason())
            return stringFrom(start + utf8Of(reason.get()));
        return stringFrom(start + "(" + numbered(self) + ")");
    }
    static Ref<NSString> localizedFailureReason(NSError& self)
    {
        if (auto given = entry(self, NSLocalizedFailureReasonErrorKey))
            return given;
        if (self.domain()->isEqualToString(NSPOSIXErrorDomain))
            return stringFrom(std::generic_category().message(static_cast<int>(self.code())));
        return nullptr;
    }
    static Ref<NSString> localizedRecoverySuggestion(NSError& self)
    {
        return entry(self, NSLocalizedRecoverySuggestionErrorKey);
    }

    static Ref<NSString> description(NSError& self)
    {
        std::string text = "Error Domain=" + utf8Of(self.domain().get())
            + " Code=" + std::to_string(self.code()) + " \""
            + utf8Of(self.localizedDescription().get()) + "\"";
        if (const auto userInfo = self.userInfo(); userInfo->count())
            text += " UserInfo=" + utf8Of(userInfo->description().get());
        return stringFrom(text);
    }
    static bool isEqual(NSError& self, NSObject* object)
    {
        if (!object || !object->isKindOfClass(NSError::cls()))
            return false;
        auto* const other = cast<NSError>(object);
        return self.code() == other->code() && self.domain()->isEqualToString(other->domain().get())
            && self.userInfo()->isEqualToDictionary(other->userInfo().get());
    }
    static std::uint64_t hash(NSError& self)
    {
        return self.domain()->hash() ^ static_cast<std::uint64_t>(self.code());
    }
    static Ref<NSObject> copyWithZone(NSError& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({ { "errorWithDomain:code:userInfo:", imp<make> } });
        t.methods({
            { "initWithDomain:code:userInfo:", imp<init> },
            { "domain", imp<domain> },
            { "code", imp<code> },
            { "userInfo", imp<userInfo> },
            { "localizedDescription", imp<localizedDescription> },
            { "localizedFailureReason", imp<localizedFailureReason> },
            { "localizedRecoverySuggestion", imp<localizedRecoverySuggestion> },
            { "description", imp<description> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSError, Failure)

void reportError(Ref<NSError>* error, NSCocoaErrorCode code,
    std::initializer_list<std::pair<NSString*, NSObject*>> userInfo)
{
    if (!error)
        return;
    const auto facts = NSMutableDictionary::cls().dictionary();
    for (const auto& [key, value] : userInfo)
        if (value)
            facts->setObject_forKey(value, key);
    *error = NSError::cls().errorWithDomain_code_userInfo(NSCocoaErrorDomain, code, facts.get());
}

void reportFileError(Ref<NSError>* error, int systemError, bool writing, NSString* path)
{
    if (!error)
        return;
    const auto below
        = NSError::cls().errorWithDomain_code_userInfo(NSPOSIXErrorDomain, systemError, nullptr);
    reportError(error, writing ? writingCode(systemError) : readingCode(systemError),
        { { NSFilePathErrorKey, path }, { NSUnderlyingErrorKey, below.get() } });
}

}
