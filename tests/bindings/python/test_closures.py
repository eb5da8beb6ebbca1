# SPDX-License-Identifier: Apache-2.0
"""Callables as closures, threads, and exceptions in all of them."""

import ctypes
import gc
import subprocess
import sys
import threading
import unittest
import weakref

import brindle


class Closures(unittest.TestCase):
    def test_a_callable_is_a_closure(self):
        seen = []
        brindle.NSOperationQueue.mainQueue().addOperationWithBlock_(lambda: seen.append(1))
        brindle.run_until_idle()
        self.assertEqual(seen, [1])

    def test_the_operation_says_what_it_is_called_with(self):
        brindle.use_virtual_clock()
        try:
            seen = []
            timer = brindle.NSTimer.scheduledTimerWithTimeInterval_repeats_block_(1, False, seen.append)
            brindle.advance(2)
            self.assertEqual(seen, [timer])
            self.assertFalse(timer.isValid())
        finally:
            brindle.use_system_clock()

    def test_plain_functions_take_closures(self):
        brindle.use_virtual_clock()
        try:
            seen = []
            brindle.blockAfterDelay(0.5, lambda: seen.append("later"))
            brindle.advance(0.4)
            self.assertEqual(seen, [])
            brindle.advance(0.2)
            self.assertEqual(seen, ["later"])
        finally:
            brindle.use_system_clock()

    def test_a_closure_lives_as_long_as_the_runtime_keeps_it(self):
        class Thing:
            def __call__(self):
                pass

        thing = Thing()
        word = weakref.ref(thing)
        brindle.NSOperationQueue.mainQueue().addOperationWithBlock_(thing)
        del thing
        gc.collect()
        self.assertIsNotNone(word())
        brindle.run_until_idle()
        gc.collect()
        self.assertIsNone(word())

    def test_an_argument_that_is_not_callable_is_refused(self):
        with self.assertRaisesRegex(TypeError, "addOperationWithBlock:"):
            brindle.NSOperationQueue.mainQueue().addOperationWithBlock_("text")

    def test_a_closure_that_was_stored_can_be_called(self):
        class Holder(brindle.NSObject):
            code = brindle.property("@?", copy=True)

        holder = Holder()
        holder.setCode_(brindle.Block("d@?dd", lambda a, b: a * b))
        self.assertEqual(holder.code()(3, 4), 12.0)
        with self.assertRaisesRegex(TypeError, "d@[?]dd"):
            holder.code()(3)

    def test_a_closure_takes_and_answers_addresses(self):
        class Holder(brindle.NSObject):
            code = brindle.property("@?", copy=True)

        def doubled(number):
            number.value *= 2
            return number

        holder = Holder()
        holder.setCode_(brindle.Block("^d@?^d", doubled))
        number = ctypes.c_double(21)
        self.assertEqual(holder.code()(number).value, 42)
        self.assertEqual(number.value, 42)
        holder.setCode_(brindle.Block("d@?^d", lambda numbers: numbers[0] + numbers[1]))
        self.assertEqual(holder.code()([1.5, 2.5]), 4)
        holder.setCode_(brindle.Block("B@?^v", lambda nothing: nothing is None))
        self.assertTrue(holder.code()(None))
        with self.assertRaisesRegex(TypeError, "an address is expected"):
            holder.code()("text")

    def test_an_exception_in_a_task_leaves_the_loop(self):
        def fail():
            raise ValueError("in the task")

        brindle.NSOperationQueue.mainQueue().addOperationWithBlock_(fail)
        with self.assertRaises(brindle.Exception) as caught:
            brindle.run_until_idle()
        self.assertEqual(caught.exception.reason, "in the task")
        brindle.run_until_idle()

    def test_an_exception_on_another_thread_is_reported_there(self):
        reported, done = [], threading.Event()

        def hook(arguments):
            reported.append(arguments.exc_value)
            done.set()

        def fail():
            raise ValueError("far away")

        before, threading.excepthook = threading.excepthook, hook
        try:
            queue = brindle.dispatch_get_global_queue(0, 0)
            brindle.dispatch_async(queue, fail)
            self.assertTrue(done.wait(10))
        finally:
            threading.excepthook = before
        self.assertEqual(reported[0].reason, "far away")

    def test_threads_of_python_may_call(self):
        results = []

        def work():
            for _ in range(200):
                results.append(brindle.NSString.stringWithString_("a").uppercaseString())

        threads = [threading.Thread(target=work) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(results, ["A"] * 800)

    def test_a_call_that_waits_lets_other_threads_run(self):
        seen = []
        queue = brindle.dispatch_get_global_queue(0, 0)
        brindle.dispatch_sync(queue, lambda: seen.append(1))
        group = brindle.dispatch_group_create()
        for _ in range(20):
            brindle.dispatch_group_async(group, queue, lambda: seen.append(2))
        brindle.dispatch_group_wait(group, 2**64 - 1)
        self.assertEqual(len(seen), 21)

    def test_errors_of_two_threads_stay_apart(self):
        wrong = []

        def work(index):
            array = brindle.NSMutableArray.array()
            for _ in range(200):
                try:
                    array.objectAtIndex_(index)
                    wrong.append("nothing raised")
                except brindle.Exception as error:
                    if str(index) not in error.reason:
                        wrong.append(error.reason)

        threads = [threading.Thread(target=work, args=(1000 + i,)) for i in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(wrong, [])


ENDING = """
import brindle, threading, time
class Kept(brindle.NSObject):
    def dealloc(self): print("dealloc")
kept = Kept()
array = brindle.NSMutableArray.arrayWithObject_(kept)
queue = brindle.dispatch_get_global_queue(0, 0)
def work():
    for _ in range(1000): brindle.NSObject.alloc().init()
for _ in range(50): brindle.dispatch_async(queue, work)
brindle.NSOperationQueue.mainQueue().addOperationWithBlock_(lambda: None)
timer = brindle.NSTimer.scheduledTimerWithTimeInterval_repeats_block_(0.001, True, lambda t: None)
{last}
"""


class Ends(unittest.TestCase):
    def check(self, last, status):
        run = subprocess.run([sys.executable, "-c", ENDING.format(last=last)], capture_output=True,
                             text=True, timeout=60)
        self.assertEqual(run.returncode, status, run.stderr)

    def test_the_interpreter_ends_with_objects_closures_and_threads_alive(self):
        self.check("", 0)

    def test_the_interpreter_ends_by_an_exception(self):
        self.check("brindle.NSMutableArray.array().objectAtIndex_(5)", 1)

    def test_the_interpreter_ends_by_exit_in_a_closure(self):
        self.check("brindle.NSOperationQueue.mainQueue().addOperationWithBlock_(lambda: exit(7))\n"
                   "brindle.run_until_idle()", 7)


class Memory(unittest.TestCase):
    def resident(self):
        with open("/proc/self/statm") as file:
            return int(file.read().split()[1]) * 4096

    def grown(self, make, times):
        for _ in range(times // 10):
            make()
        gc.collect()
        before = self.resident()
        for _ in range(times):
            make()
        gc.collect()
        return self.resident() - before

    def test_100000_objects_leave_nothing(self):
        self.assertLess(self.grown(lambda: brindle.NSObject.alloc().init(), 100000), 2 << 20)

    def test_10000_closures_leave_nothing(self):
        queue = brindle.NSOperationQueue.mainQueue()

        def make():
            queue.addOperationWithBlock_(lambda: None)
            brindle.run_until_idle()

        self.assertLess(self.grown(make, 10000), 2 << 20)

    def test_10000_exceptions_leave_nothing(self):
        array = brindle.NSMutableArray.array()

        def make():
            try:
                array.objectAtIndex_(1)
            except brindle.Exception:
                pass

        self.assertLess(self.grown(make, 10000), 2 << 20)


if __name__ == "__main__":
    unittest.main()
