#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests. Arguments go to ctest: ./test.sh -R CJavaVM
# TELVAR_PRESET=debug|checked chooses another build than release.
set -euo pipefail
cd "$(dirname "$0")"
preset=${TELVAR_PRESET:-release}

say() { printf '== %s\n' "$*"; }
fail() { printf 'test.sh: %s\n' "$*" >&2; exit 1; }

say "installing what is missing"
tools/setup.sh

say "configuring ($preset)"
mkdir -p "build/$preset"
cmake --preset "$preset" >"build/$preset/configure.log" 2>&1 ||
  fail "the configuration failed: read build/$preset/configure.log, or remove build/$preset and run again"

say "building"
cmake --build --preset "$preset" || fail "the build failed: the first error above says where"

say "testing"
ctest --preset "$preset" -j "$(nproc)" --output-on-failure "$@" ||
  fail "tests failed: run one again with TELVAR_PRESET=$preset ./test.sh -R NAME"
