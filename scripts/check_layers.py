#!/usr/bin/env python3
"""Checks that every #include in src/ follows the layering table of docs/ARCHITECTURE.md.

The table sits between the markers <!-- layers:begin --> and <!-- layers:end -->: one row per
folder of src/, its second column the folders (or single headers, `folder/file.h`) that the
folder's files may include besides their own folder. Unit tests (*_test.cpp) may include anything.
Every include of a project header that the table does not allow is printed as
file:line: from -> to (the include), and the run fails.

Usage: scripts/check_layers.py [--src DIR] [--table FILE]   (defaults: src, docs/ARCHITECTURE.md)
"""
import argparse
import os
import re
import sys

BEGIN, END = "<!-- layers:begin -->", "<!-- layers:end -->"
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]')


def read_table(path):
    """Returns {folder: set of allowed folders and headers}."""
    with open(path, encoding="utf-8") as doc:
        text = doc.read()
    if BEGIN not in text or END not in text:
        sys.exit(f"{path}: no layering table between {BEGIN} and {END}")
    allowed = {}
    for line in text.split(BEGIN, 1)[1].split(END, 1)[0].splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if len(cells) < 2 or not cells[0].startswith("`"):
            continue  # the heading, its rule, or prose
        folder = cells[0].strip("`")
        allowed[folder] = set(re.findall(r"`([^`]+)`", cells[1]))
    if not allowed:
        sys.exit(f"{path}: the layering table has no rows")
    return allowed


def target_of(include, quoted, own_folder, folder_path, layers):
    """The layer (or outside place) an include reaches, or None for a system header."""
    first = include.split("/", 1)[0]
    if "/" in include and first in layers:
        return first
    if "/" in include and first == "tests":
        return "tests"
    if os.path.exists(os.path.join(folder_path, include)):
        return own_folder  # beside the including file
    return "a header outside src/" if quoted else None


def check(src, allowed):
    failures = []
    for folder in sorted(os.listdir(src)):
        folder_path = os.path.join(src, folder)
        if not os.path.isdir(folder_path):
            continue
        if folder not in allowed:
            failures.append(f"{folder_path}: folder missing from the layering table")
            continue
        for root, _, files in os.walk(folder_path):
            for name in sorted(files):
                if name.endswith("_test.cpp") or not name.endswith((".h", ".cpp", ".c")):
                    continue
                path = os.path.join(root, name)
                with open(path, encoding="utf-8", errors="replace") as source:
                    for number, line in enumerate(source, 1):
                        match = INCLUDE.match(line)
                        if not match:
                            continue
                        include = match.group(2)
                        quoted = match.group(1) == '"'
                        to = target_of(include, quoted, folder, root, allowed)
                        if to is None or to == folder:
                            continue
                        if to in allowed[folder] or include in allowed[folder]:
                            continue
                        failures.append(f"{path}:{number}: {folder} -> {to} ({include})")
    return failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--src", default="src")
    parser.add_argument("--table", default="docs/ARCHITECTURE.md")
    args = parser.parse_args()
    failures = check(args.src, read_table(args.table))
    for failure in failures:
        print(failure)
    if failures:
        print(f"check_layers: {len(failures)} finding(s) against the layering of {args.table}")
        return 1
    print(f"check_layers: every include in {args.src}/ follows {args.table}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
