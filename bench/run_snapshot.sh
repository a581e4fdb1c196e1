#!/usr/bin/env bash
# Snapshot benchmark: for each scale, builds the benchmark database
# (create-db --scale N), loads it into a PostgreSQL server of its own
# (tests/support/pg_server.sh and pg_load.sh: a Unix socket in a temporary
# folder, no network address), then times `quorvale-admin snapshot` reading
# it back through the "PostgreSQL Unicode" ODBC driver, RUNS times, and
# prints its section of RESULTS.md with medians (rows/s over wall time).
# Usage: bench/run_snapshot.sh [BUILD_DIR]   (SCALES="20000 100000", RUNS=3)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
scales=${SCALES:-20000 100000}
runs=${RUNS:-3}
admin=$build/src/quorvale-admin
[ -x "$admin" ] || { echo "run_snapshot: $admin missing (build quorvale-admin first)" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "run_snapshot: /usr/bin/time missing (scripts/install-deps.sh installs it)" >&2; exit 1; }

work=$(mktemp -d)
# A folder of its own: under root the server runs as postgres, which must reach it.
server=$(mktemp -d)
cleanup() {
    bash "$root/tests/support/pg_server.sh" stop "$server" 2> /dev/null || true
    rm -rf "$work" "$server"
}
trap cleanup EXIT
bash "$root/tests/support/pg_server.sh" start "$server"
odbc() { echo "DRIVER={PostgreSQL Unicode};Servername=$server;Port=5432;Database=$1;UID=quorvale"; }
median() { sort -g | awk '{v[NR]=$1} END {print v[int((NR+1)/2)]}'; }

: > "$work/rows.md"
for scale in $scales; do
    echo "run_snapshot: scale $scale" >&2
    "$admin" create-db "$work/big.db" --scale "$scale" > /dev/null
    bash "$root/tests/support/pg_load.sh" "$admin" "$server" "big$scale" "$work/big.db" >&2
    rm -f "$work/big.db"
    : > "$work/times"
    for _ in $(seq "$runs"); do
        rm -f "$work/snapshot.db"
        /usr/bin/time -f "%e %U %S %M" -o "$work/time1" \
            "$admin" snapshot --to "$work/snapshot.db" --from "$(odbc "big$scale")" > "$work/out"
        cat "$work/time1" >> "$work/times"
    done
    ledger=$(awk '$1 == "WYZJ" {print $2}' "$work/out")
    total=$(awk '$1 == "total" {print $2}' "$work/out")
    wall=$(awk '{print $1}' "$work/times" | median)
    cpu=$(awk '{print $2 + $3}' "$work/times" | median)
    rss=$(awk '{print $4}' "$work/times" | median)
    size=$(stat -c %s "$work/snapshot.db")
    printf '| %s | %s | %s | %s | %s | %s | %d | %.1f |\n' "$scale" "$ledger" "$total" "$wall" \
        "$cpu" "$(awk -v n="$total" -v s="$wall" 'BEGIN {printf "%d", n / s}')" \
        "$((rss / 1024))" "$(awk -v b="$size" 'BEGIN {print b / 1048576}')" >> "$work/rows.md"
    psql -X -q -h "$server" -p 5432 -U quorvale -d postgres -c "DROP DATABASE big$scale"
done

cat << TEXT
\`bench/run_snapshot.sh\`: the benchmark database of each scale
(\`quorvale-admin create-db FILE --scale N\`) loaded into a PostgreSQL server
on a Unix socket of the same machine, then \`quorvale-admin snapshot --to FILE
--from "DRIVER={PostgreSQL Unicode};..."\` timed with \`/usr/bin/time\`: the
twenty tables read forward-only through ODBC (the driver fetching 2,000 rows
at a time through a cursor), every value converted by its column's type,
written in one transaction into a new file that is synced and renamed.
Medians of $runs runs; rows/s is all rows copied over the wall time, which
includes the server's own work on the same two cores; peak RSS is the whole
process.

| rows per report | ledger rows (WYZJ) | rows copied | median wall s | median CPU s | rows/s | median peak RSS MB | file MB |
|---|---|---|---|---|---|---|---|
TEXT
cat "$work/rows.md"
