#!/bin/bash
# Runs a fixed sequence of command-line calls in a fresh data root and prints every call with
# its output and exit status: diff two transcripts to show that a change kept the behaviour.
#     scripts/cli-transcript.sh [CLI] > transcript.txt      (CLI defaults to build/shuangqu-cli)
set -u
here=$(cd "$(dirname "$0")/.." && pwd)
cli=${1:-$here/build/shuangqu-cli}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
# The import leaves a copy beside the file it reads: read a copy inside the temporary root.
history="$home/history.txt"
cp "$here/data/dlt_history.txt" "$history"
n=0
run() {
    n=$((n + 1))
    echo "### $n: ${*//$home/HOME}"
    # Report names and headers carry the clock: blank it so two runs compare.
    LANG=C.UTF-8 "$cli" --home "$home" "$@" 2>&1 | sed -E "s#$home#HOME#g;
        s#[0-9]{2}-[0-9]{1,2}-[0-9]{1,2}日[0-9]{1,2}\.[0-9]{1,2}\.[0-9]{1,2}秒#STAMP#g;
        s#[0-9]{4}-[0-9]{2}-[0-9]{2}#DATE#g; s#[0-9]{2}:[0-9]{2}:[0-9]{2}#TIME#g"
    echo "### exit ${PIPESTATUS[0]}"
}
run workspace create 张先生
run rules show
run history import "$history"
run history add 03 09 14 22 27 02 07
run history show --table fighou
run stats show --view both
run expand --front 1,3,5,8,9,12,14,17,20,22,27,31,33,35 --back 2,5,7,11
run filter param Znum --keep --range 50 120
run filter param Onum --exclude --list "0 5"
run filter param Zdqj --keep --range 1 3 --interval 5 20
run filter integrated --params Znum,Onum --keep --and --range Znum 60 110 --range Onum 1 3
run filter relation kill 3 9
run filter history --same 4 --last 40
run filter inclusion keep --numbers 1,3,5,8,9 --group 3
run filter invert-last
run filter reset-last
run candidates count
run candidates show --live --page 1
run template add
run expand --front 1,3,5,8,9,12,14,17,20,22,27,31,33,35 --back 2,5,7,11
run filter same-as-template --scope front
run moban add relation pair 5 8 --scope back
run moban add integrated --params Onum,Zdqj --range Onum 1 4 --list Zdqj "1 2 3" --code 1
run moban list
run moban replay
run setting save 常用 --params Znum --range Znum 60 100
run setting list
run range --column Znum --span 30 --average 0.8
run prize rules show
run prize check
run prize list --kept --sorted
run report write
run report list
