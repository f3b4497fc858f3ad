"""Usage: run.py PROGRAM OUTPUT-FOLDER TEST-FILE [-k PATTERN] [--patience SECONDS]

Runs the tests of a file against the program, on a desktop of their own. Pictures of failures go to the output folder.
"""

import argparse
import os
import signal
import sys
import unittest


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[2])
    parser.add_argument("program")
    parser.add_argument("output")
    parser.add_argument("tests")
    parser.add_argument("-k", dest="patterns", action="append")
    parser.add_argument("--patience", type=float, help="seconds to wait for anything; less while a test is written")
    options = parser.parse_args()

    here = os.path.dirname(os.path.abspath(__file__))
    sys.path.insert(0, here)
    from support import waiting
    from support.desktop import Desktop

    waiting.PATIENCE = options.patience or waiting.PATIENCE
    # Whoever runs out of patience with the whole finds nothing left behind either.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended from outside"))
    os.makedirs(options.output, exist_ok=True)
    with Desktop() as desktop:
        # Only now there is a bus that these can join.
        from support.case import EndToEndCase

        EndToEndCase.desktop = desktop
        EndToEndCase.program = os.path.abspath(options.program)
        EndToEndCase.output = os.path.abspath(options.output)
        loader = unittest.TestLoader()
        if options.patterns:
            loader.testNamePatterns = [f"*{pattern}*" for pattern in options.patterns]
        name = os.path.splitext(os.path.basename(options.tests))[0]
        result = unittest.TextTestRunner(verbosity=2, failfast=True).run(loader.loadTestsFromName(name))
    return 0 if result.wasSuccessful() and result.testsRun > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
