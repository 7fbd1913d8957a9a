#!/usr/bin/env bash
# Checks layout (clang-format) and code (clang-tidy) of everything in the repository, and the product and the examples with
# cppcheck besides.
#
#   tools/lint.sh           all checks
#   tools/lint.sh format    layout alone; "tools/lint.sh format fix" mends it
#   tools/lint.sh tidy [FILE ...]
#   tools/lint.sh cppcheck
#
# clang-tidy reads how files are compiled from build/release, which is configured first if it is not there.
set -euo pipefail
cd "$(dirname "$0")/.."

say() { printf 'lint: %s\n' "$*"; }

check_format() {
  say "layout"
  local mode=(--dry-run -Werror)
  [ "${1:-}" != fix ] || mode=(-i)
  git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format-14 "${mode[@]}"
}

# With which clang reads the cross build: the posix variant's C++ library, none of the build machine's headers.
clang_arguments() {
  local gcc=x86_64-w64-mingw32-g++-posix
  local library; library=$(dirname "$($gcc -print-libgcc-file-name)")
  local argument
  for argument in --target=x86_64-w64-mingw32 -nostdinc++ -nostdlibinc \
    -isystem "$library/include/c++" -isystem "$library/include/c++/x86_64-w64-mingw32" \
    -isystem "$library/include/c++/backward" -isystem /usr/x86_64-w64-mingw32/include; do
    printf '%s\n' "--extra-arg-before=$argument"
  done
}

check_tidy() {
  say "code"
  [ -e build/release/compile_commands.json ] || cmake --preset release >/dev/null
  local files=("$@") arguments
  # The sources that must not compile are no sources of the build.
  [ $# -gt 0 ] || mapfile -t files < <(git ls-files -- '*.cpp' ':!*/ArgumentCases.cpp' ':!*/BorderCases.cpp')
  mapfile -t arguments < <(clang_arguments)
  printf '%s\0' "${files[@]}" |
    xargs -0 -r -P "$(nproc)" -n 1 clang-tidy-14 --quiet -p build/release "${arguments[@]}" 2>&1 |
    { grep -vE '^[0-9]+ warnings? (and [0-9]+ errors? )?generated\.$|^$' || true; }
  return "${PIPESTATUS[1]}"
}

# The tests go without: breaking what it looks for is what many of them do.
check_cppcheck() {
  say "code once more"
  local cache=${TELVAR_CACHE:-${HOME:-/root}/.cache/telvar-rmi} product=(bridge java convert config support)
  local includes
  mapfile -t includes < <(find include "${product[@]}" -type d -printf '-I%p\n')
  cppcheck --quiet --error-exitcode=1 --std=c++17 --platform=win64 --library=windows -D_WIN64 -DUNICODE \
    --enable=warning,style,performance,portability --inline-suppr --suppressions-list=.cppcheck-suppressions \
    -j "$(nproc)" "${includes[@]}" -I "$cache/jni-21.0.8.2" "${product[@]}" examples
}

case ${1:-all} in
  all)
    check_format
    check_tidy
    check_cppcheck
    ;;
  format) check_format "${2:-}" ;;
  tidy)
    shift
    check_tidy "$@"
    ;;
  cppcheck) check_cppcheck ;;
  *) say "unknown check '$1' (known: format, tidy, cppcheck)" >&2; exit 2 ;;
esac
say "clean"
