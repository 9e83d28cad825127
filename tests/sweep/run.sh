#!/usr/bin/env bash
# Runs sweep_test.exe beside the built library: a failure at every call of every export, and what is held afterwards.
#
#   tests/sweep/run.sh [--whole] x64|arm64 [GoogleTest's arguments]
#
# Without --whole, of each export's calls and allocations at most so many fail one by one as is said below; with it, all.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

whole=
if [ "${1:-}" = --whole ]; then
  whole=1
  shift
fi
use_machine "${1:?x64 or arm64}"
shift
case $MACHINE in
  x64) limit=40 calls=1000 ;;
  *) limit=3 calls=50 ;;  # emulated
esac
[ -z "$whole" ] || limit=0 calls=1000

start_prefix
install_product "$BUILT/VexaWinIO64.dll" "$BUILT/tests/sweep_test.exe"
export VEXA_SWEEP_LIMIT=$limit VEXA_SWEEP_CALLS=$calls
exec "$WINE" 'C:\Vexa\sweep_test.exe' "$@"
