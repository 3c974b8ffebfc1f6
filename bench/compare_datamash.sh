#!/usr/bin/env bash
# `fluxmere-cli info --json` on a 2,000,000-sample log against GNU datamash working out
# the maximum, minimum, mean and median of the resultant column alone, as a user would
# compare them: same machine, same clock, best of a few runs each. Prints the ratio.
# Usage: bench/compare_datamash.sh [path/to/fluxmere-cli] [runs]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli=${1:-$root/build-rel/bin/fluxmere-cli}
runs=${2:-5}
command -v datamash >/dev/null || { echo "datamash is missing (scripts/setup.sh installs it)" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8 LANG=C.UTF-8

python3 "$root/tools/make_sample.py" --count 2000000 --step 3 --start "30/12/2025 20:00:00" "$work/year.log"
# The resultant column of the ";" table, samples without data left out, as plain numbers.
"$cli" --yes export "$work/year.log" --csv -o "$work/year.csv" >/dev/null
awk -F';' 'NR > 5 && $5 !~ /^-/ { print $5 }' "$work/year.csv" >"$work/resultant.txt"

# Best wall time in nanoseconds of a command run `runs` times.
best() {
    local best=0 t0 t1
    for _ in $(seq "$runs"); do
        t0=$(date +%s%N)
        "$@" >/dev/null
        t1=$(date +%s%N)
        if [ "$best" -eq 0 ] || [ $((t1 - t0)) -lt "$best" ]; then best=$((t1 - t0)); fi
    done
    echo "$best"
}
ours=$(best "$cli" info --json "$work/year.log")
theirs=$(best sh -c "datamash max 1 min 1 mean 1 median 1 <'$work/resultant.txt'")
echo "samples: 2000000 ($(wc -l <"$work/resultant.txt") with data)"
echo "datamash max/min/mean/median: $((theirs / 1000000)) ms"
echo "fluxmere-cli info --json:     $((ours / 1000000)) ms"
awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "ratio (info / datamash): %.2f\n", a / b }'
