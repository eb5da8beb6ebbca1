// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "foundation/NSString.h"
#include "foundation/StringConstant.h"

namespace gallery {

/// Where a default is looked for, in this order.
enum class Layer { arguments, application, suite, global, registered };
constexpr std::size_t kLayerCount = 5;

/// The suite that the gallery adds to its search list.
inline constexpr brindle::StringConstant<"org.brindle.Gallery.Shared"> kSuiteName;

/// A key of the page's table, and what a click puts into a layer.
struct SampleKey {
    brindle::NSString* key;
    brindle::NSString* typed; // what the answer is read as
    brindle::Ref<brindle::NSObject> arguments, application, suite;
};
std::span<const SampleKey> sampleKeys();

/// Answers the value that a layer itself has for a key, or nil.
brindle::Ref<brindle::NSObject> valueIn(Layer layer, brindle::NSString* key);
/// Answers a value of a key as text.
brindle::Ref<brindle::NSString> textOf(brindle::NSObject* value, const SampleKey& sample);
/// Puts the sample value into a layer, or takes the layer's value out. The global layer, which belongs to all
/// applications, and the registered one stay as they are.
void toggle(Layer layer, const SampleKey& sample);
/// Answers what the defaults say, as text.
brindle::Ref<brindle::NSString> answerOf(const SampleKey& sample);

}
