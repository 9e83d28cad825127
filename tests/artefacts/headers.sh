#!/usr/bin/env bash
# Every public header compiles alone, as C11 and as C++17, for both machines, without a warning.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tests/support/checks.sh"

readonly ZIG=${VEXA_ZIG:-$CACHE/zig-0.17.0/zig}

# compiles HEADER TARGET LANGUAGE STANDARD
compiles() {
  printf '#include <vexa/%s>\n' "$1" | "$ZIG" cc -target "$2" -x "$3" "-std=$4" -Wall -Wextra -Wpedantic -Werror \
    -I "$ROOT/include" -c -o "$work/object" -
}
# Nothing else may be included: a C program that has only a bare compiler must get by.
includes_little() { ! grep -E '^ *#include <' "$1" | grep -v -E '<(stdint|stddef|wchar)\.h>'; }

for header in "$ROOT"/include/vexa/*.h; do
  name=${header##*/}
  for target in x86_64-windows-gnu aarch64-windows-gnu; do
    check "$name c11 $target" compiles "$name" "$target" c c11
    check "$name c++17 $target" compiles "$name" "$target" c++ c++17
  done
  check "$name includes" includes_little "$header"
done
end_checks
