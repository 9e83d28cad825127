#!/bin/bash
# Makes $CACHE/wine-arm64, the root folder that tools/wine-arm64.sh runs ARM64 Windows programs in.
#
# Debian 12's own arm64 Wine can't run them; Debian 13's Wine 10.0 can, and needs nothing else of
# Debian 13 but the C library with its C.UTF-8 locale (libc-bin), without which arguments lose their
# letters beyond ASCII, and libgcc. Without FreeType, programs with windows and, when no
# wineserver is running yet, Wine's own background processes say so on standard error. It is left out
# all the same: Wine crashes with it unless fontconfig is there too, and both make a program's start
# half as long again.

. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
exec >&2

# Raise this with every change to what the folder holds: a folder of another recipe is replaced.
recipe=1

# Debian's mirrors drop a revision as soon as a point release replaces it, so the upstream versions
# are pinned and the revisions aren't; $dest/packages lists those that were used.
packages=(
  'libwine=10.0~repack-*' 'wine64=10.0~repack-*'
  'libc6=2.41-*' 'libc-bin=2.41-*' 'libgcc-s1=14.2.0-*'
)
suite=trixie
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

cache=$(cd "$CACHE" && pwd)
dest=$cache/wine-arm64
build=$cache/wine-arm64.new
log=$cache/wine-arm64.log

is_done() { [ "$(cat "$dest/recipe" 2>/dev/null)" = "$recipe" ]; }

# The mirror this machine already uses; a snapshot of Debian 12's days wouldn't hold the suite.
mirror() {
  apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 2>/dev/null |
    awk '/^https?:.*\/debian\/?$/ && !found { print; found = 1 }
         END { if (!found) print "http://deb.debian.org/debian/" }'
}

# Fetches the packages into $build/debs without touching the system's own package lists.
download() {
  local apt=$build/apt
  mkdir -p "$apt/state/lists/partial" "$apt/cache/archives/partial" "$build/debs"
  : >"$apt/status"
  cat >"$apt/debian.sources" <<END
Types: deb
URIs: $(mirror)
Suites: $suite
Components: main
Architectures: arm64
Targets: Packages
Signed-By: $keyring
END
  # The system's settings stay in force (proxy), but not its hooks, which act on the system's lists.
  cat >"$apt/apt.conf" <<END
Dir::Etc::sourcelist "$apt/debian.sources";
Dir::Etc::sourceparts "/dev/null";
Dir::Etc::preferences "/dev/null";
Dir::Etc::preferencesparts "/dev/null";
Dir::State "$apt/state";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
APT::Architecture "arm64";
#clear APT::Architectures;
APT::Architectures { "arm64"; };
APT::Sandbox::User "root";
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
END
  apt-get -c "$apt/apt.conf" --error-on=any update &&
    (cd "$build/debs" && apt-get -c "$apt/apt.conf" download "${packages[@]}")
}

make_root() {
  rm -rf "$build"
  mkdir -p "$build"
  download >"$log" 2>&1 || die "can't download Debian 13's arm64 Wine; see $log"

  local deb
  for deb in "$build"/debs/*.deb; do
    dpkg-deb -x "$deb" "$build/root"
    basename "$deb" .deb >>"$build/packages"
  done
  # A shell script, and there is no shell in there.
  cp -f "$build/root/usr/lib/wine/wineserver64" "$build/root/usr/lib/wine/wineserver"
  ln -s usr/bin "$build/root/bin"
  ln -s usr/sbin "$build/root/sbin"
  ln -s usr/lib "$build/root/lib"
  # What tools/wine-arm64.sh mounts on.
  mkdir -p "$build/mnt" "$build/binfmt" "$build/root/usr/local" "$build/root/usr/src"

  rm -rf "$build/apt" "$build/debs"
  printf '%s\n' "$recipe" >"$build/recipe"
  rm -rf "$dest"
  mv "$build" "$dest"
}

need_packages qemu-user-static debian-archive-keyring util-linux

if ! is_done; then
  exec 9>"$cache/wine-arm64.lock"
  flock 9
  if ! is_done; then
    say "setting up the ARM64 Wine (77 MB to download)"
    make_root
  fi
  exec 9>&-
fi

# Also when the folder was there already: whether the kernel lets itself be told how to run arm64
# programs depends on the machine's state, not on the folder.
version=$(WINEPREFIX=$dest "$ROOT/tools/wine-arm64.sh" --server --version 2>&1) || true
[[ $version == 'Wine 10.0'* ]] || die "the ARM64 Wine doesn't start: $version"
