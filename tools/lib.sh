# Shared by every script of this project; sourced, never run.
#
# ROOT   the checkout
# CACHE  where tools are kept between runs and between checkouts (VEXA_CACHE overrides it)
# CHECKS_PYTHON  a Python with the modules of tools/requirements-checks.txt, which "tools/setup.sh checks" makes

set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
CACHE=${VEXA_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/vexa}
mkdir -p "$CACHE"
CHECKS_PYTHON=$CACHE/checks-$(sha256sum <"$ROOT/tools/requirements-checks.txt" | cut -c 1-12)/bin/python3

say() { printf '%s\n' "$*" >&2; }
die() { say "$*"; exit 1; }

# Runs a command as root: directly, or through sudo.
as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo -n "$@" || die "this step needs root: $*"; fi
}

# need_packages NAME...: installs the Debian packages that are missing; asks no server when none is.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$name")
  done
  [ "${#missing[@]}" = 0 ] && return 0
  say "installing Debian packages: ${missing[*]}"
  {
    as_root apt-get update
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
  } >"$CACHE/apt.log" 2>&1 || die "apt-get failed; see $CACHE/apt.log"
}
