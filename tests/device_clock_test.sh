#!/usr/bin/env bash
# device_clock_test.sh LIBRARY: a program that has it preloaded takes the device's clock for the
# machine's, also when that is set while it runs.
set -euo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TZ=UTC

# expect CLOCK FROM COMMAND...: with CLOCK in its file the command tells a time from FROM on.
expect() {
    local from=$2 got
    [[ -z $1 ]] || echo "$1" >"$work/clock"
    got=$(LD_PRELOAD=$library ZEL_DEVICE_CLOCK=$work/clock "${@:3}")
    # A minute for a machine that is busy.
    ((got >= from && got < from + 60)) || {
        echo "'$1' $3: $got where about $from was expected" >&2
        exit 1
    }
}

library=$1
now=$(date +%s)
expect "" "$now" date +%s
expect +1000000 $((now + 1000000)) date +%s
expect "" "$now" env date +%s # a program of the program
# shellcheck disable=SC2016
expect -1000000 $((now - 1000000)) bash -c 'echo $EPOCHSECONDS'
expect 1772000000 1772000000000000000 date +%s%N # it stands
# shellcheck disable=SC2016
expect 1772000000 $((now + 5000000 - 5)) bash -c '
    printf "%(%s)T\n" -1 >"$0/before"
    echo +5000000 >"$0/new" && mv "$0/new" "$0/clock"
    sleep 0.3
    printf "%(%s)T\n" -1
' "$work"
