// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"
#include "runtime/NSInvocation.h"

namespace brindle {

/// Sends on what it does not know, in the way its field says.
class Deputy : public NSObject {
    BRINDLE_OBJECT(Deputy, NSObject)

public:
    enum class Way { invocation, target, recordOnly } way_ = Way::invocation;
    Ref<Animal> chief_;
    Ref<NSInvocation> last_;
};
template <> struct Deputy::Methods<struct Forwarding> {
    static Ref<NSMethodSignature> methodSignatureForSelector(Deputy& self, SEL sel)
    {
        if (const auto own
            = super<Deputy, "methodSignatureForSelector:", Ref<NSMethodSignature>>(self, sel))
            return own;
        return maybe(self.chief_)->methodSignatureForSelector(sel);
    }
    static Ref<NSObject> forwardingTargetForSelector(Deputy& self, SEL)
    {
        return self.way_ == Deputy::Way::target ? Ref<NSObject>(self.chief_) : nullptr;
    }
    static void forwardInvocation(Deputy& self, NSInvocation* invocation)
    {
        self.last_ = invocation;
        if (self.way_ == Deputy::Way::invocation)
            invocation->invokeWithTarget(self.chief_.get());
    }
    static void table(Builder& t)
    {
        t.methods({
            { "methodSignatureForSelector:", imp<methodSignatureForSelector> },
            { "forwardingTargetForSelector:", imp<forwardingTargetForSelector> },
            { "forwardInvocation:", imp<forwardInvocation> },
        });
    }
};
BRINDLE_RECORD(Deputy, Forwarding)

/// Adds an operation the moment it is first asked for.
class Learner : public NSObject {
    BRINDLE_OBJECT(Learner, NSObject)
};
template <> struct Learner::Methods<struct Learning> {
    static bool resolveInstanceMethod(Class& self, SEL sel)
    {
        if (sel != selector<"answer:">)
            return false;
        return class_addMethod(&self, sel,
            reinterpret_cast<IMP>(+[](NSObject*, SEL, double x) { return x + 1; }), "d@:d");
    }
    static void table(Builder& t)
    {
        t.classMethods({ { "resolveInstanceMethod:", imp<resolveInstanceMethod> } });
    }
};
BRINDLE_RECORD(Learner, Learning)

namespace {

    Ref<Deputy> deputyFor(Animal* chief, Deputy::Way way)
    {
        auto deputy = make<Deputy>();
        deputy->chief_ = Ref<Animal>(chief);
        deputy->way_ = way;
        return deputy;
    }

    TEST(Forwarding, ByInvocationCarriesArgumentsAndAnswersOfEveryKind)
    {
        const auto chief = make<Animal>();
        const auto deputy = deputyFor(chief.get(), Deputy::Way::invocation);
        deputy->send<"setLegs:">(std::int64_t { 4 });
        EXPECT_EQ(chief->legs(), 4);
        EXPECT_EQ((deputy->send<"legs", std::int64_t>()), 4);
        deputy->send<"setFrame:">(NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ((deputy->send<"frame", NSRect>()), NSMakeRect(1, 2, 3, 4));
        EXPECT_STREQ((deputy->send<"sound", const char*>()), "...");
    }

    TEST(Forwarding, ByInvocationHandsObjectAnswersOnWithOneCount)
    {
        const auto chief = make<Animal>();
        const auto other = make<Animal>();
        chief->setFriendOfMine(other.get());
        {
            const auto deputy = deputyFor(chief.get(), Deputy::Way::invocation);
            const auto answer = deputy->send<"friendOfMine", Ref<NSObject>>();
            EXPECT_EQ(answer, other.get());
        }
        EXPECT_EQ(headerOf(other.get()).count.load(), 2); // ours and the chief's
    }

    TEST(Forwarding, AnswersZeroWhenNoAnswerWasSet)
    {
        const auto chief = make<Animal>();
        chief->setLegs(4);
        const auto deputy = deputyFor(chief.get(), Deputy::Way::recordOnly);
        EXPECT_EQ((deputy->send<"legs", std::int64_t>()), 0);
        EXPECT_EQ((deputy->send<"friendOfMine", Ref<NSObject>>()), nullptr);
        EXPECT_EQ((deputy->send<"frame", NSRect>()), NSZeroRect);
        EXPECT_EQ(deputy->last_->selector(), selector<"frame">);
    }

    TEST(Forwarding, ToAnotherTargetIsTriedFirst)
    {
        const auto chief = make<Dog>();
        const auto deputy = deputyFor(chief.get(), Deputy::Way::target);
        EXPECT_STREQ((deputy->send<"sound", const char*>()), "woof");
        deputy->send<"setFrame:">(NSMakeRect(5, 6, 7, 8));
        EXPECT_EQ(chief->frame(), NSMakeRect(5, 6, 7, 8));
        EXPECT_EQ(deputy->last_, nullptr);
    }

    TEST(Forwarding, OfWhatTheTargetDoesNotKnowEitherRaises)
    {
        const auto deputy = deputyFor(make<Animal>().get(), Deputy::Way::invocation);
        EXPECT_NE(
            raisedBy([&] { deputy->send<"fly">(); }).find("-[Deputy fly]: unrecognized selector"),
            std::string::npos);
    }

    TEST(Forwarding, ByTheUntypedImplementationRefusesWhatIsNoWord)
    {
        const auto deputy = deputyFor(make<Animal>().get(), Deputy::Way::recordOnly);
        const IMP imp = deputy->methodForSelector(selector<"setFrame:">);
        ASSERT_EQ(imp, forwardingImplementation());
        EXPECT_NE(raisedBy([&] {
            reinterpret_cast<void (*)(NSObject*, SEL, NSRect)>(imp)(
                deputy.get(), selector<"setFrame:">, NSMakeRect(1, 2, 3, 4));
        }).find("only words can be forwarded"),
            std::string::npos);
        EXPECT_EQ(deputy->last_, nullptr);
    }

    TEST(Forwarding, LetsAClassAddTheOperationInstead)
    {
        const auto learner = make<Learner>();
        EXPECT_EQ((learner->send<"answer:", double>(2.5)), 3.5);
        EXPECT_TRUE(learner->respondsToSelector(selector<"answer:">));
    }

    TEST(MethodSignatures, ReadTypeStrings)
    {
        const auto signature = NSMethodSignature::cls().signatureWithObjCTypes(
            "{CGRect={CGPoint=dd}{CGSize=dd}}@:@d");
        EXPECT_EQ(signature->numberOfArguments(), 4u);
        EXPECT_STREQ(signature->methodReturnType(), "{CGRect={CGPoint=dd}{CGSize=dd}}");
        EXPECT_EQ(signature->methodReturnLength(), 32u);
        EXPECT_STREQ(signature->getArgumentTypeAtIndex(3), "d");
        EXPECT_NE(raisedBy([&] { (void)signature->getArgumentTypeAtIndex(4); }), "nothing raised");
    }

    TEST(MethodSignatures, RefuseWhatIsNone)
    {
        for (const char* bad : { "", "@", "v@:{", "zz", static_cast<const char*>(nullptr) })
            EXPECT_NE(raisedBy([&] {
                (void)NSMethodSignature::cls().signatureWithObjCTypes(bad);
            }).find("NSInvalidArgumentException"),
                std::string::npos);
    }

    Ref<NSInvocation> invocationOf(NSObject* target, SEL sel)
    {
        auto invocation = NSInvocation::cls().invocationWithMethodSignature(
            target->methodSignatureForSelector(sel).get());
        invocation->setTarget(target);
        invocation->setSelector(sel);
        return invocation;
    }

    TEST(Invocations, CallWithArgumentsGivenByAddress)
    {
        const auto animal = make<Animal>();
        const auto set = invocationOf(animal.get(), selector<"setFrame:">);
        NSRect frame = NSMakeRect(9, 8, 7, 6);
        set->setArgument_atIndex(&frame, 2);
        set->invoke();
        EXPECT_EQ(animal->frame(), frame);
        const auto get = invocationOf(animal.get(), selector<"frame">);
        NSRect answer {};
        get->getReturnValue(&answer);
        EXPECT_EQ(answer, NSZeroRect);
        get->invoke();
        get->getReturnValue(&answer);
        EXPECT_EQ(answer, frame);
    }

    TEST(Invocations, KeepTheirArgumentsOnRequest)
    {
        const auto animal = make<Animal>();
        auto other = make<Animal>();
        const WeakRef<Animal> weak(other);
        auto set = invocationOf(animal.get(), selector<"setFriendOfMine:">);
        Animal* bare = other.get();
        set->setArgument_atIndex(&bare, 2);
        EXPECT_FALSE(set->argumentsRetained());
        set->retainArguments();
        other = nullptr;
        EXPECT_NE(weak.get(), nullptr);
        set->invoke();
        animal->setFriendOfMine(nullptr);
        EXPECT_NE(weak.get(), nullptr);
        set = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(Invocations, OfANilTargetAnswerZero)
    {
        const auto animal = make<Animal>();
        animal->setLegs(4);
        const auto get = invocationOf(animal.get(), selector<"legs">);
        get->invoke();
        get->invokeWithTarget(nullptr);
        std::int64_t legs = 77;
        get->getReturnValue(&legs);
        EXPECT_EQ(legs, 0);
    }

    TEST(Invocations, RefuseIndexesOutsideTheArguments)
    {
        const auto animal = make<Animal>();
        const auto get = invocationOf(animal.get(), selector<"legs">);
        void* room = nullptr;
        EXPECT_EQ(raisedBy([&] { get->getArgument_atIndex(&room, 2); }),
            "NSInvalidArgumentException: -[NSInvocation getArgument:atIndex:]: index 2 out of "
            "bounds [0, 2)");
        EXPECT_NE(raisedBy([&] { get->setArgument_atIndex(&room, -1); }), "nothing raised");
        EXPECT_NE(raisedBy([] { NSInvocation::cls().invocationWithMethodSignature(nullptr); }),
            "nothing raised");
    }

    struct Pair {
        double a;
        std::int64_t b;
    };
    struct Four {
        float a, b, c, d;
    };

    /// Methods whose types no C++ row of the process has: the call is put together from the text alone.
    TEST(Invocations, CallForeignSignaturesByTheirTypesAlone)
    {
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "Foreign", 0);
        class_addMethod(cls, sel_registerName("many:"),
            reinterpret_cast<IMP>(
                +[](NSObject*, SEL, NSRect r, std::int8_t c, float f, NSPoint p, std::int64_t a,
                     std::int64_t b, std::int64_t d, double e, NSRange range) {
                    return r.size.width + c + double { f } + p.y + static_cast<double>(a * b * d)
                        + e + static_cast<double>(range.length);
                }),
            "d@:{CGRect={CGPoint=dd}{CGSize=dd}}cf{CGPoint=dd}qqqd{_NSRange=QQ}");
        class_addMethod(cls, sel_registerName("pair:"),
            reinterpret_cast<IMP>(+[](NSObject*, SEL, Pair p) {
                return Pair { p.a * 2, p.b * 2 };
            }),
            "{Pair=dq}@:{Pair=dq}");
        class_addMethod(cls, sel_registerName("four:"),
            reinterpret_cast<IMP>(+[](NSObject*, SEL, Four f) {
                return Four { f.d, f.c, f.b, f.a };
            }),
            "{Four=ffff}@:{Four=ffff}");
        class_addMethod(cls, sel_registerName("small:"),
            reinterpret_cast<IMP>(+[](NSObject*, SEL, float f) { return f * 2; }), "f@:f");
        objc_registerClassPair(cls);
        const auto object = Ref<NSObject>::adopt(class_createInstance(cls));

        auto many = invocationOf(object.get(), sel_registerName("many:"));
        NSRect r = NSMakeRect(0, 0, 1000, 0);
        std::int8_t c = -3;
        float f = 0.5f;
        NSPoint p { 0, 20 };
        std::int64_t n = 2;
        double e = 7;
        NSRange range { 0, 100 };
        void* const arguments[] = { &r, &c, &f, &p, &n, &n, &n, &e, &range };
        for (std::int64_t i = 0; i < 9; ++i)
            many->setArgument_atIndex(arguments[i], i + 2);
        many->invoke();
        double sum = 0;
        many->getReturnValue(&sum);
        EXPECT_EQ(sum, 1000 - 3 + 0.5 + 20 + 8 + 7 + 100);

        auto pair = invocationOf(object.get(), sel_registerName("pair:"));
        Pair twins { 1.5, 4 };
        pair->setArgument_atIndex(&twins, 2);
        pair->invoke();
        pair->getReturnValue(&twins);
        EXPECT_EQ(twins.a, 3);
        EXPECT_EQ(twins.b, 8);

        auto four = invocationOf(object.get(), sel_registerName("four:"));
        Four floats { 1, 2, 3, 4 };
        four->setArgument_atIndex(&floats, 2);
        four->invoke();
        four->getReturnValue(&floats);
        EXPECT_EQ(floats.a, 4);
        EXPECT_EQ(floats.d, 1);

        auto small = invocationOf(object.get(), sel_registerName("small:"));
        small->setArgument_atIndex(&f, 2);
        small->invoke();
        small->getReturnValue(&f);
        EXPECT_EQ(f, 1);
    }

    TEST(Invocations, CallWithValuesThatHaveNoSize)
    {
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "TakesNothing", 0);
        class_addMethod(cls, sel_registerName("nothing:number:"),
            reinterpret_cast<IMP>(
                +[](NSObject*, SEL, void*, std::int64_t number) { return number; }),
            "q@:{Nothing=}q");
        class_addMethod(cls, sel_registerName("unknown:"),
            reinterpret_cast<IMP>(+[](NSObject*, SEL, void*) { return std::int64_t { 1 }; }),
            "q@:{Unknown}");
        objc_registerClassPair(cls);
        const auto object = Ref<NSObject>::adopt(class_createInstance(cls));

        const auto known = invocationOf(object.get(), sel_registerName("nothing:number:"));
        std::int64_t number = 7;
        known->setArgument_atIndex(&number, 3);
        known->invoke();
        std::int64_t answer = 0;
        known->getReturnValue(&answer);
        EXPECT_EQ(answer, 7);

        const auto unknown = invocationOf(object.get(), sel_registerName("unknown:"));
        EXPECT_EQ(raisedBy([&] { unknown->invoke(); }),
            "NSInvalidArgumentException: a value of unknown size: {Unknown}");
    }

    TEST(Invocations, ReadOverTheNamesOfFieldsInAStructure)
    {
        Class* const cls = objc_allocateClassPair(NSObject::cls(), "TakesNamedFields", 0);
        class_addMethod(cls, sel_registerName("area:"),
            reinterpret_cast<IMP>(+[](NSObject*, SEL, NSSize s) { return s.width * s.height; }),
            "d@:{Extent=\"width\"d\"height\"d}");
        objc_registerClassPair(cls);
        const auto object = Ref<NSObject>::adopt(class_createInstance(cls));
        const auto area = invocationOf(object.get(), sel_registerName("area:"));
        NSSize size { 3, 4 };
        area->setArgument_atIndex(&size, 2);
        area->invoke();
        double answer = 0;
        area->getReturnValue(&answer);
        EXPECT_EQ(answer, 12);
    }

    TEST(Invocations, HaveNoTargetOrSelectorWhereTheTypesHaveNone)
    {
        const auto of = [](const char* types) {
            return NSInvocation::cls().invocationWithMethodSignature(
                NSMethodSignature::cls().signatureWithObjCTypes(types).get());
        };
        const auto large = of("v{CGRect={CGPoint=dd}{CGSize=dd}}{CGRect={CGPoint=dd}{CGSize=dd}}");
        const auto animal = make<Animal>();
        EXPECT_NE(raisedBy([&] { large->setTarget(animal.get()); }), "nothing raised");
        EXPECT_NE(raisedBy([&] { large->invoke(); }), "nothing raised");
        EXPECT_NE(raisedBy([&] { large->setSelector(selector<"legs">); }), "nothing raised");
        EXPECT_EQ(raisedBy([&] { (void)large->selector(); }),
            "NSInvalidArgumentException: -[NSInvocation selector]: argument 1 is of type "
            "{CGRect={CGPoint=dd}{CGSize=dd}}");
        const auto number = of("vq:");
        std::int64_t bits = 0x4141414141414141;
        number->setArgument_atIndex(&bits, 0);
        EXPECT_EQ(raisedBy([&] { (void)number->target(); }),
            "NSInvalidArgumentException: -[NSInvocation target]: argument 0 is of type q");
        EXPECT_NE(raisedBy([&] { (void)of("v@")->selector(); }), "nothing raised");
    }

    TEST(Performing, AnswersObjectsAndClassesAndNilForEverythingElse)
    {
        const auto animal = make<Animal>();
        const auto other = make<Animal>();
        animal->setFriendOfMine(other.get());
        EXPECT_EQ(animal->performSelector(selector<"friendOfMine">), other.get());
        EXPECT_EQ(animal->performSelector(selector<"class">), Animal::cls().object);
        EXPECT_EQ(animal->performSelector(selector<"legs">), nullptr);
        EXPECT_EQ(animal->performSelector(selector<"frame">), nullptr);
        EXPECT_EQ(animal->performSelector(selector<"awakeFromNib">), nullptr);
        EXPECT_EQ(headerOf(other.get()).count.load(), 2);
    }

    TEST(Performing, PassesObjectsAndIgnoresThemWhereNoneAreTaken)
    {
        const auto animal = make<Animal>();
        const auto other = make<Animal>();
        animal->performSelector_withObject(selector<"setFriendOfMine:">, other.get());
        EXPECT_EQ(animal->friendOfMine(), other.get());
        EXPECT_EQ(animal->performSelector_withObject(selector<"friendOfMine">, animal.get()),
            other.get());
        animal->performSelector(selector<"setFriendOfMine:">); // nothing given: nil
        EXPECT_EQ(animal->friendOfMine(), nullptr);
    }

    TEST(Performing, AnObjectInThePlaceOfAStructureOrAFractionReadsZero)
    {
        const auto animal = make<Animal>();
        animal->setFrame({ { 1, 2 }, { 3, 4 } });
        animal->performSelector_withObject(selector<"setFrame:">, animal.get());
        EXPECT_EQ(animal->frame(), CGRect());
        static double weighed;
        weighed = 5;
        const SEL weigh = sel_registerName("weigh:");
        ASSERT_TRUE(class_addMethod(Animal::cls(), weigh,
            reinterpret_cast<IMP>(+[](NSObject*, SEL, double grams) { weighed = grams; }), "v@:d"));
        animal->performSelector_withObject(weigh, animal.get());
        EXPECT_EQ(weighed, 0);
    }

    TEST(Performing, MoreParametersThanAnyOperationHasRaise)
    {
        const auto animal = make<Animal>();
        const SEL sel = sel_registerName("manyOfThem:");
        ASSERT_TRUE(class_addMethod(Animal::cls(), sel,
            reinterpret_cast<IMP>(+[](NSObject*, SEL) {}), ("v@:" + std::string(15, 'q')).c_str()));
        EXPECT_NE(raisedBy([&] { animal->performSelector(sel); }).find("too many parameters"),
            std::string::npos);
    }

    TEST(Performing, WhatNobodyAnswersRaises)
    {
        const auto animal = make<Animal>();
        EXPECT_NE(raisedBy([&] {
            animal->performSelector(sel_registerName("fly"));
        }).find("-[Animal fly]: unrecognized selector"),
            std::string::npos);
    }

}
}
