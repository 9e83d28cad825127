#!/usr/bin/env bash
# Builds the library and the client for both machines and packs them into dist/.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$ROOT/tools/notebook.sh"
"$ROOT/tools/setup.sh" x64
for machine in x64 arm64; do build_preset "$machine" VexaWinIO64 vexahealth; done
exec python3 "$ROOT/tools/package.py" "$@"
