/* SPDX-License-Identifier: Apache-2.0 */
/* The interface for C, read by a C compiler and used as its header says. */

#include <stdio.h>
#include <string.h>

#include "runtime/brindle.h"

static int failures = 0;

static void check(int condition, const char* what)
{
    if (condition)
        return;
    fprintf(stderr, "failed: %s\n", what);
    ++failures;
}

static void aPreparedMessageIsSent(void)
{
    brindle_id text = brindle_makeString("brindle", 7);
    brindle_call* upper = brindle_makeCall("uppercaseString", "@@:", NULL);
    brindle_call* bytes = brindle_makeCall("UTF8String", "*@:", NULL);
    brindle_id loud = ((brindle_id(*)(brindle_id, brindle_call*))upper->code)(text, upper);
    const char* spelled = ((const char* (*)(brindle_id, brindle_call*))bytes->code)(loud, bytes);
    check(strcmp(spelled, "BRINDLE") == 0, "a prepared message is sent");
    brindle_release(loud);
    brindle_release(text);
}

static void nullAnswersZero(void)
{
    brindle_call* length = brindle_makeCall("length", "Q@:", NULL);
    check(((uint64_t(*)(brindle_id, brindle_call*))length->code)(NULL, length) == 0,
        "NULL answers zero");
    check(brindle_classNamed(NULL) == NULL, "there is no class without a name");
}

static void whatIsRaisedIsKept(void)
{
    brindle_id text = brindle_makeString("abc", 3);
    brindle_call* at = brindle_makeCall("characterAtIndex:", "S@:Q", NULL);
    uint16_t unit = ((uint16_t(*)(brindle_id, brindle_call*, uint64_t))at->code)(text, at, 9);
    brindle_id error = brindle_takeError();
    check(unit == 0 && error != NULL, "what is raised is kept for the thread");
    check(strcmp(brindle_className(brindle_classOf(error)), "NSException") == 0,
        "it is an exception");
    check(brindle_takeError() == NULL, "it is taken once");
    brindle_release(error);
    brindle_release(text);
}

int main(void)
{
    aPreparedMessageIsSent();
    nullAnswersZero();
    whatIsRaisedIsKept();
    return failures != 0;
}
