// SPDX-License-Identifier: Apache-2.0
#include "FieldsPage.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FieldsPage::Methods<struct Cards> {

    static constexpr double kFormatters = 122;

    static void addCards(FieldsPage& self)
    {
        self.form_ = addCard<FormCard>(self);
        self.kinds_ = addCard<KindsCard>(self);
        self.formatters_ = addCard<FormattersCard>(self);
    }
    static Ref<NSString> pageTitle(FieldsPage&) { return "Fields"_ns; }
    static Ref<NSString> pageCaption(FieldsPage&)
    {
        return "An object is edited by its keys.  Tab: next field"_ns;
    }
    static void layOutIn(FieldsPage& self, NSRect room)
    {
        self.formatters_->setFrame(takeBottom(room, kFormatters));
        layOutRow({ self.form_.get(), self.kinds_.get() }, room);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(FieldsPage, Cards)

}
