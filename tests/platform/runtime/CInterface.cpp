// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "Fixtures.h"
#include "foundation/NSString.h"
#include "runtime/brindle.h"

namespace brindle {
namespace {

    brindle_id plain(const Ref<Animal>& animal)
    {
        return reinterpret_cast<brindle_id>(animal.get());
    }

    /// Sends by a prepared call, as C would.
    template <class R, class... A>
    R callAs(brindle_id object, const char* selector, const char* types, A... arguments)
    {
        brindle_call* const call = brindle_makeCall(selector, types, nullptr);
        return reinterpret_cast<R (*)(brindle_id, brindle_call*, A...)>(call->code)(
            object, call, arguments...);
    }

    std::string takenError()
    {
        const auto error
            = Ref<NSException>::adopt(reinterpret_cast<NSException*>(brindle_takeError()));
        return error ? Exception(error.get()).what() : "no error";
    }

    brindle_class freshClass(const char* parent)
    {
        static int number = 0;
        const brindle_class cls = brindle_makeClass(
            brindle_classNamed(parent), ("Plain" + std::to_string(++number)).c_str());
        brindle_registerClass(cls);
        return cls;
    }
    Ref<Animal> instanceOf(brindle_class cls)
    {
        return cast<Animal>(reinterpret_cast<Class*>(cls)->send<"new", Ref<NSObject>>());
    }

    TEST(CInterface, FindsClassesByName)
    {
        EXPECT_STREQ(brindle_className(brindle_classNamed("Puppy")), "Puppy");
        EXPECT_EQ(brindle_superclass(brindle_classNamed("Puppy")), brindle_classNamed("Dog"));
        EXPECT_EQ(brindle_classNamed("Nobody"), nullptr);
        EXPECT_EQ(brindle_classNamed(nullptr), nullptr);
    }

    TEST(CInterface, KnowsTheNamesOfAllClasses)
    {
        char* const names = brindle_copyClassNames();
        EXPECT_NE(std::string(names).find("\nPuppy\n"), std::string::npos);
        EXPECT_NE(std::string(names).find("\nNSObject\n"), std::string::npos);
        brindle_free(names);
    }

    TEST(CInterface, CallsPlainFunctionsByName)
    {
        const char* types = nullptr;
        const brindle_code code = brindle_functionNamed("NSIntersectionRect", &types);
        ASSERT_NE(code, nullptr);
        const std::string rect = "{CGRect={CGPoint=dd}{CGSize=dd}}";
        EXPECT_EQ(types, rect + rect + rect);
        const auto both = reinterpret_cast<NSRect (*)(NSRect, NSRect)>(code)(
            NSMakeRect(0, 0, 10, 10), NSMakeRect(5, 5, 10, 10));
        EXPECT_TRUE(NSEqualRects(both, NSMakeRect(5, 5, 5, 5)));
        EXPECT_EQ(brindle_functionNamed("NSNothing", &types), nullptr);
        EXPECT_EQ(brindle_functionNamed(nullptr, &types), nullptr);
    }

    TEST(CInterface, SendsByAPreparedCall)
    {
        const auto dog = make<Dog>();
        callAs<void>(plain(dog), "setLegs:", "v@:q", std::int64_t { 5 });
        EXPECT_EQ(callAs<std::int64_t>(plain(dog), "legs", "q@:"), 5);
        EXPECT_STREQ(callAs<const char*>(plain(dog), "sound", "*@:"), "woof");
    }

    TEST(CInterface, PassesLargeStructuresBothWays)
    {
        const auto dog = make<Dog>();
        const char* const rect = "{CGRect={CGPoint=dd}{CGSize=dd}}";
        callAs<void>(
            plain(dog), "setFrame:", (std::string("v@:") + rect).c_str(), NSMakeRect(1, 2, 3, 4));
        const auto frame = callAs<NSRect>(plain(dog), "frame", (std::string(rect) + "@:").c_str());
        EXPECT_TRUE(NSEqualRects(frame, NSMakeRect(1, 2, 3, 4)));
    }

    TEST(CInterface, AnswersZeroForNoReceiver)
    {
        EXPECT_EQ(callAs<std::int64_t>(nullptr, "legs", "q@:"), 0);
        const auto frame = callAs<NSRect>(nullptr, "frame", "{CGRect={CGPoint=dd}{CGSize=dd}}@:");
        EXPECT_TRUE(NSEqualRects(frame, NSRect {}));
    }

    TEST(CInterface, NoticesAnOverrideAtOnce)
    {
        const brindle_class cls = freshClass("Dog");
        const auto dog = instanceOf(cls);
        EXPECT_STREQ(callAs<const char*>(plain(dog), "sound", "*@:"), "woof");
        const auto howl = +[](brindle_id, brindle_frame*) { return "howl"; };
        EXPECT_EQ(
            brindle_addMethod(cls, "sound", "*@:", reinterpret_cast<brindle_code>(howl), nullptr),
            1);
        EXPECT_STREQ(callAs<const char*>(plain(dog), "sound", "*@:"), "howl");
    }

    TEST(CInterface, PassesArgumentsThatAreNotDeclared)
    {
        const auto format
            = Ref<NSObject>(reinterpret_cast<NSObject*>("%@ %d %.1f %.1f %d %d %d"_ns));
        const auto text = cast<NSString>(Ref<NSObject>::adopt(callAs<NSObject*>(
            reinterpret_cast<brindle_id>(NSString::cls().object), "stringWithFormat:",
            "@@:@...@qddqqq", format.get(), reinterpret_cast<NSObject*>("a"_ns), std::int64_t { 1 },
            2.5, 3.5, std::int64_t { 4 }, std::int64_t { 5 }, std::int64_t { 6 })));
        EXPECT_STREQ(text->UTF8String(), "a 1 2.5 3.5 4 5 6");
        EXPECT_STREQ(method_getDetailedTypes(
                         class_getClassMethod(NSString::cls(), selector<"stringWithFormat:">)),
            "@\"NSString\"@:@\"NSString\"...");
    }

    TEST(CInterface, SendsToSuper)
    {
        const auto puppy = make<Puppy>();
        puppy->setLegs(4);
        brindle_call* const call = brindle_makeCall("legs", "q@:", brindle_classNamed("Dog"));
        const auto legs = reinterpret_cast<std::int64_t (*)(brindle_id, brindle_call*)>(call->code);
        EXPECT_EQ(legs(plain(puppy), call), 4);
        EXPECT_EQ(puppy->legs(), 104);
    }

    TEST(CInterface, KeepsWhatWasRaisedForTheThread)
    {
        const auto dog = make<Dog>();
        EXPECT_EQ(*brindle_errorCount(), 0);
        EXPECT_EQ(callAs<std::int64_t>(plain(dog), "sound", "q@:"), 0);
        EXPECT_EQ(*brindle_errorCount(), 1);
        EXPECT_NE(
            takenError().find("-[Dog sound]: sent as q@:, implemented as *@:"), std::string::npos);
        EXPECT_EQ(*brindle_errorCount(), 0);
        EXPECT_EQ(takenError(), "no error");
    }

    const char* const kRectOfNothing = "{CGRect={CGPoint=dd}{CGSize=dd}}@:";

    /// Sends "frame" with room for the answer, as a compiler would that reads it where the callee says it is.
    NSRect* frameInto(brindle_id object, NSRect& room)
    {
        room = NSMakeRect(1, 2, 3, 4);
        brindle_call* const call = brindle_makeCall("frame", kRectOfNothing, nullptr);
        return reinterpret_cast<NSRect* (*)(NSRect*, brindle_id, brindle_call*)>(call->code)(
            &room, object, call);
    }

    TEST(CInterface, ALargeStructureReadsZeroAfterAnExceptionAndForNoReceiver)
    {
        const brindle_class cls = freshClass("Animal");
        const auto fail = +[](brindle_id, brindle_frame*) {
            const brindle_id exception = brindle_makeException("Sadness", "it rains");
            brindle_raise(exception);
            brindle_release(exception);
            return NSMakeRect(5, 6, 7, 8);
        };
        brindle_addMethod(
            cls, "frame", kRectOfNothing, reinterpret_cast<brindle_code>(fail), nullptr);
        const auto animal = instanceOf(cls);
        for (int round = 0; round < 2;
             ++round) { // the second finds the answer that the class keeps
            NSRect room {};
            EXPECT_EQ(frameInto(plain(animal), room), &room);
            EXPECT_EQ(room, NSZeroRect);
            EXPECT_EQ(takenError(), "Sadness: it rains");
        }
        NSRect room {};
        EXPECT_EQ(frameInto(nullptr, room), &room);
        EXPECT_EQ(room, NSZeroRect);
    }

    TEST(CInterface, ReportsAMessageNobodyAnswers)
    {
        callAs<void>(plain(make<Dog>()), "fly:", "v@:q", std::int64_t { 1 });
        EXPECT_NE(takenError().find("-[Dog fly:]: unrecognized selector"), std::string::npos);
    }

    TEST(CInterface, RefusesMalformedTypes)
    {
        EXPECT_EQ(brindle_makeCall("legs", "q@:{", nullptr), nullptr);
        EXPECT_NE(takenError().find("malformed types"), std::string::npos);
        EXPECT_EQ(brindle_makeCall("legs", nullptr, nullptr), nullptr);
        EXPECT_NE(takenError().find("malformed types"), std::string::npos);
    }

    TEST(CInterface, SendsWithPackedArguments)
    {
        const auto dog = make<Dog>();
        NSRect frame = NSMakeRect(5, 6, 7, 8);
        void* const arguments[] = { &frame };
        EXPECT_EQ(brindle_send(
                      plain(dog), brindle_selectorNamed("setFrame:"), nullptr, arguments, nullptr),
            nullptr);
        NSRect answer {};
        EXPECT_EQ(
            brindle_send(plain(dog), brindle_selectorNamed("frame"), nullptr, nullptr, &answer),
            nullptr);
        EXPECT_TRUE(NSEqualRects(answer, frame));
    }

    TEST(CInterface, APackedMessageWhoseAnswerNobodyWantsReleasesAnObject)
    {
        const auto dog = make<Dog>();
        const auto before = headerOf(dog.get()).count.load();
        for (const char* name : { "frame", "retain", "release", "description" })
            EXPECT_EQ(
                brindle_send(plain(dog), brindle_selectorNamed(name), nullptr, nullptr, nullptr),
                nullptr);
        EXPECT_EQ(headerOf(dog.get()).count.load(), before);
    }

    TEST(CInterface, AnswersTheExceptionOfAPackedMessage)
    {
        const auto error = Ref<NSException>::adopt(reinterpret_cast<NSException*>(brindle_send(
            plain(make<Dog>()), brindle_selectorNamed("flyAway"), nullptr, nullptr, nullptr)));
        ASSERT_TRUE(error);
        EXPECT_NE(std::string(Exception(error.get()).what()).find("unrecognized selector"),
            std::string::npos);
    }

    NSRect grown(brindle_id, brindle_frame* frame, NSRect rect, double by)
    {
        rect.size.width += by;
        rect.origin.x = *static_cast<double*>(frame->context);
        return rect;
    }

    TEST(CInterface, RunsABodyWithItsContext)
    {
        const brindle_class cls = freshClass("Animal");
        double context = 42;
        brindle_addMethod(cls,
            "grow:by:", "{CGRect={CGPoint=dd}{CGSize=dd}}@:{CGRect={CGPoint=dd}{CGSize=dd}}d",
            reinterpret_cast<brindle_code>(&grown), &context);
        const auto rect = instanceOf(cls)->send<"grow:by:", NSRect>(NSMakeRect(1, 2, 3, 4), 10.0);
        EXPECT_TRUE(NSEqualRects(rect, NSMakeRect(42, 2, 13, 4)));
    }

    TEST(CInterface, TakesAStructureThroughTheFrame)
    {
        const brindle_class cls = freshClass("Animal");
        const auto corner = +[](brindle_id, brindle_frame* frame) {
            *static_cast<NSPoint*>(frame->result) = NSMakePoint(3, 4);
            frame->answered = 1;
        };
        brindle_addMethod(
            cls, "corner", "{CGPoint=dd}@:", reinterpret_cast<brindle_code>(corner), nullptr);
        const auto point = instanceOf(cls)->send<"corner", NSPoint>();
        EXPECT_EQ(point.x, 3);
        EXPECT_EQ(point.y, 4);
    }

    std::int64_t sumOfAll(brindle_id, brindle_frame*, std::int64_t a, double b, NSRect r,
        std::int64_t c, std::int64_t d, std::int64_t e, std::int64_t f, double g, std::int64_t h)
    {
        return a + c * 10 + d * 100 + e * 1000 + f * 10000 + h * 100000
            + static_cast<std::int64_t>(b + g + r.size.height);
    }

    TEST(CInterface, PassesArgumentsThatFindNoRegister)
    {
        const brindle_class cls = freshClass("Animal");
        const char* const types = "q@:qd{CGRect={CGPoint=dd}{CGSize=dd}}qqqqdq";
        brindle_addMethod(
            cls, "a:b:c:d:e:f:g:h:i:", types, reinterpret_cast<brindle_code>(&sumOfAll), nullptr);
        const auto object = instanceOf(cls);
        const auto one = std::int64_t { 1 };
        EXPECT_EQ(callAs<std::int64_t>(plain(object), "a:b:c:d:e:f:g:h:i:", types, one, 0.5,
                      NSMakeRect(0, 0, 0, 4), one * 2, one * 3, one * 4, one * 5, 0.5, one * 6),
            1 + 20 + 300 + 4000 + 50000 + 600000 + 5);
    }

    TEST(CInterface, RaisesWhenTheBodyHasReturned)
    {
        const brindle_class cls = freshClass("Animal");
        const auto fail = +[](brindle_id, brindle_frame*) {
            brindle_id exception = brindle_makeException("Sadness", "it rains");
            brindle_raise(exception);
            brindle_release(exception);
        };
        brindle_addMethod(cls, "fail", "v@:", reinterpret_cast<brindle_code>(fail), nullptr);
        const auto object = instanceOf(cls);
        EXPECT_EQ(raisedBy([&] { object->send<"fail">(); }), "Sadness: it rains");
        callAs<void>(plain(object), "fail", "v@:");
        EXPECT_EQ(takenError(), "Sadness: it rains");
    }

    TEST(CInterface, ReportsWhatIsRaisedOnAThreadOfNobody)
    {
        static std::string reported;
        const auto fail = +[](brindle_frame*) {
            brindle_id exception = brindle_makeException("Sadness", "far away");
            brindle_raise(exception);
            brindle_release(exception);
        };
        brindle_setReporter([](brindle_id exception) {
            reported = Exception(reinterpret_cast<NSException*>(exception)).what();
        });
        const auto closure = Block<void()>::adopt(reinterpret_cast<Closure<void()>*>(
            brindle_makeClosure("v@?", reinterpret_cast<brindle_code>(fail), nullptr, nullptr)));
        std::thread([&] { closure(); }).join();
        brindle_setReporter(nullptr);
        EXPECT_EQ(reported, "Sadness: far away");
    }

    TEST(CInterface, ABodyWhoseExceptionWasReportedAnswersZero)
    {
        const auto fail = +[](brindle_frame* frame) {
            *static_cast<NSPoint*>(frame->result) = NSMakePoint(3, 4);
            frame->answered = 1;
            const brindle_id exception = brindle_makeException("Sadness", "far away");
            brindle_raise(exception);
            brindle_release(exception);
        };
        brindle_setReporter([](brindle_id) {});
        const auto closure
            = Block<NSPoint()>::adopt(reinterpret_cast<Closure<NSPoint()>*>(brindle_makeClosure(
                "{CGPoint=dd}@?", reinterpret_cast<brindle_code>(fail), nullptr, nullptr)));
        NSPoint answer { 1, 2 };
        std::thread([&] { answer = closure(); }).join();
        brindle_setReporter(nullptr);
        EXPECT_EQ(answer, NSZeroPoint);
    }

    TEST(CInterface, MakesClosuresThatEndTheirContext)
    {
        static int ended;
        ended = 0;
        const auto add = +[](brindle_frame* frame, double number) {
            return number + *static_cast<double*>(frame->context);
        };
        double context = 10;
        {
            const auto closure = Block<double(double)>::adopt(
                reinterpret_cast<Closure<double(double)>*>(brindle_makeClosure("d@?d",
                    reinterpret_cast<brindle_code>(add), &context, [](void*) { ++ended; })));
            EXPECT_EQ(closure(5), 15);
            double number = 7;
            double answer = 0;
            void* const arguments[] = { &number };
            EXPECT_EQ(
                brindle_runClosure(reinterpret_cast<brindle_id>(closure.get()), arguments, &answer),
                nullptr);
            EXPECT_EQ(answer, 17);
            EXPECT_EQ(ended, 0);
        }
        EXPECT_EQ(ended, 1);
    }

    TEST(CInterface, ForwardsWhatTheClassDoesNotAnswer)
    {
        // The class answers by another object for messages of its own choosing.
        const brindle_class cls = freshClass("Animal");
        static Ref<Dog> target;
        target = make<Dog>();
        const auto answer = +[](brindle_id, brindle_frame*, brindle_selector) {
            return brindle_retain(plain(cast<Animal>(Ref<Dog>(target))));
        };
        brindle_addMethod(cls,
            "forwardingTargetForSelector:", "@@::", reinterpret_cast<brindle_code>(answer),
            nullptr);
        const brindle_class other = freshClass("Dog");
        target = cast<Dog>(instanceOf(other));
        const auto sum = +[](brindle_id, brindle_frame*, NSRect r, double d, std::int64_t q) {
            return r.size.width + d + static_cast<double>(q);
        };
        brindle_addMethod(other, "sum:and:and:", "d@:{CGRect={CGPoint=dd}{CGSize=dd}}dq",
            reinterpret_cast<brindle_code>(sum), nullptr);
        EXPECT_EQ(callAs<double>(plain(instanceOf(cls)),
                      "sum:and:and:", "d@:{CGRect={CGPoint=dd}{CGSize=dd}}dq",
                      NSMakeRect(0, 0, 1, 0), 2.0, std::int64_t { 3 }),
            6);
        target = nullptr;
    }

    TEST(CInterface, AdaptsAMethodToTheFirstMessageOfOtherTypes)
    {
        const brindle_class cls = freshClass("Animal");
        const auto guess
            = +[](brindle_id, brindle_frame*, brindle_id) -> brindle_id { return nullptr; };
        brindle_addMethod(cls, "mayEat:", "@@:@", reinterpret_cast<brindle_code>(guess), nullptr);
        brindle_setAdaptable(cls, brindle_selectorNamed("mayEat:"));
        brindle_setAdapter([](brindle_class owner, brindle_selector sel, const char* types) {
            const auto yes = +[](brindle_id, brindle_frame*, brindle_id) { return true; };
            return std::string(types) == "B@:@"
                ? brindle_addMethod(owner, brindle_selectorName(sel), types,
                    reinterpret_cast<brindle_code>(yes), nullptr)
                : 0;
        });
        const auto object = instanceOf(cls);
        NSObject* const nothing = nullptr;
        EXPECT_TRUE((object->send<"mayEat:", bool>(nothing)));
        EXPECT_NE(
            raisedBy([&] { object->send<"mayEat:", double>(nothing); }).find("implemented as B@:@"),
            std::string::npos);
        brindle_setAdapter([](brindle_class, brindle_selector, const char*) { return 0; });
    }

    TEST(CInterface, TellsWhenAnObjectHasGone)
    {
        static int gone;
        gone = 0;
        auto dog = make<Dog>();
        EXPECT_EQ(brindle_whenGone(
                      plain(dog), [](void*) { ++gone; }, nullptr),
            1);
        EXPECT_EQ(gone, 0);
        dog = nullptr;
        EXPECT_EQ(gone, 1);
    }

    TEST(CInterface, AnEndThatBelongsToNobodyDoesNotRun)
    {
        static int gone;
        gone = 0;
        EXPECT_EQ(brindle_whenGone(
                      nullptr, [](void*) { ++gone; }, nullptr),
            0);
        EXPECT_EQ(gone, 0);
    }

    TEST(CInterface, ReadsAndWritesAddedFields)
    {
        const brindle_class cls
            = brindle_makeClass(brindle_classNamed("Animal"), "PlainWithFields");
        EXPECT_EQ(brindle_addField(cls, "_weight", "d"), 1);
        EXPECT_EQ(brindle_addField(cls, "_owner", "@"), 1);
        EXPECT_EQ(brindle_addField(cls, "_broken", "{"), 0);
        brindle_registerClass(cls);
        const auto object = instanceOf(cls);
        *static_cast<double*>(brindle_field(plain(object), "_weight")) = 2.5;
        EXPECT_EQ(*static_cast<double*>(brindle_field(plain(object), "_weight")), 2.5);
        const auto dog = make<Dog>();
        brindle_setObjectField(plain(object), "_owner", plain(dog));
        EXPECT_EQ(brindle_objectField(plain(object), "_owner"), plain(dog));
        brindle_release(plain(dog)); // the answer was an owner
        EXPECT_EQ(brindle_field(plain(object), "_nothing"), nullptr);
        EXPECT_EQ(brindle_objectField(plain(object), "_weight"), nullptr); // no object at all
        brindle_setObjectField(plain(object), "_weight", plain(dog));
        EXPECT_EQ(*static_cast<double*>(brindle_field(plain(object), "_weight")), 2.5);
    }

}
}
