#!/usr/bin/env bash
# Workbook export benchmark: runs each case RUNS times (default 5) and prints
# the median export time (measured inside the program: open, write, save),
# the process's CPU time and peak resident memory as a Markdown table.
# Usage: bench/run_xlsx.sh [build-dir]   (configure with -DQUORVALE_BUILD_BENCH=ON)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
runs=${RUNS:-5}
ours=$build/bench/bench_xlsx
lxw=$build/bench/bench_xlsx_lxw
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

median() { sort -n | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }

# case label, then the command; an optional setup command runs untimed
# before each run (SETUP variable).
measure() {
    local label=$1; shift
    : > "$work/times"; : > "$work/rss"; : > "$work/cpu"
    for _ in $(seq "$runs"); do
        if [ -n "${SETUP:-}" ]; then eval "$SETUP"; fi
        /usr/bin/time -f "%M %U %S" -o "$work/rss1" "$@" > "$work/out"
        awk '/^seconds/{print $2}' "$work/out" >> "$work/times"
        awk '{print $1}' "$work/rss1" >> "$work/rss"
        awk '{print $2 + $3}' "$work/rss1" >> "$work/cpu"
    done
    local t m c size
    t=$(median < "$work/times")
    c=$(median < "$work/cpu")
    m=$(median < "$work/rss")
    size=$(stat -c %s "${OUTFILE}")
    printf '| %s | %s | %s | %d | %.1f |\n' "$label" "$t" "$c" "$((m / 1024))" "$(echo "$size / 1048576" | bc -l)"
}

echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), load $(cut -d' ' -f1-3 /proc/loadavg)"
echo
echo "| case | median wall s | median CPU s (user+sys, whole process) | median peak RSS MB | file MB |"
echo "|---|---|---|---|---|"
# libxlsxwriter in both its modes: the default one keeps everything in
# memory; constant_memory writes rows as they come, as ours does.
for cols in 16 71; do
    OUTFILE=$work/ours.xlsx SETUP= measure "new 100000x$cols, ours" "$ours" new 100000 "$cols" "$work/ours.xlsx"
    OUTFILE=$work/lxw.xlsx SETUP= measure "new 100000x$cols, libxlsxwriter" "$lxw" new 100000 "$cols" "$work/lxw.xlsx"
    OUTFILE=$work/cm.xlsx SETUP= measure "new 100000x$cols, libxlsxwriter constant_memory" "$lxw" new-constant 100000 "$cols" "$work/cm.xlsx"
done
# Four times the rows: memory must not follow them.
OUTFILE=$work/ours.xlsx SETUP= measure "new 400000x16, ours" "$ours" new 400000 16 "$work/ours.xlsx"
OUTFILE=$work/cm.xlsx SETUP= measure "new 400000x16, libxlsxwriter constant_memory" "$lxw" new-constant 400000 16 "$work/cm.xlsx"
"$lxw" make-existing "$work/base.xlsx" > /dev/null
base_mb=$(echo "$(stat -c %s "$work/base.xlsx") / 1048576" | bc -l)
printf '| (existing workbook: %.1f MB, 5 sheets x 33000 rows x 12 columns) | | | | |\n' "$base_mb"
OUTFILE=$work/into.xlsx SETUP="cp '$work/base.xlsx' '$work/into.xlsx'" \
    measure "100000x16 as a new sheet of the existing workbook" "$ours" into 100000 16 "$work/into.xlsx" 报表
cp "$work/base.xlsx" "$work/again.xlsx"
"$ours" into 100000 16 "$work/again.xlsx" 报表 > /dev/null
cp "$work/again.xlsx" "$work/again0.xlsx"
OUTFILE=$work/again.xlsx SETUP="cp '$work/again0.xlsx' '$work/again.xlsx'" \
    measure "100000x16 rewritten in place over the same sheet" "$ours" into 100000 16 "$work/again.xlsx" 报表
cp "$work/base.xlsx" "$work/wide.xlsx"
"$ours" into 100000 71 "$work/wide.xlsx" 报表 > /dev/null
cp "$work/wide.xlsx" "$work/wide0.xlsx"
OUTFILE=$work/wide.xlsx SETUP="cp '$work/wide0.xlsx' '$work/wide.xlsx'" \
    measure "100000x71 rewritten in place over the same sheet" "$ours" into 100000 71 "$work/wide.xlsx" 报表
