#!/usr/bin/env bash
# device_clock_test.sh LIBRARY: a program that has it preloaded takes the device's clock for the
# machine's, also when that is set while it runs.
set -euo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TZ=UTC

moved() { LD_PRELOAD=$1 ZEL_DEVICE_CLOCK=$work/clock "${@:2}"; }
expect() {
    local name=$1 from=$2 got=$3
    # A minute for a machine that is busy.
    ((got >= from && got < from + 60)) || {
        echo "$name: $got where about $from was expected" >&2
        exit 1
    }
}

expect "no file" "$(date +%s)" "$(moved "$1" date +%s)"
echo +1000000 >"$work/clock"
expect "ahead" $(($(date +%s) + 1000000)) "$(moved "$1" date +%s)"
expect "a program of the program" "$(date +%s)" "$(moved "$1" env date +%s)"
echo -1000000 >"$work/clock"
# shellcheck disable=SC2016
expect "behind" $(($(date +%s) - 1000000)) "$(moved "$1" bash -c 'echo $EPOCHSECONDS')"
echo 1772000000 >"$work/clock"
[[ $(moved "$1" date +%F_%T.%N) == 2026-02-25_06:13:20.000000000 ]]

# shellcheck disable=SC2016
moved "$1" bash -c '
    printf "%(%s)T\n" -1
    echo +5000000 >"$0/new" && mv "$0/new" "$0/clock"
    sleep 0.3
    printf "%(%s)T\n" -1
' "$work" >"$work/times"
expect "stopped" 1772000000 "$(head -n 1 "$work/times")"
expect "set anew" $(($(date +%s) + 5000000 - 5)) "$(tail -n 1 "$work/times")"
