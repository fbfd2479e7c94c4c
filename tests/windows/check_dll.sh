#!/usr/bin/env bash
# A Windows build of the library exports exactly the entry points declared in
# the public header, by their plain C names (no leading underscore, no @N
# suffix), and imports from system DLLs only, so a host needs nothing but the
# DLL itself.
# usage: check_dll.sh LIBRARY.dll OBJDUMP HEADER
set -euo pipefail
dll=$1 objdump=$2 header=$3

declared=$(grep -oE 'YUVBLIT_A9\(\w+\);|YUVBLIT_API void \w+\(' "$header" |
           sed -E 's/YUVBLIT_A9\((\w+)\);/\1/; s/YUVBLIT_API void (\w+)\(/\1/' | grep -vx name | sort -u)
table=$("$objdump" -p "$dll")
exported=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' <<<"$table" |
           sed -nE 's/^\s*\[ *[0-9]+\] (.*)$/\1/p' | sort)
imported=$(sed -nE 's/^\s*DLL Name: (.*)$/\1/p' <<<"$table" | sort -u)

status=0
[ "$(wc -l <<<"$declared")" -eq 68 ] ||
  { echo "$header declares $(wc -l <<<"$declared") entry points, not 68"; status=1; }
missing=$(comm -23 <(echo "$declared") <(echo "$exported"))
extra=$(comm -13 <(echo "$declared") <(echo "$exported"))
[ -z "$missing" ] || { echo "$dll does not export:"; echo "$missing"; status=1; }
[ -z "$extra" ] || { echo "$dll exports names that are not entry points:"; echo "$extra"; status=1; }
[ "$(sort -u <<<"$exported" | wc -l)" -eq "$(wc -l <<<"$exported")" ] ||
  { echo "$dll exports a name twice"; status=1; }

# The C runtime and the kernel; MinGW's own runtime DLLs (libgcc_s_*,
# libstdc++-6, libwinpthread-1) must have been linked in statically.
system='^(KERNEL32|msvcrt|ucrtbase|api-ms-win-[a-z0-9-]+|ADVAPI32|USER32|ntdll)\.dll$'
foreign=$(grep -viE "$system" <<<"$imported" || true)
[ -z "$foreign" ] || { echo "$dll needs DLLs that are not part of Windows:"; echo "$foreign"; status=1; }

[ $status -eq 0 ] && echo "$dll: exports the $(wc -l <<<"$exported") entry points, undecorated; imports $(echo $imported)"
exit $status
