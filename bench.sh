#!/usr/bin/env bash
# Installs what is missing, builds, and measures what the bridge costs over code that does the same by hand.
# docs/performance.md explains what is printed. Arguments go to the program: ./bench.sh --filter server, ./bench.sh --help
# The results are in build/bench/results.json, or where --results says.
set -euo pipefail
cd "$(dirname "$0")"
build=build/release
results=build/bench/results.json

say() { printf '== %s\n' "$*"; }
fail() { printf 'bench.sh: %s\n' "$*" >&2; exit 1; }

# On a machine that has other things to do: a session of its own, whose share of the processors is a large one, where
# the system lets us have it. Without, more slices are dropped, and it takes longer.
with_a_large_share() {
  setsid --wait bash -c 'echo -19 >/proc/self/autogroup; exec nice -n -19 "$@"' bash "$@"
}

say "installing what is missing"
tools/setup.sh

say "configuring (release)"
mkdir -p "$build" "$(dirname "$results")"
cmake --preset release >"$build/configure.log" 2>&1 ||
  fail "the configuration failed: read $build/configure.log, or remove $build and run again"

say "building"
cmake --build --preset release --target telvar_bench || fail "the build failed: the first error above says where"

rm -f "$results"
say "measuring (two to three minutes; one for a few seconds with --quick)"
command=("$build/wine-run" "$build/bench/telvar-bench.exe" --product TelvarBench --results "$results" "$@")
status=0
if with_a_large_share true 2>/dev/null; then
  with_a_large_share "${command[@]}" || status=$?
else
  "${command[@]}" || status=$?
fi
case $status in
  0) ;;
  2) fail "see above: an option is wrong" ;;
  3) fail "a ratio has passed its limit, which --strict takes for a failure: see the table above" ;;
  *) fail "the measurement broke off: the line above says why; run ./test.sh -R BenchTest to see it again" ;;
esac
[ ! -e "$results" ] || say "the results are in $results"
