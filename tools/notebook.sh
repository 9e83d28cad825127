# The simulated notebook: a Wine prefix per machine with the product and a scenario in it. Sourced after lib.sh.
#
# MACHINE   x64 or arm64
# PRESET    how it is built: the machine and, where VEXA_VARIANT says so, a variant ("-ubsan")
# BUILT     the folder of that build
# WINEPREFIX the machine's prefix

# use_machine x64|arm64: chooses the machine that the functions below work on.
use_machine() {
  MACHINE=$1
  PRESET=$MACHINE${VEXA_VARIANT:-}
  BUILT=$ROOT/build/$PRESET
  export WINEPREFIX=${VEXA_PREFIX:-$ROOT/build/prefix}-$PRESET
  WINE=$ROOT/tools/wine-$MACHINE.sh
}

# Background processes of Wine keep whatever output they were started with open, so none may inherit a caller's pipe.
quiet_wine() { "$WINE" "$@" </dev/null >"$WINEPREFIX.log" 2>&1; }

# Creates the prefix once; a half-made one does not count.
make_prefix() {
  [ -f "$WINEPREFIX/made" ] && return 0
  say "creating the Wine prefix for $MACHINE"
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  quiet_wine wineboot --init || die "Wine can't make a prefix; see $WINEPREFIX.log"
  quiet_wine --server -w
  touch "$WINEPREFIX/made"
}

# Starts Wine's own services, so that what is run afterwards does not have to wait for them, nor hands them its output.
start_prefix() { make_prefix && quiet_wine wineboot; }

stop_prefix() { [ ! -d "$WINEPREFIX" ] || quiet_wine --server -k || true; }

# build_preset PRESET TARGET...: configures when needed, then builds.
build_preset() {
  local preset=$1 log=$ROOT/build/$1.log
  shift
  mkdir -p "$ROOT/build"
  {
    [ -f "$ROOT/build/$preset/build.ninja" ] ||
      (cd "$ROOT" && CMAKE_C_COMPILER_LAUNCHER=$ROOT/tools/compile-cached \
        CMAKE_CXX_COMPILER_LAUNCHER=$ROOT/tools/compile-cached cmake --preset "$preset")
    (cd "$ROOT" && cmake --build --preset "$preset" --target "$@")
  } >"$log" 2>&1 || { tail -n 40 "$log" >&2; die "building $preset failed; see $log"; }
}

# install_scenario FILE.json: checks a scenario and gives it to the notebook: its driver (x64), its firmware and its radios.
# The scenario that is there already is left alone: what was set on that notebook stays set.
install_scenario() {
  local folder=$WINEPREFIX/drive_c/vexa-notebook
  mkdir -p "$folder"
  [ "$MACHINE" = arm64 ] || install_part build "$1" "$folder/scenario.bin"
  install_part firmware "$1" "$folder/firmware.json"
  install_part radios "$1" "$folder/radios.json"
}

install_part() {
  "$ROOT/build/native/notebook/scenario/vexa-scenario" "$1" "$2" "$3.new" >&2 || die "the scenario is refused"
  if cmp -s "$3.new" "$3"; then rm -f "$3.new"; else mv -f "$3.new" "$3"; fi
}

# Puts the simulated firmware in the place of Wine's own WMI locator, once per file.
install_firmware() {
  local file=$BUILT/notebook/firmware/vexa-firmware.dll folder=$WINEPREFIX/drive_c/vexa-notebook
  mkdir -p "$folder"
  cmp -s "$file" "$folder/vexa-firmware.dll" && return 0
  cp "$file" "$folder/"
  quiet_wine regsvr32 /s 'C:\vexa-notebook\vexa-firmware.dll' || die "the simulated firmware can't be registered"
}

# Puts the stand-ins of the radios in place: the optional libraries where the system has its own, that of the network
# interfaces beside the product, where Wine takes a library of that name only when it is told to.
install_radios() {
  local built=$BUILT/notebook/radios folder=$WINEPREFIX/drive_c/windows/system32 marker=$WINEPREFIX/radios
  copy_changed "$folder" "$built/wlanapi.dll" "$built/bluetoothapis.dll"
  copy_changed "$WINEPREFIX/drive_c/Vexa" "$built/iphlpapi.dll"
  [ ! -f "$marker" ] || return 0
  quiet_wine reg add 'HKCU\Software\Wine\DllOverrides' /v '*iphlpapi' /d native,builtin /f ||
    die "the registry can't be written; see $WINEPREFIX.log"
  touch "$marker"
}

# A variant names the lines of its findings from the PDBs.
install_product() {
  local file pdbs=()
  for file in "$@"; do [ -z "${VEXA_VARIANT:-}" ] || [ ! -f "${file%.*}.pdb" ] || pdbs+=("${file%.*}.pdb"); done
  copy_changed "$WINEPREFIX/drive_c/Vexa" "$@" "${pdbs[@]}"
}

# install_notebook [SCENARIO.json]: the whole build of the machine in its prefix, which is started.
install_notebook() {
  start_prefix
  install_product "$BUILT/VexaWinIO64.dll" "$BUILT/vexahealth.exe"
  [ "$MACHINE" = arm64 ] || install_product "$BUILT/notebook/driver/VexaSAIO.sys"
  install_firmware
  install_radios
  [ -z "${1:-}" ] || install_scenario "$1"
}

# copy_changed FOLDER FILE...: copies the files only when they differ: a running driver keeps its file.
copy_changed() {
  local folder=$1 file
  shift
  mkdir -p "$folder"
  for file in "$@"; do
    cmp -s "$file" "$folder/${file##*/}" || cp "$file" "$folder/"
  done
}
