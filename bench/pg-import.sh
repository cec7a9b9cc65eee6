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
# Each side three times into a new database, taking turns, so that neither meets the cluster's
# first WAL files or a checkpoint alone; the medians are compared.
init() { local db; db=$(newdb "$1"); "$cli" --db "$db" init >/dev/null; echo "$db"; }
columns=
clock() { local start=$(date +%s.%N); "$@" >/dev/null; echo "$(date +%s.%N) - $start" | bc; }
median() { printf '%s\n' "$@" | sort -g | sed -n 2p; }
ours_times=(); theirs_times=()
for i in 1 2 3; do
  ours=$(init "ours$i")
  ours_times+=("$(clock "$cli" --db "$ours" import "$work/s.lst" --kind S)")
  if [ -z "$columns" ]; then
    columns=$(psql -qAt "$ours" -c "SELECT string_agg(column_name, ',' ORDER BY ordinal_position) FROM information_schema.columns
                                    WHERE table_name = 'model_entries' AND column_name <> 'rowid'")
    psql -q "$ours" -c "\\copy (SELECT $columns FROM model_entries ORDER BY rowid) TO '$work/rows.csv' CSV"
  fi
  theirs=$(init "theirs$i")
  theirs_times+=("$(clock psql -q "$theirs" -c "\\copy model_entries ($columns) FROM '$work/rows.csv' CSV")")
  rows_ours=$(psql -qAt "$ours" -c "SELECT count(*) FROM model_entries")
  rows_theirs=$(psql -qAt "$theirs" -c "SELECT count(*) FROM model_entries")
  echo "round $i: rows stored: sendrel $rows_ours, psql $rows_theirs; ${ours_times[-1]} s against ${theirs_times[-1]} s"
done
sendrel=$(median "${ours_times[@]}"); copy=$(median "${theirs_times[@]}")
printf 'sendrel-cli import (COPY, with the kept sums), whole process, median of 3: %.2f s\n' "$sendrel"
printf 'psql \\copy of the same rows as CSV, median of 3: %.2f s\n' "$copy"
printf 'ratio psql / sendrel: %.2fx\n' "$(echo "$copy / $sendrel" | bc -l)"
