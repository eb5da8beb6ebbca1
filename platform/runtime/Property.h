// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>
#include <tuple>
#include <type_traits>

#include "Block.h"

namespace brindle {

/// How a property is stored and read; bits of `PropertyRow::flags`.
enum PropertyFlag : unsigned {
    kPropertyReadOnly = 1,
    kPropertyCopy = 2,
    kPropertyRetain = 4,
    kPropertyWeak = 8,
    kPropertyDynamic = 16,
    kPropertyNonatomic = 32,
};

/// A field known by name, for introspection and key-value access.
struct IvarRow {
    const char* name;
    const char* encoding;
    std::size_t (*offset)();
    unsigned flags; ///< how an object field is kept: retain, copy, weak or none of them
};

/// One declared property: metadata and the accessors generated from its field.
struct PropertyRow {
    const char* name;
    const char* encoding; ///< as in attribute strings: `@"NSString"`, `d`
    unsigned flags;
    const char* getter; ///< custom selector, or nullptr
    const char* setter;
    const char* ivar; ///< nullptr: "_" and the name; "" for a computed property
    std::size_t (*offset)();
    const Signature* getterSignature; ///< nullptr for a computed property
    IMP (*getterAddress)();
    const Signature* setterSignature;
    IMP (*setterAddress)();
    const char* getterDetails; ///< as in `Row`
    const char* setterDetails;
};

/// Exclusive access to one property of one object, for values too large to be read in one go.
class BRINDLE_EXPORT PropertyLock {
public:
    explicit PropertyLock(const void* field);
    ~PropertyLock();
    PropertyLock(const PropertyLock&) = delete;
    PropertyLock& operator=(const PropertyLock&) = delete;

private:
    std::atomic<bool>* lock_;
};

namespace properties {

    template <unsigned Bits> struct Flag { };
    struct Getter {
        const char* selector;
    };
    struct Setter {
        const char* selector;
    };
    struct Ivar {
        const char* name;
    };
    struct Typed {
        const char* encoding;
    };

    template <class T> inline constexpr bool isWeak = false;
    template <class T> inline constexpr bool isWeak<WeakRef<T>> = true;

    template <class O> inline constexpr unsigned bitsOf = 0;
    template <unsigned Bits> inline constexpr unsigned bitsOf<Flag<Bits>> = Bits;

    template <class T> struct Pointee;
    template <class T> struct Pointee<T*> {
        using Type = T;
    };
    template <class T> struct Pointee<WeakRef<T>> {
        using Type = T;
    };
    template <encoding::Owner T> struct Pointee<T> {
        using Type = typename T::Owned;
    };

    /// The encoding of a field's type with the class's name where there is one.
    template <class F> constexpr encoding::Buffer describe()
    {
        encoding::Buffer out;
        if constexpr (requires { typename Pointee<F>::Type; }) {
            using P = typename Pointee<F>::Type;
            if constexpr (std::is_same_v<P, Class>)
                out.add("#");
            else if constexpr (encoding::isClosure<P>)
                out.add("@?");
            else if constexpr (encoding::Hidden<P>) {
                out.add("^");
                out.add(Opaque<P>::encoding);
            } else if constexpr (std::is_same_v<P, NSObject>)
                out.add("@");
            else if constexpr (requires { P::kName; }) {
                out.add("@\"");
                out.add(P::kName);
                out.add("\"");
            } else
                encoding::appendPointer<P>(out);
        } else
            encoding::append<F>(out);
        return out;
    }
    template <class F>
    inline constexpr encoding::Exact<describe<F>().length> typeText { describe<F>() };

    /// What accessors of a field answer and take: a pointer for every way of holding an object.
    template <class F> struct Passed {
        using Type = F;
    };
    template <class F>
        requires requires { typename Pointee<F>::Type; }
    struct Passed<F> {
        using Type = typename Pointee<F>::Type*;
    };

    /// Takes one more count, or makes a copy by `copy`, for a copied property.
    BRINDLE_EXPORT NSObject* copyObject(NSObject* object);

    template <auto Field> struct Access;
    template <class T, class F, F T::*Field> struct Access<Field> {
        using Object = T;
        using Value = F;

        static std::size_t offset()
        {
            // No object is touched: only the distance is asked for.
            auto* const object = reinterpret_cast<T*>(std::uintptr_t { 4096 });
            return static_cast<std::size_t>(
                reinterpret_cast<char*>(&(object->*Field)) - reinterpret_cast<char*>(object));
        }
    };

    /// The accessors of a field that holds a scalar or a structure.
    template <auto Field, unsigned Flags> struct Plain {
        using T = typename Access<Field>::Object;
        using F = typename Access<Field>::Value;
        static constexpr bool atomic = !(Flags & kPropertyNonatomic);
        static constexpr bool word = sizeof(F) <= sizeof(void*) && std::is_scalar_v<F>;

        static F get(T* self, SEL)
        {
            if constexpr (!atomic)
                return self->*Field;
            else if constexpr (word)
                return std::atomic_ref<F>(self->*Field).load(std::memory_order_acquire);
            else {
                const PropertyLock lock(&(self->*Field));
                return self->*Field;
            }
        }
        static void set(T* self, SEL, F value)
        {
            if constexpr (!atomic)
                self->*Field = value;
            else if constexpr (word)
                std::atomic_ref<F>(self->*Field).store(value, std::memory_order_release);
            else {
                const PropertyLock lock(&(self->*Field));
                self->*Field = value;
            }
        }
    };

    /// The accessors of a field that holds an object: an owner, a weak reference or a bare pointer.
    template <auto Field, unsigned Flags> struct Reference {
        using T = typename Access<Field>::Object;
        using F = typename Access<Field>::Value;
        using P = typename Pointee<F>::Type;
        static constexpr bool atomic = !(Flags & kPropertyNonatomic);

        static Ref<P> read(F& field)
        {
            if constexpr (isWeak<F>)
                return field.get();
            else
                return Ref<P>(field);
        }
        static P* get(T* self, SEL)
        {
            if constexpr (atomic) {
                const PropertyLock lock(&(self->*Field));
                return read(self->*Field).leak();
            } else
                return read(self->*Field).leak();
        }
        static F make(P* value)
        {
            if constexpr ((Flags & kPropertyCopy) != 0)
                return F::adopt(static_cast<P*>(copyObject(value)));
            else
                return F(value);
        }
        static void set(T* self, SEL, P* value)
        {
            F fresh = make(value);
            if constexpr (atomic) {
                const PropertyLock lock(&(self->*Field));
                std::swap(self->*Field, fresh);
            } else
                std::swap(self->*Field, fresh);
        } // the old value goes last, when the new one is in place and no lock is held
    };

    template <class F> concept ObjectField = requires { typename Pointee<F>::Type; }
        && (isWeak<F> || encoding::Owner<F> || encodingOf<F>.view() == "@"
            || encodingOf<F>.view() == "#");

    template <auto Field, unsigned Flags>
    using Accessors = std::conditional_t<ObjectField<typename Access<Field>::Value>,
        Reference<Field, Flags>, Plain<Field, Flags>>;

    template <class F, unsigned Given> constexpr unsigned storageOf()
    {
        if constexpr (isWeak<F>)
            return Given | kPropertyWeak;
        else if constexpr (encoding::Owner<F> && !(Given & kPropertyCopy))
            return Given | kPropertyRetain;
        else
            return Given;
    }

    template <auto Function> struct AccessorImp;
    template <class R, class T, class... A, R (*Function)(T*, SEL, A...)>
    struct AccessorImp<Function> {
        static constexpr const Signature& signature
            = dispatch::signature<dispatch::Common<R>, dispatch::Common<A>...>;
        static IMP address() { return reinterpret_cast<IMP>(Function); }
    };

    constexpr void apply(PropertyRow& row, Getter g) { row.getter = g.selector; }
    constexpr void apply(PropertyRow& row, Setter s) { row.setter = s.selector; }
    constexpr void apply(PropertyRow& row, Ivar i) { row.ivar = i.name; }
    constexpr void apply(PropertyRow& row, Typed t) { row.encoding = t.encoding; }
    template <unsigned Bits> constexpr void apply(PropertyRow&, Flag<Bits>) { }

}

// What may stand behind a property's name in a table. Properties are atomic unless they say otherwise; owners
// retain unless they copy.
inline constexpr properties::Flag<kPropertyCopy> copied {};
inline constexpr properties::Flag<kPropertyReadOnly> readonly {};
inline constexpr properties::Flag<kPropertyNonatomic> nonatomic {};
inline constexpr properties::Flag<kPropertyDynamic> dynamic {};
/// A getter of another name: `getter("isOn")`.
constexpr properties::Getter getter(const char* selector) { return { selector }; }
/// A setter of another name, with its colon: `setter("setOn:")`.
constexpr properties::Setter setter(const char* selector) { return { selector }; }
/// The name of the backing variable where it is not "_" and the property's name.
constexpr properties::Ivar ivarName(const char* name) { return { name }; }
/// Another type text than the field's: `typed("@\"<NSCopying>\"")`.
constexpr properties::Typed typed(const char* encoding) { return { encoding }; }

/// A property backed by a field: `property<&NSView::toolTip_>("toolTip", copied, nonatomic)`.
template <auto Field, class... Options>
constexpr PropertyRow property(const char* name, Options... options)
{
    using F = typename properties::Access<Field>::Value;
    constexpr unsigned flags = properties::storageOf<F, (properties::bitsOf<Options> | ... | 0u)>();
    using A = properties::Accessors<Field, flags>;
    using Get = properties::AccessorImp<&A::get>;
    PropertyRow row { name, properties::typeText<F>.text, flags, nullptr, nullptr, nullptr,
        &properties::Access<Field>::offset, &Get::signature, &Get::address, nullptr, nullptr,
        closures::detailedTypes<typename properties::Passed<F>::Type>.text,
        closures::detailedTypes<void, typename properties::Passed<F>::Type>.text };
    if constexpr (!(flags & kPropertyReadOnly)) {
        using Set = properties::AccessorImp<&A::set>;
        row.setterSignature = &Set::signature;
        row.setterAddress = &Set::address;
    }
    (properties::apply(row, options), ...);
    return row;
}

/// A property whose accessors the table writes itself: `computed<NSRect>("frame", nonatomic)`.
template <class T, class... Options>
constexpr PropertyRow computed(const char* name, Options... options)
{
    constexpr unsigned flags = properties::storageOf<T, (properties::bitsOf<Options> | ... | 0u)>();
    PropertyRow row { name, properties::typeText<T>.text, flags, nullptr, nullptr, "", nullptr,
        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr };
    (properties::apply(row, options), ...);
    return row;
}

/// A field that is no property.
template <auto Field> constexpr IvarRow ivar(const char* name)
{
    using F = typename properties::Access<Field>::Value;
    return { name, properties::typeText<F>.text, &properties::Access<Field>::offset,
        properties::storageOf<F, 0>() };
}

}
