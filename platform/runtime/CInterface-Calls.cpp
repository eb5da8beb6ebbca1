// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <atomic>
#include <cstdarg>
#include <ctime>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "CInterfacePrivate.h"
#include "CallFramePrivate.h"
#include "ClassPrivate.h"
#include "InvocationPrivate.h"

// Messages out of C and bodies written in C, for signatures that are known as text only. Every entry below is one C++
// function that takes all registers that can carry arguments, and thereby stands for every signature; what lies on
// the stack is copied word by word.

namespace brindle::plain {

namespace {

    std::atomic<void (*)(brindle_id)> reporter { nullptr };
    std::atomic<bool> closed { false };
    std::atomic<int> runningBodies { 0 };
    constinit thread_local int ownBodies = 0;
    thread_local Ref<NSException> raised; // by the body that is about to return

    std::atomic<int (*)(brindle_class, brindle_selector, const char*)> adapter { nullptr };

    bool adapt(Class* owner, SEL sel, const char* types)
    {
        const auto ask = adapter.load();
        return !closed && ask && ask(plainOf(owner), sel.value, types);
    }

    bool isMainThread() { return getpid() == gettid(); }

    /// Counts a body while it runs, so that closing can wait for those of other threads.
    class Running {
    public:
        Running()
        {
            ++runningBodies;
            ++ownBodies;
        }
        ~Running()
        {
            --ownBodies;
            --runningBodies;
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
    };

    /// Throws what a body raised, or reports it where nobody could catch it. Answers whether it raised nothing.
    bool passOn()
    {
        if (!raised) [[likely]]
            return true;
        const Ref<NSException> exception = std::exchange(raised, nullptr);
        const auto report = reporter.load();
        if (!report || sendDepth > 0 || isMainThread())
            throw Exception(exception.get());
        report(plainOf(exception.get()));
        return false;
    }

}

#if defined(__x86_64__)

namespace {

    using namespace calls;

    /// Where the arguments of a signature lie.
    struct Layout {
        Kind first = Kind::integer; ///< of the result
        Kind second = Kind::memory; ///< of its second half; memory when there is none
        std::size_t stackWords = 0;
        std::size_t resultSize = 0;
    };

    Layout layoutOf(const char* types)
    {
        Layout layout;
        const std::vector<Kind> answer = kindsOf(types, layout.resultSize);
        layout.first = answer.front();
        if (answer.size() == 2)
            layout.second = answer[1];
        Frame frame;
        frame.integersUsed = layout.first == Kind::memory;
        for (const char* at = encodingSkipType(types); *at; at = encodingSkipType(at)) {
            std::size_t size = 0;
            if (!frame.take(kindsOf(at, size)))
                layout.stackWords += (size + 7) / 8;
        }
        if (layout.stackWords > kMostStackWords)
            raise("NSInvalidArgumentException",
                std::string("more than 256 bytes of arguments on the stack: ") + types);
        return layout;
    }

    /// The entry for a kind of result: `Entry::run<R, Hidden>`, where a large result's address comes hidden before the
    /// other arguments.
    template <class Entry> brindle_code entryFor(const Layout& layout)
    {
        const auto code = [](auto* function) { return reinterpret_cast<brindle_code>(function); };
        if (layout.first == Kind::memory)
            return code(&Entry::template run<Word, 1>);
        if (layout.second == Kind::memory)
            return layout.first == Kind::integer ? code(&Entry::template run<Word, 0>)
                                                 : code(&Entry::template run<double, 0>);
        if (layout.first == Kind::integer)
            return layout.second == Kind::integer ? code(&Entry::template run<IntegerPair, 0>)
                                                  : code(&Entry::template run<IntegerFloat, 0>);
        return layout.second == Kind::integer ? code(&Entry::template run<FloatInteger, 0>)
                                              : code(&Entry::template run<FloatPair, 0>);
    }

    /// The words that a call left on the stack.
    struct StackWords {
        Word words[kMostStackWords];
        std::size_t count = 0;

        void read(std::va_list list, std::size_t wanted)
        {
            for (; count < wanted; ++count)
                words[count] = va_arg(list, Word);
        }
    };

    /// Answers zero as an answer of a layout. A large one lies where its address says, and that is answered then.
    template <class R, std::size_t Hidden> R zeroAnswer(const Layout& layout, Word address)
    {
        if constexpr (Hidden) {
            std::memset(reinterpret_cast<void*>(address), 0, layout.resultSize);
            return address;
        } else {
            return R();
        }
    }

    /// The same in place of an answer that an exception took away; large ones are answered as their address otherwise.
    template <class R, std::size_t Hidden>
    R orZeroAnswer(R answer, const Layout& layout, Word address)
    {
        if constexpr (Hidden)
            return answer ? answer : zeroAnswer<R, Hidden>(layout, address);
        else
            return answer;
    }

    // ---- messages out of C

    struct Call : brindle_call {
        Class* from = nullptr;
        const char* name = nullptr;
        Signature signature {};
        std::uint64_t key = 0;
        Layout layout;
        Call* made = nullptr; // the one made before
    };
    /// The call made last. Calls live for ever, in reach from here.
    std::atomic<Call*> lastCall;

    void noAnswer() { }
    IMP noImplementation() { return &noAnswer; }

    /// Answers what the class has kept for the call, the way every message looks; nullptr when that is nothing.
    inline IMP kept(const Call& call, const NSObject* self)
    {
        const Class* const holder = call.from ? call.from : self->isa_;
        const std::uint64_t mask = holder->mask_.load(std::memory_order_acquire);
        const auto* table
            = reinterpret_cast<const char*>(holder->slots_.load(std::memory_order_acquire));
        const auto& slot = *reinterpret_cast<const dispatch::Slot*>(table + (call.key & mask));
        return slot.key.load(std::memory_order_acquire) == call.key
            ? slot.imp.load(std::memory_order_acquire)
            : nullptr;
    }

    /// Answers what the class runs for the call; nullptr when nothing does.
    IMP lookUp(const Call& call, const NSObject* self)
    {
        Class* const holder = call.from ? call.from : self->isa_;
        ensureInitialized(holder);
        if (!class_getInstanceMethod(holder, { call.selector }))
            return nullptr;
        return dispatch::miss(self, holder, { call.selector }, call.name, call.signature, call.key);
    }

    /// Forwards a call whose arguments are still where the caller put them.
    void forward(const Call& call, const Registers& registers, const Word* stack, void* result)
    {
        const char* const types = call.signature.types;
        Frame places;
        places.integersUsed = call.layout.first == Kind::memory;
        std::vector<std::array<Word, 2>> values(std::strlen(types));
        std::vector<void*> arguments;
        for (const char* at = encodingSkipType(types); *at; at = encodingSkipType(at)) {
            std::size_t size = 0;
            const std::vector<Kind> kinds = kindsOf(at, size);
            std::size_t integer = places.integersUsed;
            std::size_t floating = places.floatsUsed;
            if (!places.take(kinds)) {
                arguments.push_back(const_cast<Word*>(stack));
                stack += (size + 7) / 8;
                continue;
            }
            auto& value = values[arguments.size()];
            for (std::size_t i = 0; i < kinds.size(); ++i)
                value[i] = kinds[i] == Kind::integer
                    ? registers.integers[integer++]
                    : std::bit_cast<Word>(registers.floats[floating++]);
            arguments.push_back(value.data());
        }
        forwardTypes(types, arguments.data(), result, call.layout.resultSize);
    }

    /// The road of a message that the class has not kept, or that has arguments on the stack.
    template <class R, std::size_t Hidden>
    [[gnu::noinline]] R sendSlowly(
        const Call& call, NSObject* self, Registers& registers, const StackWords& stack)
    {
        const Word address = registers.integers[0];
        if (!self)
            return zeroAnswer<R, Hidden>(call.layout, address);
        registers.integers[Hidden + 1] = call.selector;
        ++sendDepth;
        const R answer = guarded([&]() -> R {
            const IMP found = kept(call, self);
            if (const IMP imp = found ? found : lookUp(call, self))
                return callFrame<R>(imp, registers, stack.words, stack.count);
            R forwarded = zeroAnswer<R, Hidden>(call.layout, address);
            Word room[2] {};
            forward(call, registers, stack.words, Hidden ? reinterpret_cast<void*>(address) : room);
            if constexpr (!Hidden)
                std::memcpy(&forwarded, room, sizeof forwarded);
            return forwarded;
        });
        --sendDepth;
        return orZeroAnswer<R, Hidden>(answer, call.layout, address);
    }

    struct SendEntry {
        template <class R, std::size_t Hidden>
        static R run(Word i0, Word i1, Word i2, Word i3, Word i4, Word i5, double d0, double d1,
            double d2, double d3, double d4, double d5, double d6, double d7, ...)
        {
            using Function = R (*)(Word, Word, Word, Word, Word, Word, double, double, double,
                double, double, double, double, double, ...);
            auto* const self = reinterpret_cast<NSObject*>(Hidden ? i1 : i0);
            const auto& call = *reinterpret_cast<const Call*>(Hidden ? i2 : i1);
            const IMP imp = self && !call.layout.stackWords ? kept(call, self) : nullptr;
            if (imp) [[likely]] {
                // Nothing has been called since: what the caller put into registers is still there.
                const auto function = reinterpret_cast<Function>(imp);
                ++sendDepth;
                const R answer = guarded([&]() -> R {
                    return Hidden ? function(
                               i0, i1, call.selector, i3, i4, i5, d0, d1, d2, d3, d4, d5, d6, d7)
                                  : function(i0, call.selector, i2, i3, i4, i5, d0, d1, d2, d3, d4,
                                      d5, d6, d7);
                });
                --sendDepth;
                return orZeroAnswer<R, Hidden>(answer, call.layout, i0);
            }
            Registers registers { { i0, i1, i2, i3, i4, i5 }, { d0, d1, d2, d3, d4, d5, d6, d7 } };
            StackWords stack;
            std::va_list list;
            va_start(list, d7);
            stack.read(list, call.layout.stackWords);
            va_end(list);
            return sendSlowly<R, Hidden>(call, self, registers, stack);
        }
    };

    // ---- bodies written in C

    struct Body {
        brindle_code code;
        void* context;
        void (*end)(void*);
        Layout layout;
    };

    /// Runs a body: the frame stands in the register that held what identified it.
    template <class R, std::size_t Hidden>
    R runBody(const Body& body, Registers& registers, std::size_t place, const StackWords& stack)
    {
        const Word address = registers.integers[0];
        Word room[2] {};
        brindle_frame frame { body.context, Hidden ? reinterpret_cast<void*>(address) : room, 0 };
        const Running running;
        if (closed)
            return zeroAnswer<R, Hidden>(body.layout, address);
        registers.integers[place] = reinterpret_cast<Word>(&frame);
        R answer = callFrame<R>(body.code, registers, stack.words, stack.count);
        if (!passOn())
            return zeroAnswer<R, Hidden>(body.layout, address);
        if constexpr (Hidden)
            answer = address;
        else if (frame.answered)
            std::memcpy(&answer, room, sizeof answer);
        return answer;
    }

    struct MethodEntry {
        template <class R, std::size_t Hidden>
        static R run(Word i0, Word i1, Word i2, Word i3, Word i4, Word i5, double d0, double d1,
            double d2, double d3, double d4, double d5, double d6, double d7, ...)
        {
            Registers registers { { i0, i1, i2, i3, i4, i5 }, { d0, d1, d2, d3, d4, d5, d6, d7 } };
            const auto& body = *reinterpret_cast<const Body*>(registers.integers[Hidden + 1]);
            const Ref<NSObject> alive(reinterpret_cast<NSObject*>(registers.integers[Hidden]));
            StackWords stack;
            std::va_list list;
            va_start(list, d7);
            stack.read(list, body.layout.stackWords);
            va_end(list);
            return runBody<R, Hidden>(body, registers, Hidden + 1, stack);
        }
    };

    struct ClosureEntry {
        template <class R, std::size_t Hidden>
        static R run(Word i0, Word i1, Word i2, Word i3, Word i4, Word i5, double d0, double d1,
            double d2, double d3, double d4, double d5, double d6, double d7, ...)
        {
            Registers registers { { i0, i1, i2, i3, i4, i5 }, { d0, d1, d2, d3, d4, d5, d6, d7 } };
            const Ref<ClosureBase> alive(
                reinterpret_cast<ClosureBase*>(registers.integers[Hidden]));
            const auto& body = *static_cast<const Body*>(closureContext(alive.get()));
            StackWords stack;
            std::va_list list;
            va_start(list, d7);
            stack.read(list, body.layout.stackWords);
            va_end(list);
            return runBody<R, Hidden>(body, registers, Hidden, stack);
        }
    };

    void endBody(void* context)
    {
        const std::unique_ptr<Body> body(static_cast<Body*>(context));
        const Running running;
        if (body->end && !closed)
            body->end(body->context);
    }

    // ---- code for one method

    /// Hands out small pieces of code, one for each method: an implementation is told apart by its address alone. Each puts
    /// its body where the selector was and goes on in the entry that all methods of its kind of result share.
    /// Bodies live for ever, like their code: somebody may keep the implementation.
    class CodePieces {
    public:
        IMP make(std::unique_ptr<const Body> body, brindle_code entry, bool hidden)
        {
            const std::lock_guard guard(runtimeLock());
            if (used_ + kSize > kPage)
                addPage();
            bodies_.push_back(std::move(body)); // code is no place where a leak checker looks
            unsigned char* at = writable_ + used_;
            // endbr64; mov r11, entry; mov rsi or rdx, body; jmp r11
            const auto code = { 0xF3, 0x0F, 0x1E, 0xFA, 0x49, 0xBB };
            at = std::copy(code.begin(), code.end(), at);
            at = word(at, reinterpret_cast<Word>(entry));
            *at++ = 0x48;
            *at++ = hidden ? 0xBA : 0xBE;
            at = word(at, reinterpret_cast<Word>(bodies_.back().get()));
            for (const int byte : { 0x41, 0xFF, 0xE3 })
                *at++ = static_cast<unsigned char>(byte);
            const auto imp = reinterpret_cast<IMP>(executable_ + used_);
            used_ += kSize;
            return imp;
        }

    private:
        static constexpr std::size_t kSize = 32;
        static constexpr std::size_t kPage = 4096;

        static unsigned char* word(unsigned char* at, Word value)
        {
            std::memcpy(at, &value, sizeof value);
            return at + sizeof value;
        }

        /// The same memory twice, once to write and once to run: no page is ever both.
        void addPage()
        {
            const int file = memfd_create("brindle-code", MFD_CLOEXEC);
            const bool sized = file >= 0 && ftruncate(file, kPage) == 0;
            void* const writable = sized
                ? mmap(nullptr, kPage, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                : MAP_FAILED;
            void* const executable = sized
                ? mmap(nullptr, kPage, PROT_READ | PROT_EXEC, MAP_SHARED, file, 0)
                : MAP_FAILED;
            if (file >= 0)
                close(file);
            if (writable == MAP_FAILED || executable == MAP_FAILED)
                raise("NSInternalInconsistencyException", "this system gives no memory for code");
            writable_ = static_cast<unsigned char*>(writable);
            executable_ = static_cast<unsigned char*>(executable);
            used_ = 0;
        }

        unsigned char* writable_ = nullptr;
        unsigned char* executable_ = nullptr;
        std::size_t used_ = kPage;
        std::vector<std::unique_ptr<const Body>> bodies_;
    };

}

#endif

}

using namespace brindle;
using namespace brindle::plain;

extern "C" {

#if defined(__x86_64__)

brindle_call* brindle_makeCall(const char* selector, const char* types, brindle_class from)
{
    return guarded([&]() -> brindle_call* {
        std::string declared = types ? types : "";
        std::string all = declared;
        if (const std::size_t dots = declared.find("..."); dots != declared.npos) {
            all.erase(dots, 3);
            declared.resize(dots);
        }
        const char* const clean = canonicalTypes(declared.c_str());
        const char* const cleanAll = canonicalTypes(all.c_str());
        if (!selector || !*selector || !clean || !cleanAll)
            raise("NSInvalidArgumentException",
                std::string("malformed types of a message: ") + (types ? types : "(null)"));
        auto call = std::make_unique<Call>();
        call->layout = layoutOf(cleanAll);
        call->code = entryFor<SendEntry>(call->layout);
        const SEL sel = sel_registerName(selector);
        call->selector = sel.value;
        call->name = sel_getName(sel);
        call->from = plain::classOf(from);
        call->signature = { clean, std::strlen(clean), hashOf(clean), nullptr, &noImplementation,
            &noImplementation };
        call->key = dispatch::keyOf(sel, call->signature.hash);
        call->made = lastCall.load(std::memory_order_relaxed);
        while (!lastCall.compare_exchange_weak(call->made, call.get()))
            continue;
        return call.release(); // classes keep its signature beside their answers
    });
}

int brindle_addMethod(
    brindle_class cls, const char* selector, const char* types, brindle_code code, void* context)
{
    if (!cls || !selector || !*selector || !code)
        return 0;
    return guarded([&] {
        const char* const clean = canonicalTypes(types);
        if (!clean)
            raise("NSInvalidArgumentException",
                std::string("malformed types of ") + selector + ": " + (types ? types : "(null)"));
        static auto& pieces = *new CodePieces;
        auto body = std::make_unique<Body>(Body { code, context, nullptr, layoutOf(clean) });
        const bool hidden = body->layout.first == Kind::memory;
        const brindle_code entry = entryFor<MethodEntry>(body->layout);
        const IMP imp = pieces.make(std::move(body), entry, hidden);
        class_replaceMethod(plain::classOf(cls), sel_registerName(selector), imp, clean);
        return true;
    });
}

brindle_id brindle_makeClosure(
    const char* types, brindle_code code, void* context, void (*end)(void* context))
{
    return guarded([&]() -> brindle_id {
        const char* const clean = canonicalTypes(types);
        if (!clean || !code)
            raise("NSInvalidArgumentException",
                std::string("malformed types of a closure: ") + (types ? types : "(null)"));
        auto body = std::make_unique<Body>(Body { code, context, end, layoutOf(clean) });
        const brindle_code entry = entryFor<ClosureEntry>(body->layout);
        return plainOf(makeClosure(clean, entry, body.release(), &endBody));
    });
}

#else

brindle_call* brindle_makeCall(const char* selector, const char*, brindle_class)
{
    return guarded([&] { return new brindle_call { nullptr, sel_registerName(selector).value }; });
}
int brindle_addMethod(brindle_class, const char*, const char*, brindle_code, void*)
{
    return guarded([]() -> int {
        raise("NSInvalidArgumentException", "the call rules of this processor are not known");
    });
}
brindle_id brindle_makeClosure(const char*, brindle_code, void*, void (*)(void*))
{
    return guarded([]() -> brindle_id {
        raise("NSInvalidArgumentException", "the call rules of this processor are not known");
    });
}

#endif

void brindle_raise(brindle_id exception)
{
    raised = static_cast<NSException*>(plain::object(exception));
}

void brindle_setAdaptable(brindle_class cls, brindle_selector selector)
{
    Method* const method = class_getInstanceMethod(plain::classOf(cls), { selector });
    if (method && method->owner == plain::classOf(cls))
        method->isAdaptable = true;
}

void brindle_setAdapter(
    int (*adaptTypes)(brindle_class cls, brindle_selector selector, const char* types))
{
    adapter = adaptTypes;
    methodAdapter = &adapt;
}

void brindle_setReporter(void (*report)(brindle_id exception)) { reporter = report; }

void brindle_close(double seconds)
{
    closed = true;
    const timespec step { 0, 1000000 };
    for (double waited = 0; runningBodies > ownBodies && waited < seconds; waited += 1e-3)
        nanosleep(&step, nullptr);
}
}
