#!/usr/bin/env bash
# Installs what is missing, builds what the demo runs, and starts it: a message server, a sample host under Wine, and a
# comparison of what the one sent with what the other heard. ./demo.sh --help tells the options.
# TELVAR_PRESET=debug|checked takes another build than release.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
preset=${TELVAR_PRESET:-release}
driver=(python3 "$here/tools/demo" --build "$here/build/$preset")

say() { printf '== %s\n' "$*"; }
fail() { printf 'demo.sh: %s\n' "$*" >&2; exit 1; }

# A question or a mistake is answered at once; only on a machine without Python that has to wait for the set-up.
check_options() {
  local argument
  for argument in "$@"; do
    case $argument in -h | --help) exec "${driver[@]}" --help ;; esac
  done
  "${driver[@]}" --check-options "$@"
}

if command -v python3 >/dev/null; then
  check_options "$@"
fi

say "installing what is missing"
"$here/tools/setup.sh"
check_options "$@"

say "configuring ($preset)"
cd "$here"
mkdir -p "build/$preset"
cmake --preset "$preset" >"build/$preset/configure.log" 2>&1 ||
  fail "the configuration failed: read build/$preset/configure.log, or remove build/$preset and run again"

say "building"
cmake --build --preset "$preset" --target telvar-rmi sample_host message_client message_server ||
  fail "the build failed: the first error above says where"

# A file that is named relative to the caller's folder is meant there.
cd "$OLDPWD"
say "running"
exec "${driver[@]}" "$@"
