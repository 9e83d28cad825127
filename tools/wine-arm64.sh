#!/bin/bash
# tools/wine-arm64.sh PROGRAM [ARGS...]   runs an ARM64 Windows program
# tools/wine-arm64.sh --server ARGS...    runs the wineserver program (-k, -w)
#
# PROGRAM is a path of the host or a name that Wine knows (wineboot). WINEPREFIX must be set. Of the
# environment, only HOME, TERM and what begins with WINE or VEXA_ reach the program.
#
# Each call has mounts of its own, which end with the last process it started, so nothing has to be
# unmounted. The wineserver opens files on behalf of every call with that prefix, but does so among
# the mounts of the call that happened to start it; so each call gets to see all of the host at the
# usual paths, with only the host's programs and libraries exchanged for the arm64 ones, and never
# just the folders it needs itself.

. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# Lets the kernel run arm64 programs. The system may have seen to it, but its entry is of use only
# with the flag F: else the emulator is looked for when a program starts, in the new root.
register_emulator() {
  local misc=$1 line
  mount -t binfmt_misc binfmt_misc "$misc" || die "can't mount binfmt_misc: the emulator needs it"
  is_registered "$misc" && return 0
  line=$(</usr/lib/binfmt.d/qemu-aarch64.conf)
  # A name of our own: the usual one may be taken by an entry without F. Writing fails when another
  # call was faster.
  printf '%s' "${line/#:qemu-aarch64:/:vexa-aarch64:}" 2>/dev/null >"$misc/register" || true
  is_registered "$misc" || die "can't register the emulator for arm64 programs with the kernel"
}

is_registered() {
  local name
  for name in qemu-aarch64 vexa-aarch64; do
    [ -e "$1/$name" ] || continue
    [[ $(<"$1/$name") =~ ^enabled.*flags:\ [A-Z]*F ]] && return 0
  done
  return 1
}

# enter BASE UID GID PROGRAM [ARGS...]: runs as root, in a mount namespace made for this call.
enter() {
  local base=$1 uid=$2 gid=$3
  shift 3
  local new=$base/mnt path cwd drop=()

  register_emulator "$base/binfmt"

  # Unbindable, or it would turn up inside itself when the folder that holds it is bound.
  mount --make-unbindable -t tmpfs -o mode=755 wine-arm64 "$new"
  ln -s usr/bin usr/sbin usr/lib "$new"
  mkdir "$new/usr"
  mount --bind "$base/root/usr" "$new/usr"
  for path in /usr/local /usr/src /*; do
    case $path in
    /usr | /bin | /sbin | /lib | /lib32 | /lib64 | /libx32) continue ;;
    esac
    if [ -L "$path" ]; then
      cp -P "$path" "$new/"
    elif [ -d "$path" ]; then
      mkdir -p "$new$path"
      mount --rbind "$path" "$new$path"
    fi
  done

  cwd=$(pwd -P)
  [ -d "$new$cwd" ] || cwd=/
  # Wine takes no prefix of another user's, not even as root.
  [ "$uid" = 0 ] || drop=(--setuid "$uid" --setgid "$gid")
  exec unshare "${drop[@]}" --root "$new" --wd "$cwd" -- "$@"
}

[ $# -gt 0 ] || die "usage: tools/wine-arm64.sh PROGRAM [ARGS...] | --server ARGS..."
[ -n "${WINEPREFIX:-}" ] || die "tools/wine-arm64.sh: WINEPREFIX isn't set"
base=$(cd "$CACHE" && pwd)/wine-arm64
[ -e "$base/recipe" ] || die "tools/wine-arm64.sh: run tools/setup-arm64.sh first"

if [ "$1" = --server ]; then
  program=/usr/lib/wine/wineserver
  shift
else
  program=/usr/lib/wine/wine64
fi

# No prompts for .NET and HTML engines, no menu entries on the host.
: "${WINEDEBUG=-all}" "${WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=}"
export WINEDEBUG WINEDLLOVERRIDES
export WINELOADER=/usr/lib/wine/wine64
unset WINESERVER

env=(
  PATH=/usr/bin:/bin:/usr/sbin:/sbin
  LC_ALL=C.UTF-8
  # Wine's entry points fail the branch-target checks of the emulator's usual processor: the program
  # would spin for ever.
  QEMU_CPU=cortex-a72
)
for name in HOME TERM $(compgen -e WINE) $(compgen -e VEXA_); do
  [ -z "${!name+set}" ] || env+=("$name=${!name}")
done

# exec, so that the caller's signals and the program's exit code pass unchanged; as_root would also
# report a program's own failure as its own.
sudo=()
[ "$(id -u)" = 0 ] || { as_root true; sudo=(sudo -n); }
exec "${sudo[@]}" env -i "${env[@]}" unshare --mount --propagation slave bash -euc \
  "$(declare -f say die is_registered register_emulator enter)"'; enter "$@"' wine-arm64 \
  "$base" "$(id -u)" "$(id -g)" "$program" "$@"
