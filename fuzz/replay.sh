#!/usr/bin/env bash
# Runs every fuzz target once on its corpus, under the sanitizers, and checks that the corpus reaches at least 95 % of the
# branches of the parsers. The last line is "N passed, N failed".
#
# VEXA_NATIVE_BUILD  folder of the native build (build/native)

source "$(dirname "${BASH_SOURCE[0]}")/../tools/lib.sh"

readonly BUILD=${VEXA_NATIVE_BUILD:-$ROOT/build/native}/fuzz
readonly TARGETS=(elements bss_list antenna_records)
readonly PARSERS=(antenna_records bss_list elements max_rate scan_classifier)
readonly LEAST_PERCENT=95
passed=0
failed=0
profiles=$(mktemp -d)
trap 'rm -rf "$profiles"' EXIT

verdict() {  # verdict ok|FAIL TEXT
  echo "$1 $2"
  if [ "$1" = ok ]; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
}

objects=()
for target in "${TARGETS[@]}"; do
  if files=$(LLVM_PROFILE_FILE=$profiles/$target.profraw "$BUILD/${target}_replay" "$ROOT/fuzz/corpus/$target"); then
    verdict ok "$target: $files inputs"
  else
    verdict FAIL "$target"
  fi
  objects+=(-object "$BUILD/${target}_replay")
done

llvm-profdata-19 merge -o "$profiles/all" "$profiles"/*.profraw
# The warnings are about the targets themselves: three programs have a function of the same name.
llvm-cov-19 export -summary-only -instr-profile "$profiles/all" "${objects[@]}" \
  2>"$profiles/warnings" >"$profiles/summary"
while read -r percent covered count file; do
  if [ "$percent" -ge "$LEAST_PERCENT" ]; then result=ok; else result=FAIL; fi
  verdict "$result" "$file: $covered of $count branches, $percent %"
done < <(python3 - "$profiles/summary" "${PARSERS[@]}" <<'PYTHON'
import json
import pathlib
import sys

files = {pathlib.Path(f["filename"]).name: f["summary"]["branches"]
         for f in json.load(open(sys.argv[1]))["data"][0]["files"]
         if pathlib.Path(f["filename"]).parent.name == "radio"}
for parser in sys.argv[2:]:
    branches = files[parser + ".cc"]
    print(int(100 * branches["covered"] / max(branches["count"], 1)), branches["covered"], branches["count"],
          "radio/" + parser + ".cc")
PYTHON
)

echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
