#!/bin/sh
# Runs one fuzz target for a bounded time and prints what it reached.
#   run.sh BUILD TARGET SECONDS
# New inputs go to BUILD/corpus/TARGET (kept between runs; the seeds in
# fuzz/corpus/TARGET are only read), reproducers of findings to
# BUILD/findings/, the whole libFuzzer log to BUILD/fuzz_TARGET.log.
# Memory: one allocation above 16 MB or a process above 1 GB is a finding
# (inputs are a few KB; the largest honest allocation is an overlay as big
# as the target's full-HD frame, 8 MB), as is an input taking over 10 s.
set -eu
build=$1 target=$2 seconds=$3
here=$(dirname "$0")
log=$build/fuzz_$target.log
mkdir -p "$build/corpus/$target" "$build/findings"
echo "fuzz_$target: fuzzing for $seconds s from $here/corpus/$target (log: $log)"
if ! "$build/fuzz/fuzz_$target" -max_total_time="$seconds" \
     -rss_limit_mb=1024 -malloc_limit_mb=16 -timeout=10 -print_final_stats=1 \
     -dict="$here/$target.dict" -artifact_prefix="$build/findings/$target-" \
     "$build/corpus/$target" "$here/corpus/$target" >"$log" 2>&1; then
  tail -n 60 "$log"
  echo "fuzz_$target: FINDING; reproducer in $build/findings/"
  exit 1
fi
# libFuzzer's last status line: cov = code edges reached, ft = features
# (edges with hit counts), corp = inputs kept / their total size.
awk -v t="fuzz_$target" '
  /DONE/ { for (i = 1; i <= NF; ++i) if ($i ~ /^(cov|ft|corp):$/) s = s " " $i " " $(i + 1) }
  /stat::number_of_executed_units/ { runs = $2 }
  END { printf "%s: %s executions,%s, no finding\n", t, runs, s }' "$log"
