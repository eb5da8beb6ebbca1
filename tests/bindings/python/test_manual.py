# SPDX-License-Identifier: Apache-2.0
"""What the manual shows is what happens."""

import doctest
import pathlib
import unittest

MANUAL = pathlib.Path(__file__).parents[3] / "docs" / "python.md"


def load_tests(loader, tests, pattern):
    tests.addTests(doctest.DocFileSuite(str(MANUAL), module_relative=False,
                                        optionflags=doctest.ELLIPSIS | doctest.IGNORE_EXCEPTION_DETAIL))
    return tests


if __name__ == "__main__":
    unittest.main()
