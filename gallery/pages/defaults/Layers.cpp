// SPDX-License-Identifier: Apache-2.0
#include "Layers.h"

#include "foundation/NSBundle.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSUserDefaults.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSUserDefaults> standard() { return NSUserDefaults::cls().standardUserDefaults(); }

    Ref<NSDictionary> valuesOf(Layer layer)
    {
        switch (layer) {
        case Layer::arguments:
            return standard()->volatileDomainForName(NSArgumentDomain);
        case Layer::application:
            return standard()->persistentDomainForName(
                NSBundle::cls().mainBundle()->bundleIdentifier().get());
        case Layer::suite:
            return standard()->persistentDomainForName(kSuiteName);
        case Layer::global:
            return standard()->persistentDomainForName(NSGlobalDomain);
        case Layer::registered:
            break;
        }
        return standard()->volatileDomainForName(NSRegistrationDomain);
    }

    void setArgument(NSObject* value, NSString* key)
    {
        const Ref<NSMutableDictionary> values = NSMutableDictionary::cls().dictionary();
        values->addEntriesFromDictionary(valuesOf(Layer::arguments).get());
        if (value)
            values->setObject_forKey(value, key);
        else
            values->removeObjectForKey(key);
        standard()->removeVolatileDomainForName(NSArgumentDomain);
        standard()->setVolatileDomain_forName(values.get(), NSArgumentDomain);
    }

    Ref<NSObject> number(double value) { return NSNumber::cls().numberWithDouble(value); }
    Ref<NSObject> number(int value) { return NSNumber::cls().numberWithInteger(value); }
    Ref<NSObject> boolean(bool value) { return NSNumber::cls().numberWithBool(value); }

}

std::span<const SampleKey> sampleKeys()
{
    static const SampleKey keys[] = {
        { "Greeting"_ns, "stringForKey:"_ns, "Hi"_ns, "Good day"_ns, "Welcome"_ns },
        { "Rows"_ns, "integerForKey:"_ns, "30"_ns, number(24), number(18) },
        { "ShowsHints"_ns, "boolForKey:"_ns, "YES"_ns, boolean(false), boolean(true) },
        { "Speed"_ns, "floatForKey:"_ns, "0.5"_ns, number(2.0), number(2.5) },
    };
    return keys;
}

Ref<NSObject> valueIn(Layer layer, NSString* key)
{
    const Ref<NSDictionary> values = valuesOf(layer);
    return maybe(values)->objectForKey(key);
}

Ref<NSString> textOf(NSObject* value, const SampleKey& sample)
{
    if (sample.typed->isEqualToString("boolForKey:"_ns) && value->isKindOfClass(NSNumber::cls()))
        return static_cast<NSNumber*>(value)->boolValue() ? "YES"_ns : "NO"_ns;
    return value->description();
}

void toggle(Layer layer, const SampleKey& sample)
{
    const auto unless = [&](const Ref<NSObject>& value) {
        return valueIn(layer, sample.key) ? nullptr : value.get();
    };
    if (layer == Layer::arguments)
        setArgument(unless(sample.arguments), sample.key);
    else if (layer == Layer::application)
        standard()->setObject_forKey(unless(sample.application), sample.key);
    else if (layer == Layer::suite)
        alloc<NSUserDefaults>()
            ->initWithSuiteName(kSuiteName)
            ->setObject_forKey(unless(sample.suite), sample.key);
}

Ref<NSString> answerOf(const SampleKey& sample)
{
    const Ref<NSUserDefaults> defaults = standard();
    if (!defaults->objectForKey(sample.key))
        return "nothing"_ns;
    const auto format
        = [](NSString* text, auto value) { return NSString::cls().stringWithFormat(text, value); };
    if (sample.typed->isEqualToString("integerForKey:"_ns))
        return format("%ld"_ns, defaults->integerForKey(sample.key));
    if (sample.typed->isEqualToString("boolForKey:"_ns))
        return defaults->boolForKey(sample.key) ? "YES"_ns : "NO"_ns;
    if (sample.typed->isEqualToString("floatForKey:"_ns))
        return format("%g"_ns, static_cast<double>(defaults->floatForKey(sample.key)));
    return defaults->stringForKey(sample.key);
}

}
