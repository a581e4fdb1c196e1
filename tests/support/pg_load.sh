#!/usr/bin/env bash
# Creates database DB on the server of pg_server.sh in DIR with the twenty
# tables of sql/schema.sql in PostgreSQL's nearest types and, given FILE,
# copies every row of that embedded database into it: each table written
# out by `quorvale-admin sql --csv`, read in by COPY.
# Usage: pg_load.sh ADMIN DIR DB [FILE]
set -euo pipefail
admin=${1:?usage: pg_load.sh ADMIN DIR DB [FILE]}
dir=${2:?usage: pg_load.sh ADMIN DIR DB [FILE]}
db=${3:?usage: pg_load.sh ADMIN DIR DB [FILE]}
file=${4:-}
root=$(cd "$(dirname "$0")/../.." && pwd)
command -v psql > /dev/null || { echo "pg_load: psql is not installed (scripts/install-deps.sh installs it)" >&2; exit 1; }
psql=(psql -X -q -v ON_ERROR_STOP=1 -h "$dir" -p 5432 -U quorvale)

"${psql[@]}" -d postgres -c "CREATE DATABASE $db"
sed -E -f "$root/tests/support/postgres-schema.sed" "$root/sql/schema.sql" | "${psql[@]}" -d "$db" > /dev/null
[ -n "$file" ] || exit 0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -m 700 "$work/config"
export XDG_CONFIG_HOME=$work/config
"$admin" config --server "sqlite:$(realpath "$file")" --login sa --password x --database demo > /dev/null
for table in $(sed -nE 's/^CREATE TABLE ([^ ]+) \(.*/\1/p' "$root/sql/schema.sql"); do
    "$admin" sql --csv -e "SELECT * FROM $table" > "$work/table.csv"
    "${psql[@]}" -d "$db" -c "\\copy $table FROM '$work/table.csv' WITH (FORMAT csv, HEADER true)"
done
