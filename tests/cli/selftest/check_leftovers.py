#!/usr/bin/env python3
"""Checks that the transcript runner fails a transcript whose programs leave resources behind.

Usage: check_leftovers.py RUNNER --bin-dir DIR --quillsim PATH

Runs leftovers.t (beside this file) and compares the runner's report, with process ids shown as
PID, to the expected one; then checks that the runner removed the file left in /tmp.
"""

import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))


def main():
    runner, *options = sys.argv[1:]
    transcript = os.path.join(HERE, "leftovers.t")
    result = subprocess.run([sys.executable, runner, *options, transcript],
                            capture_output=True, text=True)
    left = re.findall(r"/tmp/trovan-selftest-left\.\d+", result.stdout)
    report = re.sub(r"\[\d+\]", "[PID]", result.stdout)
    report = re.sub(r"(/tmp/trovan-selftest-left)\.\d+", r"\1.PID", report)
    expected = (f"FAIL {transcript}: resources left behind at the end of the transcript\n"
                "  bash[PID]: descriptor 3 left open on /_admin/Manage_QUILL/files.cmd\n"
                "  bash[PID]: temporary file /tmp/trovan-selftest-left.PID left behind\n"
                "4 passed, 1 failed\n")
    failures = 0
    if result.returncode != 1 or report != expected:
        print(f"runner status {result.returncode} (expected 1); report:\n{result.stdout}"
              f"{result.stderr}expected (process ids as PID):\n{expected}")
        failures += 1
    for name in left:
        if os.path.exists(name):
            print(f"the runner did not remove {name}")
            os.remove(name)
            failures += 1
    if not left:
        print("the report names no file left in /tmp")
        failures += 1
    print("ok" if failures == 0 else f"{failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
