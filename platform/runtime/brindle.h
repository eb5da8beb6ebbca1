/* SPDX-License-Identifier: Apache-2.0 */
#ifndef BRINDLE_RUNTIME_BRINDLE_H
#define BRINDLE_RUNTIME_BRINDLE_H

/*
 * The object runtime for C, and for any language that can call C.
 *
 * Objects are pointers with a count. Arguments are lent: they must live until the call returns. Whatever a message, a
 * closure or one of these functions answers as an object is an owner: the caller releases it. Classes and selectors
 * live for ever. Types are written as in method_getTypeEncoding: "v@:{CGRect={CGPoint=dd}{CGSize=dd}}".
 *
 * No C++ exception leaves one of these functions. What was raised inside is kept for the thread until
 * brindle_takeError is asked, and the function answers zero.
 *
 * Thread: all functions may be called from any thread, except where a class says otherwise.
 */

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define BRINDLE_C_EXPORT __attribute__((visibility("default")))
#else
#define BRINDLE_C_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct brindle_object* brindle_id;
typedef struct brindle_class_object* brindle_class; /* a class is an object as well */
typedef uint64_t brindle_selector; /* 0 is no selector */
typedef void (*brindle_code)(void);

/* ---- classes */

/* Answers the class of a name; NULL for NULL, "" and names nobody declared. */
BRINDLE_C_EXPORT brindle_class brindle_classNamed(const char* name);
/* Answers the class an object is of; of a class its metaclass, whose methods are the class operations. */
BRINDLE_C_EXPORT brindle_class brindle_classOf(brindle_id object);
BRINDLE_C_EXPORT brindle_class brindle_superclass(brindle_class cls);
BRINDLE_C_EXPORT const char* brindle_className(brindle_class cls);
BRINDLE_C_EXPORT int brindle_isMetaclass(brindle_class cls);
/* Answers the names of all classes, in alphabetical order, one a line. The caller frees the text with brindle_free. */
BRINDLE_C_EXPORT char* brindle_copyClassNames(void);
/* Begins a class; NULL when the name is taken or empty. Fields and methods follow, then brindle_registerClass. */
BRINDLE_C_EXPORT brindle_class brindle_makeClass(brindle_class parent, const char* name);
/* Adds a field that begins as zero: room for one value of that type. Answers 0 when it cannot be. */
BRINDLE_C_EXPORT int brindle_addField(brindle_class cls, const char* name, const char* type);
BRINDLE_C_EXPORT void brindle_registerClass(brindle_class cls);
BRINDLE_C_EXPORT int brindle_adoptProtocol(brindle_class cls, const char* protocol);
/* Answers where a field lies in an object, NULL when there is none of that name. Readable while the object lives. */
BRINDLE_C_EXPORT void* brindle_field(brindle_id object, const char* name);

/* Reads and writes a field that is an object: the field retains what it is given. */
BRINDLE_C_EXPORT brindle_id brindle_objectField(brindle_id object, const char* name);
BRINDLE_C_EXPORT void brindle_setObjectField(brindle_id object, const char* name, brindle_id value);

/* ---- selectors, methods, properties */

BRINDLE_C_EXPORT brindle_selector brindle_selectorNamed(const char* name);
/* Answers NULL for a selector whose name this process has never seen. */
BRINDLE_C_EXPORT const char* brindle_selectorName(brindle_selector selector);
/* Answers the types of what instances of the class run for a selector, ancestors searched; NULL when there is nothing. */
BRINDLE_C_EXPORT const char* brindle_methodTypes(brindle_class cls, brindle_selector selector);
/* The same with the class of each object and the signature of each closure, as far as they are known:
   `v@:@"NSView"@?<v@?@Q^B>`. An argument of another class must not be passed. */
BRINDLE_C_EXPORT const char* brindle_methodDetailedTypes(
    brindle_class cls, brindle_selector selector);
/* Answers the types of a message to this object, forwarded ones included; NULL when it would not be understood. */
BRINDLE_C_EXPORT const char* brindle_messageTypes(brindle_id object, brindle_selector selector);
/* Answers the selectors of the class's own methods, one a line. The caller frees the text with brindle_free. */
BRINDLE_C_EXPORT char* brindle_copyMethodNames(brindle_class cls);
/* Answers the class's own properties, one a line: name, a space, attributes. To be freed with brindle_free. */
BRINDLE_C_EXPORT char* brindle_copyProperties(brindle_class cls);
/* Answers the attributes of a property, ancestors searched: `T@"NSString",C,N,V_title`; NULL when there is none. */
BRINDLE_C_EXPORT const char* brindle_propertyAttributes(brindle_class cls, const char* name);
BRINDLE_C_EXPORT int brindle_addProperty(
    brindle_class cls, const char* name, const char* attributes);

/* ---- ownership */

BRINDLE_C_EXPORT brindle_id brindle_retain(
    brindle_id object); /* answers the object; NULL stays NULL */
BRINDLE_C_EXPORT void brindle_release(brindle_id object);
/* Answers a word that knows the object without keeping it. */
BRINDLE_C_EXPORT void* brindle_makeWeak(brindle_id object);
/* Answers the object as an owner, or NULL once its end has begun. */
BRINDLE_C_EXPORT brindle_id brindle_loadWeak(void* weak);
BRINDLE_C_EXPORT void brindle_dropWeak(void* weak);
/* Calls a function once the object has ended, after its dealloc and its fields. Answers 0 for NULL. */
BRINDLE_C_EXPORT int brindle_whenGone(brindle_id object, void (*end)(void* context), void* context);
BRINDLE_C_EXPORT void brindle_free(void* buffer);
/* Answers a new string of UTF-8 text; bytes that are none are replaced. */
BRINDLE_C_EXPORT brindle_id brindle_makeString(const char* text, size_t length);

/* ---- sending */

/*
 * One message, prepared once and sent as often as you like:
 *
 *     brindle_call* call = brindle_makeCall("setFrame:", "v@:{CGRect={CGPoint=dd}{CGSize=dd}}", NULL);
 *     ((void (*)(brindle_id, brindle_call*, Rect))call->code)(view, call, rect);
 *
 * The call stands where an implementation has its selector. The receiver's class is asked each time, so overriding and
 * exchanging are noticed at once. A NULL receiver answers zero.
 */
typedef struct brindle_call {
    brindle_code code; /* NULL where this processor's call rules are not known: use brindle_send */
    brindle_selector selector;
} brindle_call;

/* Prepares a message; calls live for ever, so keep one for each place.
   - types: with a "..." the types of arguments that C does not declare follow: "@@:@...dq" for a method "@@:@".
   - from: NULL; or a class: the search begins there instead of at the receiver's class (super).
   Answers NULL and an error for types that are malformed or take more than 256 bytes of stack. */
BRINDLE_C_EXPORT brindle_call* brindle_makeCall(
    const char* selector, const char* types, brindle_class from);

/* Sends a message whose types are known as text only.
   - types: NULL for the receiver's own.
   - arguments: their addresses, without receiver and selector. - result: room for the answer, at least 8 bytes;
   NULL when nobody wants it: an object is released then.
   Answers NULL, or the exception that was raised, which the caller releases. */
BRINDLE_C_EXPORT brindle_id brindle_send(brindle_id object, brindle_selector selector,
    const char* types, void* const* arguments, void* result);

/* Answers the exception that was kept for this thread, as an owner, and forgets it; NULL when there is none. */
BRINDLE_C_EXPORT brindle_id brindle_takeError(void);
/* Answers the address of a number that is not 0 while any thread has an exception to take: quicker than asking. */
BRINDLE_C_EXPORT const int* brindle_errorCount(void);
/* Makes an exception: name and reason in UTF-8. */
BRINDLE_C_EXPORT brindle_id brindle_makeException(const char* name, const char* reason);

/* ---- methods and closures written in C */

/* What a body finds where other implementations have their selector. */
typedef struct brindle_frame {
    void* context;
    void* result; /* room for an answer that is a structure; nothing where it is none */
    int answered; /* set it when the answer was written to `result` instead of returned */
} brindle_frame;

/* Adds a method, or replaces the class's own: `R code(brindle_id self, brindle_frame* frame, arguments…)`.
   What it answers as an object is an owner. Answers 0, and keeps an error, when the types cannot be. */
BRINDLE_C_EXPORT int brindle_addMethod(
    brindle_class cls, const char* selector, const char* types, brindle_code code, void* context);

/* Says that the types of one of the class's own methods are a guess, because the language has none. The first message of
   other types asks the adapter, which may call brindle_addMethod with them and answers whether it did. */
BRINDLE_C_EXPORT void brindle_setAdaptable(brindle_class cls, brindle_selector selector);
BRINDLE_C_EXPORT void brindle_setAdapter(
    int (*adapt)(brindle_class cls, brindle_selector selector, const char* types));

/* Answers a closure: `R code(brindle_frame* frame, arguments…)`. - types: "v@?", "B@?@".
   - end: called with the context when the closure goes; may be NULL. */
BRINDLE_C_EXPORT brindle_id brindle_makeClosure(
    const char* types, brindle_code code, void* context, void (*end)(void* context));
/* Answers the types of a closure; NULL for anything else. */
BRINDLE_C_EXPORT const char* brindle_closureTypes(brindle_id closure);
/* Runs a closure; everything else as in brindle_send. */
BRINDLE_C_EXPORT brindle_id brindle_runClosure(
    brindle_id closure, void* const* arguments, void* result);

/* Raises an exception as soon as the body that runs on this thread has returned; what it answers is dropped. */
BRINDLE_C_EXPORT void brindle_raise(brindle_id exception);
/* Sets who is told of an exception that leaves a body on a thread where nothing below could catch it: neither the
   main thread nor one that sends through this interface. Without, it goes on as a C++ exception, which ends the process. */
BRINDLE_C_EXPORT void brindle_setReporter(void (*report)(brindle_id exception));
/* Ends the running of bodies for good: methods and closures of C do nothing from now on and answer zero. Waits until
   those of other threads have returned, but not longer than that many seconds.
   For a language that shuts down before the process does. */
BRINDLE_C_EXPORT void brindle_close(double seconds);

/* ---- plain functions */

/* Answers a function of the library by its name, and its types without receiver and selector: "d{CGRect=…}@". It keeps
   what it raises as a prepared call does. NULL for a name that is not listed. */
BRINDLE_C_EXPORT brindle_code brindle_functionNamed(const char* name, const char** types);
/* Answers the names, one a line. The caller frees the text with brindle_free. */
BRINDLE_C_EXPORT char* brindle_copyFunctionNames(void);

/* ---- the run loop */

/* Runs what is due now on this thread's loop, without waiting. Answers whether anything ran. */
BRINDLE_C_EXPORT int brindle_runUntilIdle(void);
/* Runs this thread's loop for so long; a virtual clock is turned forward instead. */
BRINDLE_C_EXPORT void brindle_advance(double seconds);

#ifdef __cplusplus
}
#endif

#endif
