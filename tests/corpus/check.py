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
import sys
import threading
import time

SLOWEST = 20  # times the floor
LONGEST = 120  # seconds for one file, after which it counts as hanging
BATCH = 500


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
        watch = threading.Timer(LONGEST + len(files), process.kill)
        watch.start()
        output, errors = process.communicate("\n".join(files).encode() + b"\n")
        watch.cancel()
        lines = output.decode("utf-8").splitlines()
        done = len(lines) // 2
        for name, result in zip(lines[0 : 2 * done : 2], lines[1 : 2 * done : 2]):
            self.results[name] = json.loads(result)
        if process.returncode != 0:
            name = files[min(done, len(files) - 1)]
            said = errors.decode("utf-8", "replace").strip()
            self.failures[name] = f"ended with {process.returncode}: {said[-4000:]}"
            done += 1
        return files[done:]


def gather(packages):
    """For each package a list of files, each distinct content once among all packages."""
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
        gathered.append((name, version, len(paths), files))
    return gathered
