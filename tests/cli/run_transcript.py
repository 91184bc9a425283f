#!/usr/bin/env python3
"""Runs command-line transcripts: each command's exact stdout, stderr and exit status.

Usage: run_transcript.py --bin-dir DIR --quillsim PATH FILE.t [FILE.t ...]

Each file runs in a fresh simulator sandbox: `quillsim init` has been run and the environment
that `quillsim env` prints is in force for every command (with DIR first on PATH). The runner
refuses to run without the simulator (quillsim and libquillsim.so beside it), and checks in each
sandbox that the simulation is active before the first command, so that no transcript can reach
the real /_admin or /etc/mtab. After the last command the file fails if any program
of the sandbox left a descriptor open on a simulated admin file or the mount table, or left a
file it made in /tmp (`quillsim log --leaks`). The format is described in README.md beside this
file.
"""

import argparse
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

INDENT = "    "
COMMAND_TIMEOUT_SECONDS = 120


class Command:
    def __init__(self, text, line_number):
        self.text = text
        self.line_number = line_number
        self.stdin = b""
        self.stdout = b""
        self.stderr = b""
        self.status = None


class TranscriptError(Exception):
    pass


def read_data_file(base_dir, name):
    with open(os.path.join(base_dir, name), "rb") as data:
        return data.read()


def parse(path):
    """Returns the commands of a transcript, in order."""
    base_dir = os.path.dirname(os.path.abspath(path))
    commands = []
    with open(path, "rb") as transcript:
        lines = transcript.read().decode("utf-8", "surrogateescape").split("\n")
    stream_pattern = re.compile(r"^(<|>|2>)([!@]?)(?: (.*))?$", re.S)
    for number, line in enumerate(lines, start=1):
        if not line.startswith(INDENT):
            continue
        body = line[len(INDENT):]
        if body.startswith("$ "):
            commands.append(Command(body[2:], number))
            continue
        if not commands:
            raise TranscriptError(f"{path}:{number}: output before any command")
        current = commands[-1]
        if body.startswith("? "):
            current.status = int(body[2:].strip())
            continue
        match = stream_pattern.match(body)
        if match is None:
            raise TranscriptError(f"{path}:{number}: cannot read line {body!r}")
        stream, mode, text = match.group(1), match.group(2), match.group(3) or ""
        raw = text.encode("utf-8", "surrogateescape")
        if mode == "@":
            data = read_data_file(base_dir, text)
        elif mode == "!":
            data = raw
        else:
            data = raw + b"\n"
        attribute = {"<": "stdin", ">": "stdout", "2>": "stderr"}[stream]
        setattr(current, attribute, getattr(current, attribute) + data)
    for command in commands:
        if command.status is None:
            raise TranscriptError(
                f"{path}:{command.line_number}: command has no '? N' status line")
    return commands


class RefusalError(Exception):
    pass


def check_simulator(quillsim):
    """Raises RefusalError unless the simulator is built: the command and its library."""
    if quillsim is None:
        raise RefusalError("no simulator given (--quillsim PATH)")
    library = os.path.join(os.path.dirname(quillsim), "libquillsim.so")
    for needed in (quillsim, library):
        if not os.path.isfile(needed):
            raise RefusalError(f"the simulator is not built: {needed} is missing")


def check_active(env, sandbox):
    """Raises RefusalError unless the sandbox's programs see the simulated /_admin."""
    probe = subprocess.run(["bash", "-c", "test -e /_admin/.quillsim"], env=env, cwd=sandbox,
                           timeout=COMMAND_TIMEOUT_SECONDS)
    if probe.returncode != 0:
        raise RefusalError("the simulator is not active in the sandbox "
                           "(its programs do not see /_admin/.quillsim)")


def sandbox_environment(sandbox, bin_dir, quillsim, data_dir):
    env = dict(os.environ)
    env["LC_ALL"] = "C"
    env["DATA"] = data_dir
    env["SANDBOX"] = sandbox
    env["PATH"] = os.path.dirname(quillsim) + os.pathsep + env.get("PATH", "/usr/bin:/bin")
    env["QUILLSIM_ROOT"] = sandbox
    subprocess.run([quillsim, "init"], env=env, cwd=sandbox, check=True)
    exports = subprocess.run([quillsim, "env"], env=env, cwd=sandbox, check=True,
                             capture_output=True, text=True).stdout
    for line in exports.splitlines():
        words = shlex.split(line)
        if len(words) == 2 and words[0] == "export" and "=" in words[1]:
            name, value = words[1].split("=", 1)
            env[name] = value
    # The trovan under test comes first, ahead of a build tree's that `quillsim env` may add.
    env["PATH"] = bin_dir + os.pathsep + env["PATH"]
    check_active(env, sandbox)
    return env


def show(data):
    return data.decode("utf-8", "backslashreplace").splitlines(keepends=True) or [""]


def side_by_side(title, expected, actual):
    left, right = show(expected), show(actual)
    width = max(40, max(len(repr(line)) for line in left))
    rows = [f"  {title}: expected{' ' * (width - 8)} | actual"]
    for index in range(max(len(left), len(right))):
        want = repr(left[index]) if index < len(left) else ""
        got = repr(right[index]) if index < len(right) else ""
        marker = " " if want == got else "!"
        rows.append(f" {marker} {want:<{width}} | {got}")
    return "\n".join(rows)


LEFT_FILE = re.compile(r": temporary file (/tmp/[^/\n]+) left behind$")


def check_leftovers(path, quillsim, env, sandbox):
    """Returns 1 (and prints them) when programs of the sandbox left resources behind, else 0.
    Files left in /tmp are removed, so that a failing transcript does not litter."""
    result = subprocess.run([quillsim, "log", "--leaks", "--root-as", "$SANDBOX"], env=env,
                            cwd=sandbox, capture_output=True, timeout=COMMAND_TIMEOUT_SECONDS)
    report = result.stdout.decode("utf-8", "backslashreplace")
    if result.returncode != 0:
        print(f"FAIL {path}: quillsim log --leaks ended with status {result.returncode}")
        print(result.stderr.decode("utf-8", "backslashreplace"), end="")
        return 1
    if not report:
        return 0
    print(f"FAIL {path}: resources left behind at the end of the transcript")
    for line in report.splitlines():
        print(f"  {line}")
        match = LEFT_FILE.search(line)
        if match:
            try:
                os.remove(match.group(1))
            except OSError:
                pass
    return 1


def run_file(path, bin_dir, quillsim):
    commands = parse(path)
    failures = 0
    sandbox = tempfile.mkdtemp(prefix="trovan-transcript-")
    try:
        env = sandbox_environment(sandbox, bin_dir, quillsim,
                                  os.path.dirname(os.path.abspath(path)))
        for command in commands:
            try:
                result = subprocess.run(["bash", "-c", command.text], input=command.stdin,
                                        capture_output=True, env=env, cwd=sandbox,
                                        timeout=COMMAND_TIMEOUT_SECONDS)
                stdout, stderr, status = result.stdout, result.stderr, result.returncode
                if status < 0:
                    status = 128 - status  # killed by a signal, as a shell reports it
                # The sandbox's own path differs from run to run: show it as $SANDBOX.
                stdout = stdout.replace(sandbox.encode(), b"$SANDBOX")
                stderr = stderr.replace(sandbox.encode(), b"$SANDBOX")
            except subprocess.TimeoutExpired as expired:
                stdout, stderr = expired.stdout or b"", expired.stderr or b""
                status = "timeout"
            if status == command.status and stdout == command.stdout and stderr == command.stderr:
                continue
            failures += 1
            print(f"FAIL {path}:{command.line_number}: $ {command.text}")
            if stdout != command.stdout:
                print(side_by_side("stdout", command.stdout, stdout))
            if stderr != command.stderr:
                print(side_by_side("stderr", command.stderr, stderr))
            if status != command.status:
                print(f"  status: expected {command.status}, actual {status}")
        failures += check_leftovers(path, quillsim, env, sandbox)
    finally:
        shutil.rmtree(sandbox, ignore_errors=True)
    # The check of what the sandbox's programs left behind counts as one more.
    return len(commands) + 1, failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin-dir", required=True, help="folder holding the trovan binary")
    parser.add_argument("--quillsim", help="the quillsim command (required: the sandbox's server)")
    parser.add_argument("files", nargs="+")
    arguments = parser.parse_args()
    bin_dir = os.path.abspath(arguments.bin_dir)
    quillsim = os.path.abspath(arguments.quillsim) if arguments.quillsim else None
    try:
        check_simulator(quillsim)
    except RefusalError as refusal:
        print(f"run_transcript.py: {refusal}; transcripts run only under the simulator, "
              "never against the real /_admin and /etc/mtab", file=sys.stderr)
        return 2
    passed = failed = 0
    for path in arguments.files:
        try:
            count, failures = run_file(path, bin_dir, quillsim)
        except RefusalError as refusal:
            print(f"run_transcript.py: {refusal}; refusing to run {path}", file=sys.stderr)
            return 2
        except TranscriptError as error:
            print(f"ERROR {error}")
            failed += 1
            continue
        passed += count - failures
        failed += failures
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
