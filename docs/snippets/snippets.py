#!/usr/bin/env python3
"""The code that documents show, and the tests run.

    snippets.py check --snippets FILE... --examples FILE... --headers FILE... --documents FILE...

fails when a Markdown document shows C++ that no test runs. Every block of C++ must be, word for word, either an
example program or a snippet: the lines between two lines "//! [name]" of a snippet file, without their common
indentation. Headers name their snippets by the command \\snippet. A snippet that nobody shows is an error, too.

    snippets.py unindent DIRECTORY --snippets FILE...

writes the snippets of each file into a file of the same name in DIRECTORY, without their common indentation, which
Doxygen would keep.
"""

import argparse
import pathlib
import re
import sys
import textwrap

MARK = re.compile(r"^\s*//! \[(.+)\]$")
FENCE = re.compile(r"^[ \t]*(?:```|~~~).*$", re.MULTILINE)
KNOWN_FENCES = {"```cpp", "```cmake", "```sh", "```xml", "```diff", "```"}
BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)
REFERENCE = re.compile(r"\\snippet (\S+) (\S+)")


def snippets_of(path):
    """The snippets of a file, by name."""
    result = {}
    name, lines = None, []
    for line in path.read_text(encoding="utf-8").splitlines():
        mark = MARK.match(line)
        if not mark:
            lines.append(line)
        elif name is None:
            name, lines = mark.group(1), []
            if name in result:
                sys.exit(f"{path}: two snippets are called {name}")
        elif name == mark.group(1):
            result[name] = textwrap.dedent("\n".join(lines)) + "\n"
            name = None
        else:
            sys.exit(f"{path}: {mark.group(1)} begins before {name} has ended")
    if name is not None:
        sys.exit(f"{path}: {name} does not end")
    return result


def check(arguments):
    snippets = {path.name: snippets_of(path) for path in arguments.snippets}
    names_by_code = {
        code: (file, name) for file, by_name in snippets.items() for name, code in by_name.items()
    }
    examples = {path.read_text(encoding="utf-8") for path in arguments.examples}
    shown = set()
    errors = []

    for document in arguments.documents:
        text = document.read_text(encoding="utf-8")
        # C++ under another name would not be looked at.
        for fence in FENCE.finditer(text):
            if fence.group() not in KNOWN_FENCES:
                line = text.count("\n", 0, fence.start()) + 1
                errors.append(f"{document}:{line}: no fence of ours: {fence.group()}")
        for block in BLOCK.finditer(text):
            code = block.group(1)
            line = text.count("\n", 0, block.start()) + 1
            if code in names_by_code:
                shown.add(names_by_code[code])
            elif code not in examples:
                errors.append(f"{document}:{line}: no test runs this code")
    for header in arguments.headers:
        for file, name in REFERENCE.findall(header.read_text(encoding="utf-8")):
            if name not in snippets.get(file, {}):
                errors.append(f"{header}: there is no snippet {name} in {file}")
            shown.add((file, name))
    for file, name in sorted(set(names_by_code.values()) - shown):
        errors.append(f"{file}: nobody shows the snippet {name}")

    print(f"{len(shown)} snippets and {len(examples)} example programs")
    sys.exit("\n".join(errors) or 0)


def unindent(arguments):
    arguments.directory.mkdir(parents=True, exist_ok=True)
    for path in arguments.snippets:
        text = "".join(f"//! [{name}]\n{code}//! [{name}]\n" for name, code in snippets_of(path).items())
        (arguments.directory / path.name).write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    commands = parser.add_subparsers(required=True)
    checking = commands.add_parser("check")
    checking.set_defaults(run=check)
    unindenting = commands.add_parser("unindent")
    unindenting.set_defaults(run=unindent)
    unindenting.add_argument("directory", type=pathlib.Path)
    unindenting.add_argument("--snippets", nargs="+", type=pathlib.Path, required=True)
    for kind in ("snippets", "examples", "headers", "documents"):
        checking.add_argument("--" + kind, nargs="+", type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    arguments.run(arguments)


main()
