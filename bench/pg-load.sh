#!/usr/bin/env bash
# 20 clients at once on one PostgreSQL run database for a minute: 10 make reports (stand, stock,
# composition, summary) and compare each with the same report made alone, 5 import lists of their
# own Run Ids over and over, 5 read (runs, years). Prints how many of each ran and failed.
# Usage: bench/pg-load.sh [--cli PATH] [--seconds N] [--records N]
set -uo pipefail
cli=build/bin/sendrel-cli
seconds=60
records=5000
while [ $# -gt 0 ]; do
  case "$1" in
    --cli) cli=$2; shift 2 ;;
    --seconds) seconds=$2; shift 2 ;;
    --records) records=$2; shift 2 ;;
    *) echo "usage: $0 [--cli PATH] [--seconds N] [--records N]" >&2; exit 2 ;;
  esac
done
cli=$(realpath "$cli")
# Reports say when they were printed: one clock for all, so that they compare byte for byte.
export SOURCE_DATE_EPOCH=1700000000
. "$(dirname "$0")/pg-cluster.sh"
work="$CLUSTER/work"; mkdir -p "$work/ref"
db=$(newdb team)
"$cli" --db "$db" init
"$cli" generate-sample "$work/s.lst" "$work/h.lst" --records "$records" --cycles 10 >/dev/null
"$cli" --db "$db" import "$work/s.lst" --kind S >/dev/null
"$cli" --db "$db" import "$work/h.lst" --kind H >/dev/null
reports=("report stand SAMPLE --kind S" "report stock SAMPLE --kind H" "report composition SAMPLE --kind S" "summary SAMPLE --kind S --format csv")
for i in 0 1 2 3; do "$cli" --db "$db" ${reports[$i]} -o "$work/ref/$i" >/dev/null; done
end=$(( $(date +%s) + seconds ))

reporter() {
  local n=0 bad=0 i
  while [ "$(date +%s)" -lt $end ]; do
    i=$(( (n + $1) % 4 ))
    if ! "$cli" --db "$db" ${reports[$i]} -o "$work/r$1" >/dev/null 2>>"$work/errors" || ! cmp -s "$work/r$1" "$work/ref/$i"; then bad=$((bad + 1)); fi
    n=$((n + 1))
  done
  echo "report $n $bad" >> "$work/tally"
}
importer() {
  local n=0 bad=0
  while [ "$(date +%s)" -lt $end ]; do
    "$cli" --db "$db" import "$work/s.lst" --kind S --run-id "IMP$1" --on-duplicate overwrite >/dev/null 2>>"$work/errors" || bad=$((bad + 1))
    n=$((n + 1))
  done
  echo "import $n $bad" >> "$work/tally"
}
reader() {
  local n=0 bad=0
  while [ "$(date +%s)" -lt $end ]; do
    { "$cli" --db "$db" runs && "$cli" --db "$db" years SAMPLE --kind S; } >/dev/null 2>>"$work/errors" || bad=$((bad + 1))
    n=$((n + 1))
  done
  echo "read $n $bad" >> "$work/tally"
}
for k in $(seq 1 10); do reporter "$k" & done
for k in $(seq 1 5); do importer "$k" & done
for k in $(seq 1 5); do reader "$k" & done
wait
awk '{ runs[$1] += $2; failed[$1] += $3 } END { for (k in runs) printf "%-7s %5d done, %d failed\n", k, runs[k], failed[k] }' "$work/tally" | sort
kept=$(psql -qAt "$db" -c "SELECT count(*) FROM model_run WHERE run_id COLLATE \"C\" LIKE 'IMP%'" 2>/dev/null || echo "?")
echo "imported runs standing at the end: $kept of 5"
[ -s "$work/errors" ] && { echo "first failures:"; grep -v '^$' "$work/errors" | sort | uniq -c | sort -rn | head -8; }
exit 0
