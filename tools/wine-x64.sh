#!/usr/bin/env bash
# Runs a Windows x64 program in the prefix WINEPREFIX, or with --server the server program of that Wine.
# Standard input, output, error and the exit code are the program's own.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

: "${WINEPREFIX:?wine-x64.sh: set WINEPREFIX}"
export WINEPREFIX
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# Offers to install browser and .NET runtimes are of no use here.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}

if [ "${1:-}" = --server ]; then
  shift
  exec /usr/lib/wine/wineserver64 "$@"
fi
exec /usr/lib/wine/wine64 "$@"
