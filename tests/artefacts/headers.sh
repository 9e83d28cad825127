#!/usr/bin/env bash
# Every public header compiles alone, as C11 and as C++17, for both machines, without a warning.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"

readonly ZIG=${VEXA_ZIG:-$CACHE/zig-0.17.0/zig}
passed=0
failed=0
object=$(mktemp)
trap 'rm -f "$object"' EXIT

for header in "$ROOT"/include/vexa/*.h; do
  for target in x86_64-windows-gnu aarch64-windows-gnu; do
    for language in c:c11 c++:c++17; do
      name="${header##*/} ${language#*:} $target"
      if printf '#include <vexa/%s>\n' "${header##*/}" |
        "$ZIG" cc -target "$target" -x "${language%:*}" "-std=${language#*:}" -Wall -Wextra -Wpedantic -Werror \
          -I "$ROOT/include" -c -o "$object" -; then
        echo "ok $name"
        passed=$((passed + 1))
      else
        echo "FAIL $name"
        failed=$((failed + 1))
      fi
    done
  done
  # Nothing but these may be included: a C program that has only a bare compiler must get by.
  if grep -E '^ *#include <' "$header" | grep -v -E '<(stdint|stddef|wchar)\.h>'; then
    echo "FAIL ${header##*/} includes"
    failed=$((failed + 1))
  else
    passed=$((passed + 1))
  fi
done

echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
