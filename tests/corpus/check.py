#!/usr/bin/env python3
"""Runs corpus-check over the SVG files of unpacked packages, and writes docs/corpus.md to standard output.

check.py SANITIZED_PROGRAM RELEASE_PROGRAM RESULTS_DIRECTORY < PACKAGES

Standard input has a line for each package: its name, its version and the directory that it is unpacked in. Results
are kept for looking at, one object in JSON a line. The exit code is 1 where something failed that must hold.
"""

import collections
import hashlib
import json
import os
import pathlib
import queue
import subprocess
import statistics
import sys
import threading

SLOWEST = 20  # times the floor
BATCH = 500  # files for one process
LONGEST = 600  # seconds that a batch may take before a file in it counts as hanging


class Run:
    """One mode of corpus-check over all files, in as many processes as there are processors."""

    def __init__(self, program, mode, files):
        self.command = [program, mode]
        self.environment = {**os.environ, "UBSAN_OPTIONS": "print_stacktrace=1"}
        self.results = {}
        self.failures = {}  # name of the file: what was said
        self.batches = queue.SimpleQueue()
        # Large files stand together in packages; taking them in turns makes batches alike.
        count = max(1, len(files) // BATCH)
        for first in range(count):
            self.batches.put(files[first::count])
        workers = [threading.Thread(target=self.work) for _ in range(os.cpu_count())]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()

    def work(self):
        while True:
            try:
                files = self.batches.get_nowait()
            except queue.Empty:
                return
            while files:
                files = self.run(files)

    def run(self, files):
        """Returns the files behind the one that ended the process."""
        process = subprocess.Popen(
            self.command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env=self.environment,
        )
        watch = threading.Timer(LONGEST, process.kill)
        watch.start()
        output, errors = process.communicate("\n".join(files).encode() + b"\n")
        watch.cancel()
        lines = output.decode("utf-8").splitlines()
        done = len(lines) // 2
        for name, result in zip(lines[0 : 2 * done : 2], lines[1 : 2 * done : 2]):
            self.results[name] = json.loads(result)
        if process.returncode != 0:  # behind the last file: a leak, say, of any of them
            name = files[min(done, len(files) - 1)]
            said = errors.decode("utf-8", "replace").strip()
            self.failures[name] = f"ended with {process.returncode}: {said[-4000:]}"
            done += 1
        return files[done:]


Package = collections.namedtuple("Package", "name version count files")


def gather(packages):
    """The packages with their files, each content once among all packages."""
    known, gathered = set(), []
    for line in packages:
        name, version, directory = line.split()
        paths = sorted(p for p in pathlib.Path(directory).rglob("*.svg") if p.is_file() and not p.is_symlink())
        files = []
        for path in paths:
            digest = hashlib.sha256(path.read_bytes()).digest()
            if digest not in known:
                known.add(digest)
                files.append(str(path))
        gathered.append(Package(name, version, len(paths), files))
    return gathered


CUT = "Invalid path data; path truncated."
REASONS = {
    "colour": "`currentColor`, `rgb()`, `inherit` and the like switch fill or stroke off (in most icons all of it)",
    "opacity": "an `opacity` replaces that around it and acts on colours set with or below it; the others are not inherited",
    "fill rule": "the rule is odd-even where the path itself has no `fill-rule`",
    "miter limit": "it is measured as `Qt::MiterJoin` measures it",
    "width 0": "a stroke without a width is a line of one pixel",
    "rounding": "many translucent layers on each other are rounded at other places than in Qt's renderer",
    "cut by Qt": f"Qt's renderer says `{CUT}` of path data that is right",
}
METHOD = f"""\
# Real files

Written by `scripts/check-corpus`; do not edit. What Quillet makes of all SVG files in a number of packages that
install by name: whether anything crashes, how long reading takes, and whether the picture is the one that Qt's SVG
renderer draws. No file is stored here.

## Method

- Each content counts once among all packages, for the package that comes first. Links do not count.
- All files are read, drawn and hit in a build with address and undefined-behaviour sanitizers.
- *The floor* of a file is Qt's XML reader going through the same text and doing nothing with it: `QXmlStreamReader`,
  or `QDomDocument` for a text that the first does not read to its end. That is less than what Quillet is compared
  with in the [benchmarks](benchmarks.md), `QDomDocument`. Each time is the least of at least 3 rounds, and of up to
  50 where the ratio comes near the limit, of the processor's time.
- *The subset*: documents of a root, groups and paths, in SVG's name space, with no other attributes than those
  that [Quillet reads](vector-paths.md#what-is-read), with values that are right by SVG 1.1, and with path data that
  is right by its grammar, without flags of arcs that are [written together](vector-paths.md#flags-of-arcs) and
  without arcs of radius 0. Nothing that does not draw counts: definitions, titles, metadata, elements and
  attributes of other name spaces, sizes. `tests/corpus/Subset.cpp` decides by these rules alone and never looks at
  a picture.
- *The picture* is 128 pixels wide and high, antialiased, on nothing. Both sides show the same square of user space,
  the view box where there is one.
- *Equal* are pictures that differ by no more than 1 of 255 in any channel of any pixel. The table of largest
  differences shows why no more is needed: nearly all that are equal are so to the last bit.
- *Different* pictures have to be explained. Each rule by which Quillet departs from SVG is taken away, in the
  document or in a pen: such as by giving each path the fill rule that SVG has for it. Where the pictures then are
  equal, it is that rule that made the difference. The smallest set of rules that does it counts. Documents with
  opacities may differ by 8 then; that is called rounding. `tests/corpus/Rewriting.cpp` does it.
"""


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return "\n".join(lines + ["| " + " | ".join(str(cell) for cell in row) + " |" for row in rows]) + "\n"


def ratio(result):
    return result["ours"] / result["floor"]


def reasons(result):
    """Why the pictures differ; empty where they are equal, None where nobody knows."""
    picture = result["picture"]
    if picture["equal"]:
        return ()
    if picture["messages"] == [CUT]:
        return ("cut by Qt",)
    return tuple(picture["reasons"]) if "reasons" in picture else None


def within(results):
    return [result for result in results if "picture" in result]


def package_row(package, results):
    known = [results[name] for name in package.files if name in results]
    inside = within(known)
    equal = sum(result["picture"]["equal"] for result in inside)
    explained = sum(bool(reasons(result)) for result in inside)
    refused = sum(not result["accepted"] for result in known)
    return [package.name, package.version, len(package.files), refused, len(inside), equal, explained,
            len(inside) - equal - explained]


def packages_section(packages, results):
    rows = [package_row(package, results) for package in packages]
    rows.append(["all", ""] + [sum(column) for column in list(zip(*rows))[2:]])
    head = ["Package", "Version", "Files", "Refused", "Within the subset", "Equal", "Different, explained",
            "Different, not explained"]
    return "## Packages\n\n" + table(head, rows)


def differences_section(results):
    inside = within(results)
    counts = collections.Counter(reasons(result) for result in inside)
    rows = [(" and ".join(why), count) for why, count in counts.most_common() if why]
    text = "## Differences\n\n" + table(["What makes the difference", "Files"], rows)
    text += "\nWith that taken away the pictures are equal, but for those cut by Qt. What the names stand for:\n\n"
    text += table(["Name", "Meaning"], REASONS.items())
    bounds = [(0, 0), (1, 1), (2, 7), (8, 31), (32, 127), (128, 255)]
    largest = [result["picture"]["largest"] for result in inside]
    rows = [
        (f"{low}" if low == high else f"{low} to {high}", sum(low <= value <= high for value in largest))
        for low, high in bounds
    ]
    blank = sum(result["picture"]["blank"] for result in inside)
    text += "\nThe largest difference in a picture, before a rule is taken away:\n\n" + table(["Of 255", "Files"], rows)
    return text + f"\n{blank} of the pictures are empty on both sides.\n"


def causes_section(results):
    refused = collections.Counter(result["cause"] for result in results if not result["accepted"])
    beyond = [result["outside"] for result in results if result.get("outside")]
    every = collections.Counter(cause for causes in beyond for cause in causes)
    alone = collections.Counter(causes[0] for causes in beyond if len(causes) == 1)
    rows = [(cause, count, alone[cause]) for cause, count in every.most_common(25)]
    return (
        "## Refused\n\n" + table(["Cause", "Files"], refused.most_common())
        + f"\n## Beyond the subset\n\n{len(beyond)} files that are read go beyond the subset. "
        "The 25 most frequent causes:\n\n"
        + table(["Cause", "Files", "Files with no other cause"], rows)
    )


def times_section(packages, results):
    package_of = {name: package.name for package in packages for name in package.files}
    median = statistics.median(ratio(result) for result in results.values())
    slowest = sorted(results, key=lambda name: ratio(results[name]), reverse=True)[:5]
    rows = [
        (pathlib.Path(name).name, package_of[name], f"{ratio(results[name]):.1f}", f"{results[name]['ours'] / 1000:.2f}")
        for name in slowest
    ]
    return f"## Times\n\nThe median is {median:.1f} times the floor. The slowest files:\n\n" + table(
        ["File", "Package", "Times the floor", "Milliseconds"], rows
    )


def problems(files, sanitized, release):
    """All that must not be."""
    for run in (sanitized, release):
        for name, said in run.failures.items():
            yield f"{name}: {said}"
        for name in files:
            if name not in run.results and name not in run.failures:
                yield f"{name}: no result"
    for name, result in release.results.items():
        if ratio(result) > SLOWEST:
            yield f"{name}: read in {ratio(result):.1f} times the floor"
        if "picture" in result and reasons(result) is None:
            yield f"{name}: drawn differently, {result['picture']}"
        if result.get("cause") == "unknown":
            yield f"{name}: refused, and no attribute is"
        if name in sanitized.results and sanitized.results[name]["accepted"] != result["accepted"]:
            yield f"{name}: accepted by one build only"


def summary(packages, files, found, results):
    values = list(results.values())
    inside = within(values)
    equal = sum(result["picture"]["equal"] for result in inside)
    qt = subprocess.run(["pkg-config", "--modversion", "Qt5Svg"], capture_output=True, text=True, check=True).stdout
    count = sum(package.count for package in packages)
    verdict = (
        f"No crash, no report of a sanitizer, no file slower than {SLOWEST} times the floor, no difference without an\n"
        "  explanation."
    )
    if found:
        verdict = f"{len(found)} files failed; the run has named them."
    return f"""\
## Result

{len(files)} files with different contents among the {count} of {len(packages)} packages; Qt {qt.strip()}.

- {verdict}
- {sum(result["accepted"] for result in values)} files are accepted, {sum(not result["accepted"] for result in values)} refused.
- {len(inside)} files stay within the subset. {equal} of these are drawn as Qt's renderer draws them,
  {len(inside) - equal} differently.
"""


def main():
    sanitized_program, release_program, directory = sys.argv[1:]
    packages = gather(sys.stdin)
    files = [name for package in packages for name in package.files]
    print(f"{len(files)} files", file=sys.stderr)
    sanitized = Run(sanitized_program, "read", files)
    release = Run(release_program, "compare", files)
    with open(pathlib.Path(directory) / "results.jsonl", "w", encoding="utf-8") as log:
        for name, result in release.results.items():
            print(json.dumps({"file": name, **result}), file=log)

    found = list(problems(files, sanitized, release))
    for problem in found:
        print(problem, file=sys.stderr)
    results = list(release.results.values())
    print("\n".join([METHOD, summary(packages, files, found, release.results), packages_section(packages, release.results),
                     differences_section(results), causes_section(results), times_section(packages, release.results)]), end="")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
