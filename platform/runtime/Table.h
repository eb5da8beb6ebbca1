// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>

#include "NSObject.h"
#include "Property.h"

namespace brindle {

namespace tables {

    constexpr unsigned colonsIn(const char* name)
    {
        unsigned colons = 0;
        for (; *name; ++name)
            colons += *name == ':';
        return colons;
    }

    /// Turns `R function(Self&, A…)` into the plain C function `R call(Self*, SEL, A…)`.
    template <auto Function> struct Imp;
    template <class R, class S, class... A, R (*Function)(S&, A...)> struct Imp<Function> {
        static constexpr unsigned parameters = sizeof...(A);
        static constexpr const Signature& signature = signatureOf<R, typename Abi<A>::C...>;
        static constexpr const char* details = closures::detailedTypes<R, A...>.text;

        static typename Abi<R>::C call(S* self, SEL, typename Abi<A>::C... a)
        {
            if constexpr (std::is_void_v<R>)
                Function(*self, Abi<A>::in(a)...);
            else
                return Abi<R>::out(Function(*self, Abi<A>::in(a)...));
        }
        static IMP address() { return reinterpret_cast<IMP>(&call); }
    };

    /// Takes a C variadic function `R function(Self*, SEL, A…, ...)` as it is.
    template <auto Function> struct Variadic;
    template <class R, class S, class... A, R (*Function)(S*, SEL, A..., ...)>
    struct Variadic<Function> {
        static constexpr unsigned parameters = sizeof...(A);
        static constexpr const Signature& signature = signatureOf<R, A...>;
        static constexpr const char* details = closures::variadicTypes<R, A...>.text;
        static IMP address() { return reinterpret_cast<IMP>(Function); }
    };

}

/// The implementation made from a function: `{"setFrame:", imp<setFrame>}`.
template <auto Function> inline constexpr tables::Imp<Function> imp {};
/// The same for an operation with variable arguments, written as a C variadic function.
template <auto Function> inline constexpr tables::Variadic<Function> variadic {};

/// One operation of a class: its selector and its implementation. The colons are counted by the compiler.
struct Row {
    const char* name;
    SEL sel;
    const Signature* signature;
    IMP (*address)();
    const char* details; ///< its types with classes and the signatures of closures

    template <class Implementation>
    consteval Row(const char* selectorName, const Implementation&)
        : name(selectorName)
        , sel(selectorOf(selectorName))
        , signature(&Implementation::signature)
        , address(&Implementation::address)
        , details(Implementation::details)
    {
        if (tables::colonsIn(selectorName) != Implementation::parameters)
            throw "the selector's colons and the function's parameters differ in number";
    }
};

/// Receives what a class or an extension declares while the runtime realises the class.
class Builder {
public:
    Builder(Class* cls, bool isExtension, const char* topic)
        : cls_(cls)
        , isExtension_(isExtension)
        , topic_(topic)
    {
    }

    /// Declares instance operations. One selector twice in a class, or in two extensions of it, ends the process
    /// with a line that names both places; an extension replaces the class's own.
    BRINDLE_EXPORT void methods(std::initializer_list<Row> rows);
    BRINDLE_EXPORT void classMethods(std::initializer_list<Row> rows);
    /// Declares properties in the order in which they are listed. Accessors that a table writes itself win
    /// over generated ones.
    BRINDLE_EXPORT void properties(std::initializer_list<PropertyRow> rows);
    /// Declares fields that are no properties: `t.ivars({ivar<&NSView::frame_>("_frame")})`.
    BRINDLE_EXPORT void ivars(std::initializer_list<IvarRow> rows);
    /// Declares which protocols the class adopts, by name: `t.conformsTo({"NSCopying"})`.
    BRINDLE_EXPORT void conformsTo(std::initializer_list<const char*> protocols);

private:
    Class* cls_;
    bool isExtension_;
    const char* topic_;
};

/// One topic of a class, or one extension: constant data that the runtime reads when the class is first needed.
struct Record {
    const char* name;
    const char* parent; ///< nullptr marks an extension; "" the root
    const char* topic;
    void (*table)(Builder&);
    void (*load)(Class&); ///< sent once, before the program's first statement; may be nullptr
    std::uint32_t size;
    void (*construct)(void*);
    void (*destruct)(void*);
};

/// Makes the records of one image known and then runs their `load` functions. Called once for an image, by the
/// initialiser below.
BRINDLE_EXPORT void announceRecords(const Record* const* begin, const Record* const* end);

namespace tables {

    template <class Topic> constexpr auto loadOf() -> void (*)(Class&)
    {
        if constexpr (requires { &Topic::load; })
            return &Topic::load;
        else
            return nullptr;
    }
    template <class T> constexpr const char* parentOf()
    {
        if constexpr (std::is_same_v<T, NSObject>)
            return "";
        else
            return T::Parent::kName;
    }

    extern "C" {
    [[gnu::visibility("hidden"), gnu::weak]] extern const Record* const
        __start_brindle_records[]; // NOLINT: the linker's names
    [[gnu::visibility("hidden"),
        gnu::weak]] extern const Record* const __stop_brindle_records[]; // NOLINT
    }

    // The one initialiser of an image: it only announces the section.
    [[gnu::visibility("hidden")]] inline const bool announced
        = (announceRecords(__start_brindle_records, __stop_brindle_records), true);

}

#define BRINDLE_RECORD_ENTRY(id)                                                                   \
    [[gnu::section("brindle_records"), gnu::used,                                                  \
        gnu::retain]] constinit const ::brindle::Record* const id##Entry                           \
        = &id

/// Puts `T::Methods<Topic>` on record. Stands in the source file, after the specialisation.
#define BRINDLE_RECORD(T, Topic)                                                                   \
    namespace {                                                                                    \
        constexpr ::brindle::Record T##Topic##Record { T::kName, ::brindle::tables::parentOf<T>(), \
            #Topic, &T::Methods<struct Topic>::table,                                              \
            ::brindle::tables::loadOf<T::Methods<struct Topic>>(), sizeof(T),                      \
            &::brindle::Lifecycle<T>::construct, &::brindle::Lifecycle<T>::destruct };             \
        BRINDLE_RECORD_ENTRY(T##Topic##Record);                                                    \
    }

/// Puts an extension of class `T` on record: `Extension` is a structure with a static `table(Builder&)`.
#define BRINDLE_EXTENSION(T, Extension)                                                            \
    namespace {                                                                                    \
        constexpr ::brindle::Record T##Extension##Record { T::kName, nullptr, #Extension,          \
            &Extension::table, ::brindle::tables::loadOf<Extension>(), 0, nullptr, nullptr };      \
        BRINDLE_RECORD_ENTRY(T##Extension##Record);                                                \
    }

}
