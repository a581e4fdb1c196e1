#!/usr/bin/env bash
# A throw-away PostgreSQL server for the tests and the benchmark: its files
# and its Unix socket live in DIR and it listens on no network address.
# PostgreSQL refuses to run as root, so under root it runs as the postgres
# user that Debian's package creates.
# Usage: pg_server.sh start DIR | stop DIR
set -euo pipefail
action=${1:?usage: pg_server.sh start DIR | stop DIR}
dir=${2:?usage: pg_server.sh start DIR | stop DIR}
bindir=$(ls -d /usr/lib/postgresql/*/bin 2> /dev/null | sort -V | tail -1)
if [ -z "$bindir" ] || [ ! -x "$bindir/initdb" ]; then
    echo "pg_server: PostgreSQL is not installed (scripts/install-deps.sh installs it)" >&2
    exit 1
fi
as_owner=()
if [ "$(id -u)" -eq 0 ]; then
    getent passwd postgres > /dev/null || { echo "pg_server: no postgres user to run the server as" >&2; exit 1; }
    chown postgres: "$dir"
    as_owner=(runuser -u postgres --)
    "${as_owner[@]}" test -x "$dir" || { echo "pg_server: the postgres user cannot reach $dir" >&2; exit 1; }
fi
case $action in
start)
    if ! "${as_owner[@]}" "$bindir/initdb" --no-sync -D "$dir/data" -U quorvale --auth=trust \
        -E UTF8 --locale=C.UTF-8 > "$dir/initdb.log" 2>&1; then
        cat "$dir/initdb.log" >&2
        exit 1
    fi
    if ! "${as_owner[@]}" "$bindir/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 \
        -o "-k $dir -c listen_addresses= -p 5432 -c fsync=off" start > /dev/null; then
        cat "$dir/server.log" >&2
        exit 1
    fi
    ;;
stop)
    "${as_owner[@]}" "$bindir/pg_ctl" -D "$dir/data" -m fast -w stop > /dev/null
    ;;
*)
    echo "pg_server: unknown action $action" >&2
    exit 2
    ;;
esac
