// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "NSURL.h"

namespace brindle {

namespace urls {

    /// The pieces of a URL in the making, with their escapes.
    struct OwnParts {
        std::optional<std::string> scheme, user, password, host, port, path, query, fragment;

        friend bool operator==(const OwnParts&, const OwnParts&) = default;
    };

}

/// A URL in pieces that can be changed. A piece is set without escapes, which are added where its place wants them,
/// or with them, by the operations with "percentEncoded" in their names.
///
/// - Nil: takes a piece away; the path becomes "".
/// - Raises: `NSInvalidArgumentException` for a scheme that is none, a negative port, and pieces with bad escapes or
///   characters that are not allowed at their place.
/// Thread: one at a time.
class NSURLComponents : public NSObject {
    BRINDLE_OBJECT(NSURLComponents, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: for text that is no URL.
        Ref<NSURLComponents> componentsWithString(const NSString* text) const
        {
            return send<"componentsWithString:", Ref<NSURLComponents>>(text);
        }
        /// - resolving: YES takes the absolute URL, NO the text as it was given.
        Ref<NSURLComponents> componentsWithURL_resolvingAgainstBaseURL(
            const NSURL* url, bool resolving) const
        {
            return send<"componentsWithURL:resolvingAgainstBaseURL:", Ref<NSURLComponents>>(
                url, resolving);
        }
    };

    Ref<NSURLComponents> initWithString(const NSString* text)
    {
        return send<"initWithString:", Ref<NSURLComponents>>(text);
    }
    Ref<NSURLComponents> initWithURL_resolvingAgainstBaseURL(const NSURL* url, bool resolving)
    {
        return send<"initWithURL:resolvingAgainstBaseURL:", Ref<NSURLComponents>>(url, resolving);
    }

    /// - Nil: when the pieces make no URL: behind a host a path must begin with "/", without one not with "//", and
    ///   without a scheme its first component has no colon.
    Ref<NSString> string() const { return send<"string", Ref<NSString>>(); }
    Ref<NSURL> URL() const { return send<"URL", Ref<NSURL>>(); }
    Ref<NSURL> URLRelativeToURL(const NSURL* base) const
    {
        return send<"URLRelativeToURL:", Ref<NSURL>>(base);
    }

    // ---- pieces without escapes

    Ref<NSString> scheme() const { return send<"scheme", Ref<NSString>>(); }
    void setScheme(const NSString* scheme) { send<"setScheme:">(scheme); }
    Ref<NSString> user() const { return send<"user", Ref<NSString>>(); }
    void setUser(const NSString* user) { send<"setUser:">(user); }
    Ref<NSString> password() const { return send<"password", Ref<NSString>>(); }
    void setPassword(const NSString* password) { send<"setPassword:">(password); }
    Ref<NSString> host() const { return send<"host", Ref<NSString>>(); }
    void setHost(const NSString* host) { send<"setHost:">(host); }
    Ref<NSNumber> port() const { return send<"port", Ref<NSNumber>>(); }
    void setPort(const NSNumber* port) { send<"setPort:">(port); }
    Ref<NSString> path() const { return send<"path", Ref<NSString>>(); }
    void setPath(const NSString* path) { send<"setPath:">(path); }
    Ref<NSString> query() const { return send<"query", Ref<NSString>>(); }
    void setQuery(const NSString* query) { send<"setQuery:">(query); }
    Ref<NSString> fragment() const { return send<"fragment", Ref<NSString>>(); }
    void setFragment(const NSString* fragment) { send<"setFragment:">(fragment); }

    // ---- pieces with escapes

    Ref<NSString> percentEncodedUser() const { return send<"percentEncodedUser", Ref<NSString>>(); }
    void setPercentEncodedUser(const NSString* user) { send<"setPercentEncodedUser:">(user); }
    Ref<NSString> percentEncodedPassword() const
    {
        return send<"percentEncodedPassword", Ref<NSString>>();
    }
    void setPercentEncodedPassword(const NSString* password)
    {
        send<"setPercentEncodedPassword:">(password);
    }
    Ref<NSString> percentEncodedHost() const { return send<"percentEncodedHost", Ref<NSString>>(); }
    void setPercentEncodedHost(const NSString* host) { send<"setPercentEncodedHost:">(host); }
    Ref<NSString> percentEncodedPath() const { return send<"percentEncodedPath", Ref<NSString>>(); }
    void setPercentEncodedPath(const NSString* path) { send<"setPercentEncodedPath:">(path); }
    Ref<NSString> percentEncodedQuery() const
    {
        return send<"percentEncodedQuery", Ref<NSString>>();
    }
    void setPercentEncodedQuery(const NSString* query) { send<"setPercentEncodedQuery:">(query); }
    Ref<NSString> percentEncodedFragment() const
    {
        return send<"percentEncodedFragment", Ref<NSString>>();
    }
    void setPercentEncodedFragment(const NSString* fragment)
    {
        send<"setPercentEncodedFragment:">(fragment);
    }

    // ---- parameters

    /// Answers the query cut at "&", each piece at its first "="; nil without a query.
    /// - Shape: NSURLQueryItems. One whose escapes are malformed keeps them.
    Ref<NSArray> queryItems() const { return send<"queryItems", Ref<NSArray>>(); }
    /// Joins the items to a query, "&" and "=" in them escaped; an empty array gives an empty query.
    void setQueryItems(const NSArray* items) { send<"setQueryItems:">(items); }

private:
    urls::OwnParts parts_;
};

}
