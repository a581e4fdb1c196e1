#!/usr/bin/env bash
# The month-end run against the six single exports it replaces, for the
# benchmark office BIG: each single export and then `--report all` into one
# workbook (with its overview sheet, and without), RUNS times each, in one run
# of this script so that all carry the same machine load. Prints a markdown
# table with medians and the ratios (time against the sum of the singles,
# peak memory against the largest, the overview's cost).
# Usage: bench/run_monthend.sh BUILD_DIR [SCALE] [RUNS]
set -euo pipefail
build=${1:?usage: run_monthend.sh BUILD_DIR [SCALE] [RUNS]}
scale=${2:-100000}
runs=${3:-3}
admin=$build/src/quorvale-admin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config QT_QPA_PLATFORM=offscreen
median() { sort -g | awk '{v[NR]=$1} END {if (NR) print v[int((NR+1)/2)]}'; }

"$admin" create-db "$work/big.db" --scale "$scale" > /dev/null
"$admin" config --server "sqlite:$work/big.db" --login b --password b --database b > /dev/null
sign_in=(--user 1002 --password 888888 --post GW05)
reports=(房产客户 车位客户 财务数据欠收表房产 财务数据欠收表车位 财务数据预收表车位 财务数据预收表房产)

measure() { # name, then the export's arguments; appends "wall cpu rss_kb" runs to $work/NAME
    local name=$1
    shift
    for _ in $(seq "$runs"); do
        rm -f "$work"/*.xlsx
        /usr/bin/time -f "%e %U %S %M" -o "$work/t" "$admin" export "$@" "${sign_in[@]}" > /dev/null
        awk '{print $1, $2 + $3, $4}' "$work/t" >> "$work/$name"
    done
}
for r in "${reports[@]}"; do
    measure "single-$r" --report "$r" --office BIG --xlsx "$work/single.xlsx"
done
for _ in $(seq "$runs"); do # alternated, so that both see the same load
    runs=1 measure all --report all --office BIG --xlsx "$work/all.xlsx"
    runs=1 measure plain --report all --no-overview --office BIG --xlsx "$work/all.xlsx"
done

col() { awk -v c="$2" '{print $c}' "$work/$1" | median; }
echo "| export | median wall s | median CPU s | median peak RSS MB |"
echo "|---|---|---|---|"
sum_wall=0
max_rss=0
for r in "${reports[@]}"; do
    w=$(col "single-$r" 1) c=$(col "single-$r" 2) m=$(col "single-$r" 3)
    echo "| $r alone | $w | $c | $((m / 1024)) |"
    sum_wall=$(awk -v a="$sum_wall" -v b="$w" 'BEGIN {print a + b}')
    [ "$m" -gt "$max_rss" ] && max_rss=$m
done
w=$(col all 1) c=$(col all 2) m=$(col all 3)
echo "| --report all (six sheets and the overview, one save) | $w | $c | $((m / 1024)) |"
pw=$(col plain 1) pc=$(col plain 2) pm=$(col plain 3)
echo "| --report all --no-overview | $pw | $pc | $((pm / 1024)) |"
echo
awk -v w="$w" -v s="$sum_wall" -v m="$m" -v x="$max_rss" 'BEGIN {
    printf "monthend: %.2f× the six single exports'\'' time (target ≤ 1.1×), %.2f× the largest single export'\''s peak memory (target ≤ 1.2×)\n", w / s, m / x }'
awk -v w="$w" -v p="$pw" 'BEGIN { printf "monthend: the overview costs %.2f× the run without it (target ≤ 1.1×)\n", w / p }'
