// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Fixtures.h"

namespace brindle {

/// Every kind of declared property.
class Form : public NSObject {
    BRINDLE_OBJECT(Form, NSObject)

public:
    bool on_ = false;
    std::int32_t count_ = 0;
    double weight_ = 0;
    NSRect frame_ {};
    Ref<Animal> pet_;
    Ref<Animal> copiedPet_;
    WeakRef<Animal> watched_;
    Animal* loose_ = nullptr;
    Ref<NSObject> anything_;
    Block<void()> code_;
    Class* kind_ = nullptr;
    SEL action_ {};
    std::int64_t fixed_ = 12;
    Block<void(NSObject*)> underscored_;
};
template <> struct Form::Methods<struct Fields> {
    static double area(Form&) { return 3; }
    static void table(Builder& t)
    {
        t.properties({
            property<&Form::on_>("on", nonatomic, getter("isOn"), setter("setOn:")),
            property<&Form::count_>("count", nonatomic),
            property<&Form::weight_>("weight"),
            property<&Form::frame_>("frame"),
            property<&Form::pet_>("pet"),
            property<&Form::copiedPet_>("copiedPet", copied, nonatomic),
            property<&Form::watched_>("watched", nonatomic),
            property<&Form::loose_>("loose", nonatomic),
            property<&Form::anything_>("anything", nonatomic),
            property<&Form::code_>("code", copied, nonatomic),
            property<&Form::kind_>("kind", nonatomic),
            property<&Form::action_>("action", nonatomic),
            property<&Form::fixed_>("fixed", readonly, nonatomic),
            property<&Form::underscored_>("code_", copied, nonatomic, ivarName("_code_")),
            computed<double>("area", readonly, nonatomic),
        });
        t.methods({ { "area", imp<area> } });
    }
};
BRINDLE_RECORD(Form, Fields)

class LongForm : public Form {
    BRINDLE_OBJECT(LongForm, Form)
};
template <> struct LongForm::Methods<struct Fields> {
    static double weight(LongForm&) { return 99; }
    static void table(Builder& t) { t.methods({ { "weight", imp<weight> } }); }
};
BRINDLE_RECORD(LongForm, Fields)

namespace {

    std::string attributes(const char* name)
    {
        return property_getAttributes(class_getProperty(Form::cls(), name));
    }

    TEST(Properties, DescribeThemselvesInTheFixedOrder)
    {
        EXPECT_EQ(attributes("on"), "TB,N,GisOn,SsetOn:,V_on");
        EXPECT_EQ(attributes("count"), "Ti,N,V_count");
        EXPECT_EQ(attributes("weight"), "Td,V_weight");
        EXPECT_EQ(attributes("frame"), "T{CGRect={CGPoint=dd}{CGSize=dd}},V_frame");
        EXPECT_EQ(attributes("pet"), "T@\"Animal\",&,V_pet");
        EXPECT_EQ(attributes("copiedPet"), "T@\"Animal\",C,N,V_copiedPet");
        EXPECT_EQ(attributes("watched"), "T@\"Animal\",W,N,V_watched");
        EXPECT_EQ(attributes("loose"), "T@\"Animal\",N,V_loose");
        EXPECT_EQ(attributes("anything"), "T@,&,N,V_anything");
        EXPECT_EQ(attributes("code"), "T@?,C,N,V_code");
        EXPECT_EQ(attributes("kind"), "T#,N,V_kind");
        EXPECT_EQ(attributes("action"), "T:,N,V_action");
        EXPECT_EQ(attributes("fixed"), "Tq,R,N,V_fixed");
        EXPECT_EQ(attributes("code_"), "T@?,C,N,V_code_");
        EXPECT_EQ(attributes("area"), "Td,R,N");
    }

    TEST(Properties, AreListedInTheOrderOfTheirDeclaration)
    {
        unsigned count = 0;
        objc_property_t* const list = class_copyPropertyList(Form::cls(), &count);
        ASSERT_EQ(count, 15u);
        EXPECT_STREQ(property_getName(list[0]), "on");
        EXPECT_STREQ(property_getName(list[14]), "area");
        EXPECT_EQ(list[15], nullptr);
        std::free(list); // the receiver may use the plain routine
    }

    TEST(Properties, OfAClassThatDeclaresNoneAreNoList)
    {
        unsigned count = 5;
        EXPECT_EQ(class_copyPropertyList(LongForm::cls(), &count), nullptr);
        EXPECT_EQ(count, 0u);
        EXPECT_NE(class_getProperty(LongForm::cls(), "pet"), nullptr);
        EXPECT_EQ(class_getProperty(LongForm::cls(), "nothing"), nullptr);
        EXPECT_EQ(class_getProperty(LongForm::cls(), ""), nullptr);
        EXPECT_EQ(class_getProperty(LongForm::cls(), nullptr), nullptr);
    }

    TEST(Properties, AnswerSingleAttributes)
    {
        const objc_property_t on = class_getProperty(Form::cls(), "on");
        const auto value = [](objc_property_t property, const char* attribute) {
            char* const text = property_copyAttributeValue(property, attribute);
            const std::string copy = text ? text : "(absent)";
            releaseBuffer(text);
            return copy;
        };
        EXPECT_EQ(value(on, "T"), "B");
        EXPECT_EQ(value(on, "G"), "isOn");
        EXPECT_EQ(value(on, "S"), "setOn:");
        EXPECT_EQ(value(on, "V"), "_on");
        EXPECT_EQ(value(on, "N"), "");
        EXPECT_EQ(value(on, "R"), "(absent)");
        EXPECT_EQ(value(class_getProperty(Form::cls(), "fixed"), "R"), "");
        EXPECT_EQ(value(class_getProperty(Form::cls(), "area"), "V"), "(absent)");
        EXPECT_EQ(value(on, "nonsense"), "(absent)");
    }

    TEST(Properties, ComeWithAccessorsOfTheDeclaredNames)
    {
        const auto form = make<Form>();
        form->send<"setOn:">(true);
        EXPECT_TRUE((form->send<"isOn", bool>()));
        EXPECT_FALSE(form->respondsToSelector(selector<"on">));
        form->send<"setFrame:">(NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ((form->send<"frame", NSRect>()), NSMakeRect(1, 2, 3, 4));
        EXPECT_FALSE(form->respondsToSelector(selector<"setFixed:">));
        EXPECT_EQ((form->send<"fixed", std::int64_t>()), 12);
        EXPECT_EQ((form->send<"area", double>()), 3);
    }

    TEST(Properties, GiveWayToAccessorsThatAClassWrites)
    {
        EXPECT_EQ((make<LongForm>()->send<"weight", double>()), 99);
    }

    TEST(Properties, KeepObjectsAsDeclared)
    {
        const auto form = make<Form>();
        auto pet = make<Animal>();
        const WeakRef<Animal> weak(pet);
        form->send<"setPet:">(pet.get());
        form->send<"setWatched:">(pet.get());
        pet = nullptr;
        EXPECT_NE((form->send<"watched", Ref<Animal>>()), nullptr);
        form->send<"setPet:">(static_cast<Animal*>(nullptr));
        EXPECT_EQ((form->send<"watched", Ref<Animal>>()), nullptr);
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(Properties, CopyOnSetWhereDeclared)
    {
        // An animal does not copy, so nothing is kept of it.
        const auto form = make<Form>();
        const auto pet = make<Animal>();
        form->send<"setCopiedPet:">(pet.get());
        EXPECT_EQ((form->send<"copiedPet", Ref<Animal>>()), nullptr);
        const Block<void()> code = [] {};
        form->send<"setCode:">(code.get());
        EXPECT_EQ((form->send<"code", Block<void()>>()).get(), code.get());
    }

    TEST(Properties, AtomicStructuresAreNeverTorn)
    {
        const auto form = make<Form>();
        std::atomic<bool> stop { false };
        std::thread writer([&] {
            for (double i = 0; !stop; i += 1)
                form->send<"setFrame:">(NSMakeRect(i, i, i, i));
        });
        int torn = 0;
        for (int i = 0; i < 100000; ++i) {
            const NSRect r = form->send<"frame", NSRect>();
            torn += r.origin.x != r.size.height || r.origin.y != r.size.width;
        }
        stop = true;
        writer.join();
        EXPECT_EQ(torn, 0);
    }

    TEST(Properties, AtomicObjectsSurviveReadersBesideWriters)
    {
        const auto form = make<Form>();
        std::atomic<bool> stop { false };
        std::thread writer([&] {
            while (!stop)
                form->send<"setPet:">(make<Animal>().get());
        });
        for (int i = 0; i < 50000; ++i) {
            if (const auto pet = form->send<"pet", Ref<Animal>>()) {
                ASSERT_EQ(pet->legs(), 0);
            }
        }
        stop = true;
        writer.join();
    }

    TEST(Properties, RegisterTheirFieldsByName)
    {
        const auto form = make<Form>();
        const auto pet = make<Animal>();
        const Ivar* const field = class_getInstanceVariable(Form::cls(), "_pet");
        ASSERT_NE(field, nullptr);
        EXPECT_STREQ(ivar_getTypeEncoding(field), "@\"Animal\"");
        object_setIvar(form.get(), field, pet.get());
        EXPECT_EQ(form->pet_, pet);
        EXPECT_EQ(object_getIvar(form.get(), field), pet.get());
        object_setIvar(form.get(), field, nullptr);
        EXPECT_EQ(headerOf(pet.get()).count.load(), 1);
        EXPECT_EQ(class_getInstanceVariable(Form::cls(), "_nothing"), nullptr);
        EXPECT_NE(class_getInstanceVariable(LongForm::cls(), "_frame"), nullptr);
    }

    TEST(Properties, AreAddedAtRunTimeFromTheirAttributeString)
    {
        Class* const cls = objc_allocateClassPair(Form::cls(), "AddedForm", 0);
        objc_registerClassPair(cls);
        EXPECT_TRUE(class_addProperty(cls, "title", "T@\"NSString\",C,N,V_title"));
        EXPECT_FALSE(class_addProperty(cls, "title", "Ti"));
        EXPECT_FALSE(class_addProperty(cls, "wrong", "N,Ti"));
        EXPECT_FALSE(class_addProperty(cls, "wrong", ""));
        EXPECT_STREQ(
            property_getAttributes(class_getProperty(cls, "title")), "T@\"NSString\",C,N,V_title");
    }

}
}
