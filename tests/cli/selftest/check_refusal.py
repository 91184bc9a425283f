#!/usr/bin/env python3
"""Checks that the transcript runner refuses to run without an active simulator.

Usage: check_refusal.py RUNNER BIN_DIR

Three cases, each with the runner's exact message on standard error, nothing on standard output
and status 2, before any command of the transcript runs: no simulator given, a simulator whose
library is missing, and a simulator that is not active in the sandbox (its programs would see
the real /_admin).
"""

import os
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
TAIL = "; transcripts run only under the simulator, never against the real /_admin and /etc/mtab\n"


def run(runner, bin_dir, options, transcript):
    return subprocess.run([sys.executable, runner, "--bin-dir", bin_dir, *options, transcript],
                          capture_output=True, text=True)


def main():
    runner, bin_dir = sys.argv[1:3]
    failures = 0
    with tempfile.TemporaryDirectory(prefix="trovan-refusal-") as folder:
        # A transcript that would leave a mark if any of its commands ran.
        mark = os.path.join(folder, "ran")
        transcript = os.path.join(folder, "probe.t")
        with open(transcript, "w") as out:
            out.write(f"    $ touch {mark}\n    ? 0\n")
        fake = os.path.join(folder, "quillsim")
        with open(fake, "w") as out:
            out.write("#!/bin/sh\nexit 0\n")  # init and env succeed, env exports nothing
        os.chmod(fake, 0o755)
        library = os.path.join(folder, "libquillsim.so")
        cases = [
            ("no simulator", [], f"run_transcript.py: no simulator given (--quillsim PATH){TAIL}"),
            ("no library", ["--quillsim", fake],
             f"run_transcript.py: the simulator is not built: {library} is missing{TAIL}"),
            ("not active", ["--quillsim", fake],
             "run_transcript.py: the simulator is not active in the sandbox (its programs do not "
             f"see /_admin/.quillsim); refusing to run {transcript}\n"),
        ]
        for name, options, expected in cases:
            if name == "not active":
                open(library, "w").close()
            result = run(runner, bin_dir, options, transcript)
            if (result.returncode, result.stdout, result.stderr) != (2, "", expected):
                print(f"{name}: status {result.returncode}, stdout {result.stdout!r}, "
                      f"stderr {result.stderr!r}; expected status 2, no stdout, stderr {expected!r}")
                failures += 1
            if os.path.exists(mark):
                print(f"{name}: a command of the transcript ran")
                failures += 1
    print("ok" if failures == 0 else f"{failures} failure(s)")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
