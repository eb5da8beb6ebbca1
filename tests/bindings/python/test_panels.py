# SPDX-License-Identifier: Apache-2.0
"""Alerts, panels and opened URLs with somebody in place of the person and the desktop."""

import os
import tempfile
import unittest

import brindle


class Answers(unittest.TestCase):
    def tearDown(self):
        brindle.answer_alerts(None)
        brindle.answer_panels(None)
        brindle.take_opened_urls(None)

    def test_an_alert_is_answered_by_a_function(self):
        seen = []
        brindle.answer_alerts(lambda alert: seen.append(str(alert.informativeText())) or 1)
        make = brindle.NSAlert.alertWithMessageText_defaultButton_alternateButton_otherButton_informativeTextWithFormat_
        alert = make("Title", None, None, None, "%@ of %d", "two", 3)
        self.assertEqual(alert.runModal(), 1)
        self.assertEqual(seen, ["two of 3"])

    def test_a_sheet_is_answered_in_a_later_turn(self):
        brindle.answer_alerts(lambda alert: 1001)
        codes = []
        brindle.NSAlert().beginSheetModalForWindow_completionHandler_(None, codes.append)
        self.assertEqual(codes, [])
        brindle.run_until_idle()
        self.assertEqual(codes, [1001])

    def test_a_panel_is_answered_with_urls(self):
        with tempfile.NamedTemporaryFile() as file:
            url = brindle.NSURL.fileURLWithPath_(os.path.realpath(file.name))
            brindle.answer_panels(lambda panel: [url])
            panel = brindle.NSOpenPanel.openPanel()
            self.assertEqual(panel.runModal(), 1)
            self.assertEqual(panel.URL().path(), os.path.realpath(file.name))

    def test_a_panel_is_cancelled_with_none(self):
        brindle.answer_panels(lambda panel: None)
        panel = brindle.NSOpenPanel.openPanel()
        self.assertEqual(panel.runModal(), 0)
        self.assertIsNone(panel.URL())

    def test_a_delegate_of_python_decides_what_may_be_chosen(self):
        class Rule(brindle.NSObject):
            def panel_shouldEnableURL_(self, panel, url):
                return False

        rule = Rule()
        with tempfile.NamedTemporaryFile() as file:
            url = brindle.NSURL.fileURLWithPath_(file.name)
            brindle.answer_panels(lambda panel: [url])
            panel = brindle.NSOpenPanel.openPanel()
            panel.setDelegate_(rule)
            self.assertEqual(panel.runModal(), 0)

    def test_opened_urls_are_taken(self):
        urls = []
        brindle.take_opened_urls(lambda url: urls.append(str(url.absoluteString())) or True)
        workspace = brindle.NSWorkspace.sharedWorkspace()
        self.assertTrue(workspace.openURL_(brindle.NSURL.URLWithString_("http://host/")))
        self.assertEqual(urls, ["http://host/"])

    def test_access_runs_the_closure_or_not(self):
        with tempfile.TemporaryDirectory() as home:
            old = os.environ.get("XDG_DATA_HOME")
            os.environ["XDG_DATA_HOME"] = home
            ran = []
            access = brindle.AppSandboxFileAccess.fileAccess()
            url = brindle.NSURL.fileURLWithPath_(os.path.realpath(home))
            brindle.answer_panels(lambda panel: [url])
            path = os.path.join(os.path.realpath(home), "file")
            self.assertTrue(access.accessFilePath_withBlock_persistPermission_(path, lambda: ran.append(1), False))
            brindle.answer_panels(lambda panel: None)
            self.assertFalse(access.accessFilePath_withBlock_persistPermission_(path, lambda: ran.append(2), False))
            self.assertEqual(ran, [1])
            if old is None:
                del os.environ["XDG_DATA_HOME"]
            else:
                os.environ["XDG_DATA_HOME"] = old


if __name__ == "__main__":
    unittest.main()
