#!/usr/bin/env bash
# Builds the libFuzzer targets (preset fuzz: clang with ASan and UBSan) and runs each
# for a bounded time, starting from its seed corpus and the kept regression inputs.
#   tools/fuzz.sh [SECONDS] [TARGET...]      each target for SECONDS (default 20)
#   FUZZ_RUNS=N tools/fuzz.sh 0 TARGET       TARGET for N executions instead
#   FUZZ_RUNS=N tools/fuzz.sh S TARGET       N executions or S seconds, whichever ends first
# FUZZ_MAX_LEN bounds the size of the inputs tried (default 8192 bytes, 300000 for pst).
# New interesting inputs go to build/fuzz/corpus/<target>/ (not into the repository);
# a crash, leak, hang (over 10 s) or unexpected exception is written to
# build/fuzz/findings/<target>/ and makes the script fail: keep the input in
# fuzz/regressions/<target>/ with the fix, so every build replays it.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-20}"
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(scenario reg_file settings_file vcard mime msg pst)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]/%/_fuzz}"

export LSAN_OPTIONS="suppressions=$PWD/fuzz/lsan.supp${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
# fuzz_one TARGET: runs it; its report goes to build/fuzz/TARGET.report, 1 to
# build/fuzz/TARGET.failed on a finding.
fuzz_one() {
  local t=$1
  local work="build/fuzz/corpus/$t" findings="build/fuzz/findings/$t"
  local report="build/fuzz/$t.report" log="build/fuzz/$t.log"
  mkdir -p "$work" "$findings"
  rm -f "build/fuzz/$t.failed"
  local seeds=("fuzz/corpus/$t")
  [ -d "fuzz/regressions/$t" ] && seeds+=("fuzz/regressions/$t")
  # A data file's smallest real example is 271,360 bytes; the others' inputs are short.
  local default_len=8192
  [ "$t" = pst ] && default_len=300000
  local limit=(-max_total_time="$seconds") bound="$seconds s"
  if [ -n "${FUZZ_RUNS:-}" ]; then
    limit+=(-runs="$FUZZ_RUNS")
    bound="$FUZZ_RUNS runs"
    [ "$seconds" = 0 ] || bound+=" or $seconds s"
  fi
  echo "== fuzz $t ($bound) ==" >"$report"
  if "build/fuzz/fuzz/${t}_fuzz" "${limit[@]}" -timeout=10 -rss_limit_mb=2048 -max_len="${FUZZ_MAX_LEN:-$default_len}" \
      -print_final_stats=1 -artifact_prefix="$findings/" "$work" "${seeds[@]}" >"$log" 2>&1; then
    grep -E '^(#[0-9]+.*DONE|stat::number_of_executed_units|stat::average_exec_per_sec)' "$log" >>"$report" || true
  else
    echo 1 >"build/fuzz/$t.failed"
    { echo "fuzz $t: a finding; input in $findings/, log in $log"
      grep -E 'ERROR|fuzz finding|SUMMARY|Test unit written' "$log" || tail -20 "$log"; } >>"$report"
  fi
}

# The targets run ZINTRA_FUZZ_JOBS at a time (default: one per core); each has its time
# to itself on its core, and the reports come in the targets' order.
jobs_max=${ZINTRA_FUZZ_JOBS:-$(nproc)}
for t in "${targets[@]}"; do
  while [ "$(jobs -r -p | wc -l)" -ge "$jobs_max" ]; do wait -n || true; done
  fuzz_one "$t" &
done
wait
status=0
for t in "${targets[@]}"; do
  if [ -f "build/fuzz/$t.failed" ]; then
    status=1
    cat "build/fuzz/$t.report" >&2
  else
    cat "build/fuzz/$t.report"
  fi
done
exit $status
