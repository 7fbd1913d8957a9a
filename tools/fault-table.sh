#!/usr/bin/env bash
# Runs all fault tests and prints a Markdown table: for each operation and each kind of thing that it depends on, the
# rounds that were run with one call failing, and with that one and all behind it. The last round of either is the one in
# which nothing failed: "1 / 1" is an operation without such calls.
#
#   tools/fault-table.sh [BUILD FOLDER]    build/release is built first if none is named
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
if [ $# -eq 0 ]; then
  cmake --preset release >/dev/null
  cmake --build --preset release --target fault_tests >&2
fi

OANOCACHE=1 "$build/wine-run" "$build/tests/faults/fault_tests.exe" 2>/dev/null | python3 <(cat <<'PYTHON'
import re
import sys

rounds, kinds, rounds_run = {}, [], 0
passed = False
for line in sys.stdin:
    row = re.fullmatch(r"\| (.+) \| (.+) \| (\d+) \| (\d+) \|", line.strip())
    if row:
        operation, kind, once, for_ever = row.groups()
        rounds.setdefault(operation, {})[kind] = f"{once} / {for_ever}"
        rounds_run += int(once) + int(for_ever)
        if kind not in kinds:
            kinds.append(kind)
    passed = passed or line.startswith("[  PASSED  ]")

print("| operation | " + " | ".join(kinds) + " |")
print("|---|" + "---|" * len(kinds))
for operation, counts in rounds.items():
    print(f"| {operation} | " + " | ".join(counts.get(kind, "") for kind in kinds) + " |")
print(f"\n{len(rounds)} operations, {rounds_run} rounds.")
sys.exit(0 if passed else "the tests did not pass")
PYTHON
)
