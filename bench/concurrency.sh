#!/usr/bin/env bash
# Several sendrel-cli processes on one run database at once, checked for failures and for wrong
# results:
#   1. IMPORTS imports at once, each of its own Run Id: every one succeeds, and each run holds
#      exactly the cycles and tree records of its list;
#   2. IMPORTS imports at once of one Run Id (--on-duplicate fail): exactly one succeeds, and the
#      run holds that list once;
#   3. REPORTS reports at once (stand and stock tables of those runs): every one succeeds, and
#      every file is byte for byte the one made alone;
#   4. readers (runs, years) and one report during the import of a large list: none fails;
#   5. a run deleted and imported again RACES times while its stand table is reported (txt) and
#      exported (csv) over and over: each file is the whole run, byte for byte as made alone, or
#      the command says the run is missing (exit 1); a delete leaves nothing of the run behind.
# Wall times, per-process times and peak memory go to stdout with the load average.
#
# usage: bench/concurrency.sh [--cli PATH] [--imports N] [--reports N] [--records N] [--large N]
#                             [--races N] [--keep DIR]
#   --cli      sendrel-cli to run (default: build/bin/sendrel-cli; measure a Release build)
#   --records  tree records of each list of phases 1-3 (default 250000)
#   --large    tree records of the list of phase 4 (default 1000000)
#   --races    deletes and imports of phase 5 (default 5)
#   --keep     work in DIR and leave it behind (default: a temporary folder, removed)
set -euo pipefail

cli=build/bin/sendrel-cli
imports=4
reports=10
records=250000
large=1000000
races=5
keep=
while [ $# -gt 0 ]; do
    case "$1" in
        --cli) cli=$2; shift 2 ;;
        --imports) imports=$2; shift 2 ;;
        --reports) reports=$2; shift 2 ;;
        --records) records=$2; shift 2 ;;
        --large) large=$2; shift 2 ;;
        --races) races=$2; shift 2 ;;
        --keep) keep=$2; shift 2 ;;
        -h|--help) sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//'; exit 0 ;;
        *) echo "unknown argument '$1'" >&2; exit 2 ;;
    esac
done
cli=$(realpath "$cli")
[ -x "$cli" ] || { echo "no sendrel-cli at $cli" >&2; exit 2; }

if [ -n "$keep" ]; then
    work=$(realpath -m "$keep"); mkdir -p "$work"
else
    work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
fi
cd "$work"
# A home of its own, so no settings of the user are read or written; a fixed clock for the
# report's "Printed on:", so reports compare byte for byte.
export HOME=$work/home XDG_CONFIG_HOME=$work/home/.config SOURCE_DATE_EPOCH=1700000000
mkdir -p "$HOME" out
db=$work/tolv_game.mdb
cycles=10
failures=0

now() { date +%s.%N; }
load() { cut -d' ' -f1-3 /proc/loadavg; }
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
# Runs sendrel-cli in the background with its wall time and peak memory in $1.time.
run() {
    local name=$1; shift
    /usr/bin/time -f '%e %M' -o "out/$name.time" "$cli" --db "$db" "$@" >"out/$name.out" 2>"out/$name.err" &
}
# The slowest wall time and the largest peak memory of the named processes.
slowest() { cat "$@" | awk '$1 !~ /^[0-9.]+$/ { next } $1 > t { t = $1 } $2 > m { m = $2 } END { printf "slowest %.2f s, peak RSS %d MB", t, m / 1024 }'; }
# The shell of SQLite waits for no lock of its own; a reader here must wait as the program does.
rows() { sqlite3 -cmd ".timeout 10000" "$db" "SELECT count(*) FROM $1 WHERE Run_Id = '$2' AND Standing_Harvested = 'S'"; }

echo "sendrel-cli concurrency, $(nproc) cores, load average $(load) at the start"
"$cli" --db "$db" init
per_cycle=$((records / cycles))
"$cli" generate-sample list.lst harvested.lst --cycles $cycles --records $per_cycle >/dev/null
"$cli" generate-sample large.lst harvested-large.lst --cycles $cycles --records $((large / cycles)) >/dev/null
expected=$(( per_cycle * cycles ))

# 1. Imports of their own Run Ids.
start=$(now)
for i in $(seq 1 "$imports"); do run "import$i" import list.lst --kind S --run-id "RUN$i"; done
ok=0
for i in $(seq 1 "$imports"); do
    if wait -n; then ok=$((ok + 1)); fi
done
wall=$(echo "$(now) - $start" | bc)
for i in $(seq 1 "$imports"); do
    line=$(cat "out/import$i.out")
    [ "$line" = "$(printf 'RUN%s\tS\t%s\t%s' "$i" $cycles $expected)" ] || fail "import $i printed '$line': $(cat "out/import$i.err")"
    [ "$(rows Model_Header "RUN$i")" = $cycles ] || fail "RUN$i holds $(rows Model_Header "RUN$i") cycles"
    [ "$(rows Model_Entries "RUN$i")" = $expected ] || fail "RUN$i holds $(rows Model_Entries "RUN$i") tree records"
done
[ $ok = "$imports" ] || fail "$((imports - ok)) of $imports imports failed"
printf '1. %d imports of %d records at once: %d succeeded, %.2f s wall, %s\n' "$imports" $expected $ok "$wall" \
    "$(slowest out/import*.time)"

# 2. Imports of one Run Id.
start=$(now)
for i in $(seq 1 "$imports"); do run "same$i" import list.lst --kind S --run-id SAME; done
ok=0
for i in $(seq 1 "$imports"); do
    if wait -n; then ok=$((ok + 1)); fi
done
wall=$(echo "$(now) - $start" | bc)
refused=$(grep -l "Duplicate Run ID: SAME" out/same*.err | wc -l)
[ $ok = 1 ] || fail "$ok imports of one Run Id succeeded"
[ $((ok + refused)) = "$imports" ] || fail "imports of one Run Id failed otherwise: $(cat out/same*.err)"
[ "$(rows Model_Entries SAME)" = $expected ] || fail "SAME holds $(rows Model_Entries SAME) tree records"
printf '2. %d imports of one Run Id at once: %d succeeded, %d refused as duplicates, %.2f s wall\n' "$imports" $ok "$refused" "$wall"

# 3. Reports, each first made alone, then all at once.
report_args() {
    local i=$1 what=stand
    [ $((i % 2)) = 0 ] && what=stock
    echo "$what RUN$(( (i - 1) % imports + 1 )) --kind S --classes 0,5,20"
}
for i in $(seq 1 "$reports"); do
    # shellcheck disable=SC2046
    "$cli" --db "$db" report $(report_args "$i") -o "out/alone$i.txt" >/dev/null
done
start=$(now)
for i in $(seq 1 "$reports"); do
    # shellcheck disable=SC2046
    run "report$i" report $(report_args "$i") -o "$work/out/report$i.txt"
done
ok=0
for i in $(seq 1 "$reports"); do
    if wait -n; then ok=$((ok + 1)); fi
done
wall=$(echo "$(now) - $start" | bc)
same=0
for i in $(seq 1 "$reports"); do
    if cmp -s "out/alone$i.txt" "out/report$i.txt"; then same=$((same + 1)); else fail "report $i differs from the one made alone: $(cat "out/report$i.err")"; fi
done
[ $ok = "$reports" ] || fail "$((reports - ok)) of $reports reports failed"
printf '3. %d reports at once (%d KB each): %d succeeded, %d byte for byte as made alone, %.2f s wall, %s\n' "$reports" \
    $(( $(stat -c %s out/alone1.txt) / 1024 )) $ok $same "$wall" "$(slowest out/report*.time)"

# 4. Readers and a report while a large list is imported. The report writes its tables, so it
#    waits for the import's write lock: it is given the time the import may take.
large_records=$(( large / cycles * cycles ))
start=$(now)
run large import large.lst --kind S --run-id LARGE
importer=$!
( sleep 2; exec /usr/bin/time -f '%e %M' -o out/during.time "$cli" --db "$db" --wait 600 report stand RUN1 --kind S \
      --classes 0,5,20 -o "$work/out/during.txt" >out/during.out 2>out/during.err ) &
reporter=$!
reads=0; read_failures=0; longest=0
while kill -0 $importer 2>/dev/null; do
    for command in "runs" "years RUN1 --kind S"; do
        t0=$(now)
        # shellcheck disable=SC2086
        if "$cli" --db "$db" $command >/dev/null 2>out/read.err; then reads=$((reads + 1)); else read_failures=$((read_failures + 1)); cat out/read.err; fi
        longest=$(echo "t = $(now) - $t0; if (t > $longest) t else $longest" | bc)
    done
done
wait $importer || fail "the large import failed: $(cat out/large.err)"
wall=$(echo "$(now) - $start" | bc)
wait $reporter || fail "the report during the import failed: $(cat out/during.err)"
cmp -s out/alone1.txt out/during.txt || fail "the report made during the import differs from the one made alone"
[ $read_failures = 0 ] || fail "$read_failures reads failed during the import"
[ "$(rows Model_Entries LARGE)" = $large_records ] || fail "LARGE holds $(rows Model_Entries LARGE) tree records"
printf '4. import of %d records: %.2f s wall (%s); meanwhile %d reads (runs, years), %d failed, longest %.2f s;\n' \
    $large_records "$wall" "$(slowest out/large.time)" $reads $read_failures "$longest"
printf '   a report begun 2 s into the import waited for it and took %s s in all\n' "$(cut -d' ' -f1 out/during.time)"

# 5. Deletes racing reports and exports of the run they delete.
race_args="report stand RACE --kind S --classes 0,5,20"
"$cli" --db "$db" import list.lst --kind S --run-id RACE >/dev/null
# shellcheck disable=SC2086
"$cli" --db "$db" $race_args -o out/race-alone.txt >/dev/null
# shellcheck disable=SC2086
"$cli" --db "$db" $race_args --format csv -o out/race-alone.csv >/dev/null
start=$(now)
(
    for _ in $(seq 1 "$races"); do
        "$cli" --db "$db" delete RACE --kind S || exit 1
        [ "$(rows Model_Entries RACE)$(rows Model_Header RACE)$(rows Model_Run RACE)" = 000 ] || { echo "a delete left rows of RACE"; exit 1; }
        "$cli" --db "$db" import list.lst --kind S --run-id RACE >/dev/null || exit 1
    done
) >out/churn.out 2>out/churn.err &
churn=$!
whole=0; missing=0; wrong=0
while kill -0 $churn 2>/dev/null; do
    for format in txt csv; do
        # shellcheck disable=SC2086
        if "$cli" --db "$db" $race_args --format $format -o "$work/out/race.$format" >/dev/null 2>out/race.err; then
            if cmp -s "out/race-alone.$format" "out/race.$format"; then whole=$((whole + 1)); else wrong=$((wrong + 1)); echo "a $format file that is not the whole run"; fi
        elif grep -qE "There is no run RACE:Standing|The run RACE:Standing is not in the database" out/race.err; then
            missing=$((missing + 1))
        else
            wrong=$((wrong + 1)); echo "a $format failed otherwise: $(cat out/race.err)"
        fi
    done
done
wait $churn || fail "the deletes and imports failed: $(cat out/churn.out out/churn.err)"
wall=$(echo "$(now) - $start" | bc)
[ $wrong = 0 ] || fail "$wrong reports and exports during the deletes were neither the whole run nor told it missing"
printf '5. %d deletes and imports of a run of %d records, %.2f s wall; meanwhile %d reports and exports of it: %d whole, %d told the run is missing, %d wrong\n' \
    "$races" $expected "$wall" $((whole + missing + wrong)) $whole $missing $wrong

echo "load average $(load) at the end"
if [ $failures -gt 0 ]; then
    echo "$failures check(s) failed"
    exit 1
fi
echo "every check passed"
