#!/usr/bin/env bash
# Import of a generated tree list of 1,000,000 records into a PostgreSQL run database by
# sendrel-cli, beside psql's \copy of the same rows as CSV into the same table of another database
# of the same schema. Usage: bench/pg-import.sh [--cli PATH] [--records N] (N per cycle, 10 cycles)
set -euo pipefail
cli=build/bin/sendrel-cli
records=100000
while [ $# -gt 0 ]; do
  case "$1" in
    --cli) cli=$2; shift 2 ;;
    --records) records=$2; shift 2 ;;
    *) echo "usage: $0 [--cli PATH] [--records N]" >&2; exit 2 ;;
  esac
done
cli=$(realpath "$cli")
. "$(dirname "$0")/pg-cluster.sh"
work="$CLUSTER/work"; mkdir -p "$work"
"$cli" generate-sample "$work/s.lst" "$work/h.lst" --records "$records" --cycles 10 >/dev/null
ours=$(newdb ours); theirs=$(newdb theirs)
"$cli" --db "$ours" init; "$cli" --db "$theirs" init
columns=$(psql -qAt "$ours" -c "SELECT string_agg(column_name, ',' ORDER BY ordinal_position) FROM information_schema.columns
                                WHERE table_name = 'model_entries' AND column_name <> 'rowid'")
clock() { local start=$(date +%s.%N); "$@" >/dev/null; echo "$(date +%s.%N) - $start" | bc; }
sendrel=$(clock "$cli" --db "$ours" import "$work/s.lst" --kind S)
psql -q "$ours" -c "\\copy (SELECT $columns FROM model_entries ORDER BY rowid) TO '$work/rows.csv' CSV"
copy=$(clock psql -q "$theirs" -c "\\copy model_entries ($columns) FROM '$work/rows.csv' CSV")
rows_ours=$(psql -qAt "$ours" -c "SELECT count(*) FROM model_entries")
rows_theirs=$(psql -qAt "$theirs" -c "SELECT count(*) FROM model_entries")
echo "rows stored: sendrel $rows_ours, psql $rows_theirs"
printf 'sendrel-cli import (COPY, with the kept sums), whole process: %.2f s\n' "$sendrel"
printf 'psql \\copy of the same rows as CSV: %.2f s\n' "$copy"
printf 'ratio psql / sendrel: %.2fx\n' "$(echo "$copy / $sendrel" | bc -l)"
