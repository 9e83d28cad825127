#!/usr/bin/env bash
# Installs the tools that the named parts of the build need; what is there already is left alone.
#
#   tools/setup.sh x64      the cross compiler, the packaged headers, Wine for x64
#   tools/setup.sh native   clang with its sanitizers, CMake, GoogleTest
#   tools/setup.sh arm64    the ARM64 Wine folder and the emulator under it

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

readonly ZIG_VERSION=0.17.0

setup_zig() {
  local home=$CACHE/zig-$ZIG_VERSION
  [ -x "$home/zig" ] && return 0
  need_packages python3 python3-venv
  say "installing ziglang $ZIG_VERSION"
  rm -rf "$home" "$home.new"
  /usr/bin/python3 -m venv "$home.new"
  "$home.new/bin/pip" install --quiet --disable-pip-version-check --require-hashes -r "$ROOT/tools/requirements.txt" >&2
  (cd "$home.new" && ln -s lib/python3*/site-packages/ziglang/zig zig)
  mv "$home.new" "$home"
}

# A cross build must not see /usr/include, so the header-only packages get a folder of their own.
setup_headers() {
  need_packages nlohmann-json3-dev libcli11-dev
  mkdir -p "$CACHE/include"
  ln -sfn /usr/include/nlohmann "$CACHE/include/nlohmann"
  ln -sfn /usr/include/CLI "$CACHE/include/CLI"
}

setup_build() { need_packages cmake ninja-build; }

setup_x64() { setup_build; setup_zig; setup_headers; need_packages wine64 googletest; }

# libstdc++-12-dev or newer is what clang takes its C++ library from.
setup_native() { setup_build; setup_headers; need_packages clang-19 libclang-rt-19-dev llvm-19 libstdc++-12-dev googletest; }

setup_arm64() { setup_x64; "$ROOT/tools/setup-arm64.sh"; }

for part in "$@"; do
  case $part in
    x64 | native | arm64) "setup_$part" ;;
    *) die "tools/setup.sh: unknown part '$part' (x64, native, arm64)" ;;
  esac
done
