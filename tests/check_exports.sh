#!/usr/bin/env bash
# The shared library's dynamic symbol table holds entry points declared in
# the public header and nothing else (no C++ or Highway internals).
set -euo pipefail
lib=$1 header=$2
declared=$(grep -oE 'YUVBLIT_A9\(\w+\);|YUVBLIT_API void \w+\(' "$header" |
           sed -E 's/YUVBLIT_A9\((\w+)\);/\1/; s/YUVBLIT_API void (\w+)\(/\1/' | grep -vx name | sort -u)
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TWiDBR]$/ {print $3}' | sed 's/@.*//' | sort -u)
echo "declared: $(echo "$declared" | wc -l), exported: $(echo "$exported" | wc -l)"
[ "$(echo "$declared" | wc -l)" -eq 68 ] || { echo "header declares $(echo "$declared" | wc -l) entry points, not 68"; exit 1; }
extra=$(comm -13 <(echo "$declared") <(echo "$exported"))
if [ -n "$extra" ]; then echo "exported but not entry points:"; echo "$extra"; exit 1; fi
echo "every exported symbol is a declared entry point"
