# SPDX-License-Identifier: Apache-2.0
"""The examples run."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

EXAMPLES = pathlib.Path(__file__).parents[3] / "examples" / "python"


class Examples(unittest.TestCase):
    def test_clicks_draws_a_dot_for_each_click_that_was_not_taken_back(self):
        with tempfile.TemporaryDirectory() as folder:
            picture = pathlib.Path(folder) / "clicks.png"
            run = subprocess.run([sys.executable, EXAMPLES / "clicks.py", "--headless", picture],
                                 capture_output=True, text=True, timeout=60)
            self.assertEqual((run.returncode, run.stdout), (0, "2 dots\n"), run.stderr)
            self.assertGreater(picture.stat().st_size, 500)


if __name__ == "__main__":
    unittest.main()
