# Sourced by the server benchmarks: a throwaway PostgreSQL 15 cluster in a temporary folder, reached
# through its Unix socket only, stopped and removed on exit. As root the server runs as postgres.
PGBIN=/usr/lib/postgresql/15/bin
CLUSTER=$(mktemp -d /tmp/sendrel-bench-pg-XXXXXX)
chmod 777 "$CLUSTER"
as_server() { if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi; }
stop_cluster() { as_server "$PGBIN/pg_ctl" -D "$CLUSTER/data" -m fast -w stop >/dev/null 2>&1 || true; rm -rf "$CLUSTER"; }
trap stop_cluster EXIT
as_server "$PGBIN/initdb" -D "$CLUSTER/data" -A trust -U sendrel -E UTF8 --locale=C >/dev/null
as_server "$PGBIN/pg_ctl" -D "$CLUSTER/data" -l "$CLUSTER/log" -w -o "-c listen_addresses='' -k $CLUSTER -c max_connections=60" start >/dev/null
conn() { echo "postgresql://sendrel@/$1?host=$CLUSTER"; }
newdb() { psql -q "$(conn postgres)" -c "CREATE DATABASE $1"; conn "$1"; }
