#!/usr/bin/env python3
"""Writes the tables of scripts/check-converter into a document, between two comments that mark their place:

    report.py PACKAGES RESULT DOCUMENT

PACKAGES has a line with name, version and directory for each package; RESULT is what prove-converter wrote.
"""

import collections
import pathlib
import re
import sys

SAME = 0.001  # share of the pixels, as in tools/quillet-svg/Drawing.h
AIM = 0.99
BEGIN = "<!-- written by scripts/check-converter -->\n"
END = "<!-- until here -->\n"

Result = collections.namedtuple(
    "Result", "check as_it_is convert reader drawn drawn_prepared rules excuses name"
)


def read_results(path):
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        fields = line.split("\t")
        yield Result(
            fields[0], float(fields[1]), fields[2], fields[3], float(fields[4]), float(fields[5]),
            fields[6], fields[7], fields[8],
        )


def percent(part, whole):
    """Rounded down, so that 100 % means all."""
    if whole == 0:
        return "–"
    return f"{part * 10000 // whole / 100:.2f} %"


def alike(result):
    return result.drawn <= SAME


def reason(result):
    """Why a file is not drawn as Qt draws the original."""
    if result.convert == "failed":
        return f"cannot be converted: {result.rules}"
    if result.reader != "accepted":
        return "the reader refuses what was written"
    if result.rules:
        return "what is lost is named: " + result.rules.replace(",", ", ")
    if result.drawn_prepared <= SAME:
        return "Qt's renderer reads the original otherwise than SVG says"
    return "nothing is lost; at most 2 % of the pixels differ" if result.drawn <= 0.02 else "other"


def package_table(packages, results):
    lines = [
        "| Package | Files | Drawn alike as they are | Accepted after `convert` | Drawn alike after it | "
        "Of those without gradients, filters, masks, text, images |",
        "|---|---:|---:|---:|---:|---:|",
    ]
    rows = [(f"{name} {version}", [r for r in results if r.name.startswith(directory + "/")])
            for name, version, directory in packages]
    rows.append(("all", results))
    for title, some in rows:
        plain = [r for r in some if not r.excuses]
        lines.append(
            f"| {title} | {len(some):,} | {percent(sum(r.as_it_is <= SAME for r in some), len(some))} "
            f"| {percent(sum(r.reader == 'accepted' for r in some), len(some))} "
            f"| {percent(sum(map(alike, some)), len(some))} "
            f"| {percent(sum(map(alike, plain)), len(plain))} of {len(plain):,} |"
        )
    return lines


def reason_table(results):
    lines = ["| Why a file is not drawn as Qt draws the original | Files |", "|---|---:|"]
    reasons = collections.Counter(reason(r) for r in results if not alike(r))
    lines += [f"| {text} | {count:,} |" for text, count in sorted(reasons.items(), key=lambda x: (-x[1], x[0]))]
    return lines


def are(count):
    return "is" if count == 1 else "are"


def verdict_lines(results):
    clean = [r for r in results if r.check == "clean"]
    other = [r for r in results if r.check == "lossy"]
    wrong = sum(r.as_it_is > SAME for r in clean)
    harmless = sum(r.as_it_is <= SAME for r in other)
    refused = sum(r.check == "refused" for r in results)
    return [
        f"`check` calls {len(clean):,} of the files clean; {wrong:,} of these {are(wrong)} drawn otherwise than Qt "
        f"draws {'it' if wrong == 1 else 'them'}. It calls {len(other):,} lossy; {harmless:,} of these "
        f"{are(harmless)} drawn alike all the same. {f'{refused:,} {are(refused)}' if refused else 'None is'} refused."
    ]


def main():
    packages_file, result_file, document = sys.argv[1:]
    packages = [line.split(" ", 2) for line in pathlib.Path(packages_file).read_text().splitlines()]
    results = list(read_results(result_file))
    text = "\n".join(
        package_table(packages, results) + [""] + reason_table(results) + [""] + verdict_lines(results)
    )
    path = pathlib.Path(document)
    before = path.read_text(encoding="utf-8")
    pattern = re.compile(re.escape(BEGIN) + ".*?" + re.escape(END), re.DOTALL)
    if not pattern.search(before):
        sys.exit(f"report.py: {document} has no place for the tables")
    path.write_text(pattern.sub(lambda _: f"{BEGIN}\n{text}\n\n{END}", before), encoding="utf-8")
    print(text)

    plain = [r for r in results if not r.excuses]
    refused = [r.name for r in results if r.convert != "failed" and r.reader != "accepted"]
    if refused:
        sys.exit("refused after conversion: " + ", ".join(refused[:5]))
    if sum(map(alike, plain)) < AIM * len(plain):
        sys.exit("the aim is missed")


if __name__ == "__main__":
    main()
