#!/usr/bin/env python3
"""Runs clang-tidy over the sources named on standard input, each with a precompiled header that clang can read.

The compiler's own are no use to clang, which parses the text of them again for each source. Here clang compiles each
of them once per run and set of flags, and the sources are checked with that.

  tools/sources.sh cpp | tools/tidy.py BUILD [options of run-clang-tidy ...]
"""
import json
import os
import re
import shlex
import subprocess
import sys

VERSION = "22"


def arguments(command):
    """The compiler's arguments, without the source and the object."""
    words = shlex.split(command)
    compiler = next(i for i, word in enumerate(words) if word.endswith("++"))
    kept, skip = [], False
    for word in words[compiler + 1:]:
        if skip:
            skip = False
        elif word in ("-o", "-c", "-MT", "-MF"):
            skip = True
        elif word != "-MD":
            kept.append(word)
    return kept


def sources_of(file):
    """The source, or those that it puts together where several are compiled as one."""
    if not file.endswith(".cxx"):
        return [file]
    with open(file, encoding="utf-8") as batch:
        return re.findall(r'^#include "(.*\.cpp)"', batch.read(), re.M)


def main():
    build, options = os.path.abspath(sys.argv[1]), sys.argv[2:]
    wanted = {os.path.abspath(line.strip()) for line in sys.stdin if line.strip()}
    folder = os.path.join(build, "lint")
    os.makedirs(folder, exist_ok=True)
    headers, entries = {}, []
    for entry in json.load(open(os.path.join(build, "compile_commands.json"))):
        sources = sources_of(entry["file"])
        if not sources or not wanted.issuperset(sources):
            continue
        flags = arguments(entry["command"])
        # The header that all folders share serves 360 sources; the window's own, position-independent, twenty.
        if "-include" in flags and "-fPIC" not in flags:
            at = flags.index("-include")
            header = flags[at + 1]
            rest = flags[:at] + flags[at + 2:]
            key = (header, *sorted(flag for flag in rest if not flag.startswith(("-I", "-W"))))
            if key not in headers:
                compiled = os.path.join(folder, f"{len(headers)}.pch")
                headers[key] = compiled if compile_header(header, rest, compiled, entry["directory"]) else None
            if headers[key]:
                flags = rest + ["-include-pch", headers[key]]
        entries.append({"directory": entry["directory"], "file": entry["file"],
                        "arguments": ["c++", *flags, "-c", entry["file"]]})
    with open(os.path.join(folder, "compile_commands.json"), "w") as out:
        json.dump(entries, out, indent=1)
    files = sorted(entry["file"] for entry in entries)
    return subprocess.run([f"run-clang-tidy-{VERSION}", "-p", folder, *options, *files]).returncode


def compile_header(header, flags, out, directory):
    command = [f"clang++-{VERSION}", *flags, "-w", "-x", "c++-header", header, "-o", out]
    done = subprocess.run(command, cwd=directory, capture_output=True, text=True)
    if done.returncode != 0:
        print(f"tidy: no precompiled header from {header}: {done.stderr.strip()[:500]}", file=sys.stderr)
    return done.returncode == 0


if __name__ == "__main__":
    sys.exit(main())
