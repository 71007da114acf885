#!/usr/bin/env bash
# Runs the fuzz targets with libFuzzer under AddressSanitizer and UBSan.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

usage() {
    cat <<END
usage: scripts/fuzz.sh [--seconds N] [target...]

  --seconds N   how long each target runs (600)
  target        one or more of: $(cd "$root/fuzz/seeds" && echo *)

New inputs are kept in build-fuzz/corpus/, findings in build-fuzz/findings/. The last line for each
target counts its executions; the exit status is 1 when there was a finding.
END
}

seconds=600
targets=()
while [ $# -gt 0 ]; do
    case $1 in
        --seconds) seconds=$2; shift 2 ;;
        -h | --help) usage; exit 0 ;;
        *) targets+=("$1"); shift ;;
    esac
done
if [ ${#targets[@]} -eq 0 ]; then
    mapfile -t targets < <(ls "$root/fuzz/seeds")
fi

install_missing "$root/scripts/packages-run.txt" "$root/scripts/packages-test.txt"
build fuzz fuzz_targets

status=0
for target in "${targets[@]}"; do
    corpus=$root/build-fuzz/corpus/$target
    findings=$root/build-fuzz/findings/$target
    log=$root/build-fuzz/$target.log
    mkdir -p "$corpus" "$findings"
    say "$target, $seconds s"
    LC_ALL=C.UTF-8 "$root/build-fuzz/fuzz/fuzz_$target" "$corpus" "$root/fuzz/seeds/$target" \
        -max_total_time="$seconds" -max_len=16384 -timeout=10 -rss_limit_mb=2048 \
        -artifact_prefix="$findings/" -print_final_stats=1 >"$log" 2>&1 || {
        status=1
        say "$target: a finding, see $log and $findings"
    }
    printf '%s\t%s executions\t%s s\t%s\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)" "$seconds" \
        "$(date -u +%F)" | tee -a "$root/build-fuzz/executions.txt"
done
exit $status
