#!/usr/bin/env bash
# Runs kernel_digests against the Linux shared library, then against each
# Windows DLL under wine, and fails naming every entry point whose digest
# differs from the Linux one.
#
# Each DLL runs on this CPU and, under qemu's user-mode emulator, on older CPU
# models, so that Highway's dispatch picks each x86 target in turn (the
# dispatch reads CPUID, which qemu answers for the model it emulates). A
# 32-bit Windows program needs 32-bit wine, a 32-bit Linux program: where the
# kernel cannot execute those, it runs under qemu-i386 only.
#
# usage: run.sh NATIVE_LIBRARY WINDOWS_BUILD...
#   NATIVE_LIBRARY  the Linux build's libyuvblit.so
#   WINDOWS_BUILD   a folder with libyuvblit.dll; the program is built into
#                   it (LoadLibrary finds the DLL beside the program) and so is
#                   the wine prefix. A 32-bit build also holds a 32-bit wine
#                   unpacked into wine32/ (Debian's wine32 and libwine, i386).
set -euo pipefail
export LC_ALL=C
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
native_library=$(realpath "$1")
shift

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# x86 CPU models and the best Highway target each one gives.
models_x86_64=("Haswell-v4 AVX2" "Westmere-v1 SSE4" "Conroe-v1 SSSE3" "qemu64 EMU128")
models_i686=("Westmere-v1 SSE4" "Conroe-v1 SSSE3" "pentium3 EMU128")

wine64=$(command -v wine64 || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver64 || echo /usr/lib/wine/wineserver64)
[ -x "$wineserver" ] || wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)
export WINEDEBUG=-all

"${CXX:-c++}" -std=c++17 -O2 -Wall -Wextra -I"$root/include" "$here/kernel_digests.cpp" \
  -o "$work/kernel_digests" -ldl
"$work/kernel_digests" "$native_library" > "$work/expected"

# The program must cover every entry point the library exports.
grep -oE '^ +\w+;' "$root/src/frame/exports.map" | tr -d ' ;' | sort > "$work/exports"
if ! cut -d' ' -f1 "$work/expected" | sort | diff -q "$work/exports" - > /dev/null; then
  echo "kernel_digests does not call exactly the exported entry points:"
  cut -d' ' -f1 "$work/expected" | sort | diff "$work/exports" - || true
  exit 1
fi
echo "expected digests of $(wc -l < "$work/expected") entry points from $native_library"

failed=0
# check LABEL COMMAND...: runs a Windows program and compares its digests.
check() {
  local label=$1 out=$work/actual err=$work/stderr
  shift
  if ! "$@" > "$out" 2> "$err"; then
    echo "FAIL  $label: the program did not complete:"
    sed 's/^/      /' "$err"
    failed=1
    return
  fi
  tr -d '\r' < "$out" > "$out.lf"
  if cmp -s "$work/expected" "$out.lf"; then
    echo "ok    $label"
    return
  fi
  local differing
  differing=$(join -a1 <(sort "$work/expected") <(sort "$out.lf") | awk 'NF != 3 || $2 != $3 {print $1}' | paste -sd ' ' -)
  echo "FAIL  $label: digests differ from the Linux library's for: ${differing:-(lines it did not expect)}"
  failed=1
}

# emulated BITS QEMU WINE MODEL...: the program under QEMU as each CPU model
# ("cpu target"). Wine would otherwise start the program anew outside the
# emulator.
emulated() {
  local bits=$1 qemu=$2 wine=$3 cpu target
  shift 3
  for model in "$@"; do
    read -r cpu target <<< "$model"
    check "$bits DLL, $qemu -cpu $cpu ($target)" \
      env WINELOADERNOEXEC=1 "$qemu" -cpu "$cpu" -L / "$wine" "$program"
  done
}

for build in "$@"; do
  dll=$build/libyuvblit.dll
  case $(x86_64-w64-mingw32-objdump -f "$dll") in
    *pei-x86-64*) arch=x86_64 ;;
    *pei-i386*) arch=i686 ;;
    *) echo "$dll: not a Windows x86 DLL"; exit 1 ;;
  esac
  # The 32-bit program calls in at every word offset of the stack.
  flags=()
  [ $arch = x86_64 ] || flags=(-mpreferred-stack-boundary=2)
  "$arch-w64-mingw32-g++" -std=c++17 -O2 -Wall -Wextra -static "${flags[@]}" -I"$root/include" \
    "$here/kernel_digests.cpp" -o "$build/kernel_digests.exe"
  program=$(realpath "$build/kernel_digests.exe")
  export WINEPREFIX
  WINEPREFIX=$(realpath "$build")/wineprefix

  if [ $arch = x86_64 ]; then
    unset WINEARCH WINESERVER WINELOADERNOEXEC
    check "64-bit DLL, this CPU" "$wine64" "$program"
    emulated 64-bit qemu-x86_64 "$wine64" "${models_x86_64[@]}"
    continue
  fi

  wine32=$(realpath "$build")/wine32/usr/lib/wine/wine
  if [ ! -x "$wine32" ]; then
    echo "skip  32-bit DLL: no 32-bit wine in $build/wine32 (make test-windows unpacks Debian's wine32:i386 there)"
    continue
  fi
  # 32-bit wine without a 64-bit host side: a prefix of its own. Wine fills a
  # new prefix by starting its set-up program as a new process, which the
  # emulator cannot do; the prefix gets wine's DLLs directly instead.
  export WINEARCH=win32 WINESERVER=$wineserver
  system32=$WINEPREFIX/drive_c/windows/system32
  if [ ! -e "$system32/kernel32.dll" ]; then
    mkdir -p "$system32"
    ln -sf "$(dirname "$wine32")"/../i386-linux-gnu/wine/i386-windows/* "$system32/"
    echo disable > "$WINEPREFIX/.update-timestamp"
  fi
  if "$wine32" --version > /dev/null 2>&1; then
    check "32-bit DLL, this CPU" "$wine32" "$program"
  else
    reason=$( { "$wine32" --version 2>&1 || true; } | head -1)
    echo "skip  32-bit DLL, this CPU: this machine cannot execute i386 programs (${reason##*: }); emulated runs only"
  fi
  if ! command -v qemu-i386 > /dev/null; then
    echo "skip  32-bit DLL under qemu-i386: qemu-i386 is not installed (Debian's qemu-user)"
    continue
  fi
  emulated 32-bit qemu-i386 "$wine32" "${models_i686[@]}"
done

[ $failed -eq 0 ] && echo "every Windows run matches the Linux library"
exit $failed
