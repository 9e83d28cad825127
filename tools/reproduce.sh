#!/usr/bin/env bash
# Builds the commit again in a folder of its own and compares: the libraries and the client must be the same bytes.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$ROOT/tools/notebook.sh"
"$ROOT/tools/setup.sh" x64
export CCACHE_DISABLE=1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
git clone --quiet "$ROOT" "$folder/a-checkout-of-another-name"
code=0
for machine in x64 arm64; do
  build_preset "$machine" VexaWinIO64 vexahealth
  (ROOT=$folder/a-checkout-of-another-name; build_preset "$machine" VexaWinIO64 vexahealth)
  for name in VexaWinIO64.dll vexahealth.exe; do
    if cmp "$ROOT/build/$machine/$name" "$folder/a-checkout-of-another-name/build/$machine/$name"; then
      echo "same: $machine $name $(sha256sum <"$ROOT/build/$machine/$name" | cut -c -16)"
    else
      code=1
    fi
  done
done
exit "$code"
