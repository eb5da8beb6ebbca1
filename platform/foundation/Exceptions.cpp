// SPDX-License-Identifier: Apache-2.0
#include "Exceptions.h"

#include <atomic>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <memory>
#include <typeinfo>

#include "NSDictionary.h"
#include "StringFormat.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constinit std::atomic<NSUncaughtExceptionHandler*> hostHandler { nullptr };
    constinit std::atomic<bool> isEnding { false };

    void logUncaught(NSString* name, NSString* reason)
    {
        NSLog("*** Terminating app due to uncaught exception '%@', reason: '%@'"_ns, name, reason);
    }

    std::string readableName(const std::type_info& type)
    {
        int status = 0;
        const std::unique_ptr<char, void (*)(void*)> name(
            abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
        return name ? name.get() : type.name();
    }

    void report()
    {
        const std::exception_ptr thrown = std::current_exception();
        if (!thrown)
            return;
        try {
            std::rethrow_exception(thrown);
        } catch (const Exception& exception) {
            if (NSUncaughtExceptionHandler* const handler = hostHandler.load())
                handler(exception.get());
            logUncaught(exception->name().get(), exception->reason().get());
        } catch (const std::exception& exception) {
            logUncaught(stringFrom(readableName(typeid(exception))).get(),
                stringFrom(std::string_view(exception.what())).get());
        } catch (...) {
            logUncaught("unknown"_ns, nullptr);
        }
    }

    [[noreturn]] void terminate() noexcept
    {
        if (!isEnding.exchange(true)) { // else reporting failed, or a second thread came here too
            try {
                report();
            } catch (...) {
                std::abort(); // a handler of the host threw: nothing is left to tell
            }
        }
        std::abort();
    }

}

void NSSetUncaughtExceptionHandler(NSUncaughtExceptionHandler* handler)
{
    hostHandler.store(handler);
    installUncaughtHandler();
}

NSUncaughtExceptionHandler* NSGetUncaughtExceptionHandler() { return hostHandler.load(); }

void installUncaughtHandler()
{
    static const bool installed = (std::set_terminate(&terminate), true);
    static_cast<void>(installed);
}

void raiseFormat(NSString* name, NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    Ref<NSString> reason;
    {
        const strings::ArgumentsEnd end(arguments);
        reason = stringFromFormat(format, arguments);
    }
    NSException::cls().exceptionWithName_reason_userInfo(name, reason.get(), nullptr)->raise();
}

namespace {

    struct Formatted {
        static void raiseWithFormat(Class* self, SEL, NSString* name, NSString* format, ...)
        {
            va_list arguments;
            va_start(arguments, format);
            Ref<NSString> reason;
            {
                const strings::ArgumentsEnd end(arguments);
                reason = stringFromFormat(format, arguments);
            }
            self->send<"exceptionWithName:reason:userInfo:", Ref<NSException>>(
                    name, reason.get(), static_cast<NSDictionary*>(nullptr))
                ->raise();
        }
        static void table(Builder& t)
        {
            t.classMethods({ { "raise:format:", variadic<raiseWithFormat> } });
        }
    };

}
BRINDLE_EXTENSION(NSException, Formatted)

}
