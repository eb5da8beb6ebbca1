// SPDX-License-Identifier: Apache-2.0
#include "Bike.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryBell::Methods<struct Ringing> {

    static Ref<NSObject> init(GalleryBell& self)
    {
        self.sound_ = Ref<NSString>("ding"_ns);
        self.pitch_ = 880;
        return super<GalleryBell, "init", Ref<NSObject>>(self);
    }
    static Ref<NSString> description(GalleryBell& self)
    {
        return NSString::cls().stringWithFormat("%@, %.0f Hz"_ns, self.sound_.get(), self.pitch_);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryBell::sound_>("sound", copied, nonatomic),
            property<&GalleryBell::pitch_>("pitch", nonatomic),
        });
        t.methods({ { "init", imp<init> }, { "description", imp<description> } });
    }
};
BRINDLE_RECORD(GalleryBell, Ringing)

template <> struct GalleryBike::Methods<struct Riding> {

    static Ref<NSObject> init(GalleryBike& self)
    {
        self.name_ = Ref<NSString>("Tourer"_ns);
        self.gears_ = 7;
        self.weight_ = 14.5;
        self.frame_ = { 22, 28 };
        self.bought_ = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(700'000'000);
        self.paint_ = NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0.16, 0.42, 0.62, 1);
        self.tags_ = NSArray::cls().arrayWithObjects("city"_ns, "rain"_ns);
        self.bell_ = make<GalleryBell>();
        self.trips_ = 12;
        return super<GalleryBike, "init", Ref<NSObject>>(self);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryBike::name_>("name", copied, nonatomic),
            property<&GalleryBike::gears_>("gears", nonatomic),
            property<&GalleryBike::weight_>("weight", nonatomic),
            property<&GalleryBike::electric_>("electric", getter("isElectric"), nonatomic),
            property<&GalleryBike::frame_>("frame", nonatomic),
            property<&GalleryBike::bought_>("bought", nonatomic),
            property<&GalleryBike::paint_>("paint", setter("paintWith:"), copied, nonatomic),
            property<&GalleryBike::tags_>("tags", copied, nonatomic),
            property<&GalleryBike::bell_>("bell", nonatomic),
            property<&GalleryBike::trips_>("trips", nonatomic),
        });
        t.methods({ { "init", imp<init> } });
    }
};
BRINDLE_RECORD(GalleryBike, Riding)

}
