#!/usr/bin/env bash
# A C, C++, Rust, Python and C# program, built over the package as its users would, reads the same charge on the simulated
# notebook; so do an out-of-tree CMake project and a program linked by a linker of the other family.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"
source "$ROOT/tests/support/checks.sh"

readonly ZIG=${VEXA_ZIG:-$CACHE/zig-0.17.0/zig}
use_machine x64
wine() {  # wine EXPECTED_CODE PROGRAM ARGUMENTS...
  local expected=$1
  shift
  run_program "$expected" "$WINE" "$@"
}

start_prefix
install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"
install_product "$ROOT/build/x64/VexaWinIO64.dll" "$ROOT/build/x64/notebook/driver/VexaSAIO.sys"
folder=$WINEPREFIX/drive_c/Vexa
python3 "$ROOT/tools/package.py" --output "$work/dist" >&2
python3 -m zipfile -e "$work"/dist/*-x64.zip "$work"
package=$(echo "$work"/VexaWinIO64-*-x64)
compile=(-target x86_64-windows-gnu -Wall -Wextra -Werror -I "$package/include")

check "C" "$ZIG" cc "${compile[@]}" -o "$folder/c.exe" "$package/samples/c/battery.c" "$package/lib/VexaWinIO64.lib"
check "C runs" wine 0 "$folder/c.exe"
check "C says the charge" printed "84 %"

through_pkg_config() {
  local flags
  flags=$(PKG_CONFIG_PATH=$package/lib/pkgconfig pkg-config --cflags --libs vexawinio64) || return 1
  # shellcheck disable=SC2086
  "$ZIG" cc -target x86_64-windows-gnu -Wall -Werror -o "$folder/c.exe" "$package/samples/c/battery.c" $flags
}
check "pkg-config" through_pkg_config
check "pkg-config's program runs" wine 0 "$folder/c.exe"
check "pkg-config's program says the charge" printed "84 %"

consumer() {
  cmake -G Ninja -B "$work/consumer" -S "$package/samples/consumer" -DVexaWinIO64_DIR="$package/lib/cmake/VexaWinIO64" \
    -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchains/x64.cmake" && cmake --build "$work/consumer" && cp "$work/consumer/consumer.exe" "$folder/"
}
check "CMake project" consumer
check "CMake project runs" wine 0 "$folder/consumer.exe"
check "CMake project says the charge" printed "84 %"

other_linker() {
  "$ZIG" cc "${compile[@]}" -ffreestanding -O1 -fno-stack-protector -c -o "$work/other.obj" "$package/samples/c/no_runtime.c" &&
    lld-link-19 -nologo -nodefaultlib -entry:start -subsystem:console -machine:x64 "-out:$folder/other.exe" "$work/other.obj" \
      "$package/lib/VexaWinIO64.lib"
}
check "lld-link" other_linker
check "lld-link's program ends with the charge" wine 84 "$folder/other.exe"

# The samples of the bindings say the same lines, each language in its own way of writing a truth value and a reason.
facts=("charge: 84 %" "manufacturer: VEXA")
check "C++" "$ZIG" c++ "${compile[@]}" -std=c++23 -o "$folder/cpp.exe" "$package/samples/cpp/battery.cc"
check "C++ runs" wine 0 "$folder/cpp.exe" 'C:\Vexa\VexaWinIO64.dll'
check "C++ says the charge" printed "${facts[0]}"
grep -v -i -E '^fully charged' "$work/out" >"$work/expected" || true
check "C++ refuses a relative path" wine 1 "$folder/cpp.exe" VexaWinIO64.dll

rust=(rustc --target x86_64-pc-windows-gnu --edition 2021 -O -D warnings)
rust[0]=/usr/bin/rustc
check "Rust binding" "${rust[@]}" --crate-type rlib --crate-name vexawinio -o "$work/libvexawinio.rlib" "$package/bindings/rust/src/lib.rs"
check "Rust" "${rust[@]}" --extern "vexawinio=$work/libvexawinio.rlib" -C "linker=$ROOT/tools/zig-link" -C panic=abort \
  -o "$folder/rust.exe" "$package/samples/rust/battery.rs"
check "Rust runs" wine 0 "$folder/rust.exe" 'C:\Vexa\VexaWinIO64.dll'
same_facts() { diff "$work/expected" <(grep -v -i '^fully charged\|^application' "$work/out"); }
check "Rust says what C++ says" same_facts

dotnet=$CACHE/dotnet-windows-3.1.23/dotnet.exe
check "C#" mcs -unsafe -warnaserror -out:"$folder/Battery.dll" -target:exe "$package/bindings/csharp/VexaWinIO.cs" \
  "$package/samples/csharp/Battery.cs"
cat >"$folder/Battery.runtimeconfig.json" <<'JSON'
{"runtimeOptions": {"framework": {"name": "Microsoft.NETCore.App", "version": "3.1.23"},
 "configProperties": {"System.Globalization.Invariant": true}}}
JSON
check "C# runs" wine 0 "$dotnet" "$folder/Battery.dll" 'C:\Vexa\VexaWinIO64.dll'
check "C# says what C++ says" same_facts

# Under Wine, Python takes files opened by a Windows program only, so the command interpreter opens them.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
python_runs() {  # python_runs SCRIPT ARGUMENTS...
  local home script=$1
  home=$(windows_path "$CACHE/python-windows-3.12.1")
  shift
  printf '@set PYTHONHOME=%s\r\n@set VEXA_PYTHON=%s\r\n@"%s\\python.exe" -B %s %s < NUL > C:\\Vexa\\python.txt 2>&1\r\n' "$home" \
    "$(windows_path "$package/bindings/python")" "$home" "$(windows_path "$script")" "$*" >"$folder/python.bat"
  rm -f "$folder/python.txt"
  wine 0 cmd /c 'C:\Vexa\python.bat'
  tr -d '\r' <"$folder/python.txt" >"$work/out"
}
check "Python samples" python_runs "$package/samples/python/sampling.py" 'C:\Vexa\VexaWinIO64.dll' 0.1 3
check "Python's samples are right" python3 "$ROOT/tests/bindings/check_samples.py" "$work/out" 3
check "Python calls every export" python_runs "$ROOT/tests/bindings/every_export.py" 'C:\Vexa\VexaWinIO64.dll'
check "Python finds nothing wrong" printed "every export answered"

rm -f "$folder"/{c,consumer,other,cpp,rust}.exe "$folder"/Battery.* "$folder"/python.*
end_checks
