#!/usr/bin/env bash
# Runs the tests on a build that counts, and prints the lines and the branches they execute, for each folder of the
# product. Branches that only an exception takes out of a call are left out.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/setup.sh coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" "$@"

gcovr --gcov-executable x86_64-w64-mingw32-gcov-posix --root . --exclude-throw-branches --exclude-unreachable-branches \
  --filter '(include|bridge|java|convert|config|support)/' --json-summary build/coverage/summary.json build/coverage
python3 - build/coverage/summary.json <<'PYTHON'
import collections
import json
import os
import sys

counts = collections.defaultdict(lambda: [0, 0, 0, 0])
for file in json.load(open(sys.argv[1]))["files"]:
    for folder in (os.path.dirname(file["filename"]), "all"):
        numbers = (file["line_covered"], file["line_total"], file["branch_covered"], file["branch_total"])
        counts[folder] = [a + b for a, b in zip(counts[folder], numbers)]

print(f"{'folder':24} {'lines':>18} {'branches':>18}")
for folder, (lines, all_lines, branches, all_branches) in sorted(counts.items(), key=lambda e: (e[0] == "all", e)):
    share = lambda part, whole: f"{part}/{whole} {100 * part / whole if whole else 100:5.1f}%"
    print(f"{folder:24} {share(lines, all_lines):>18} {share(branches, all_branches):>18}")
PYTHON
