#!/usr/bin/env bash
# run_processes_test.sh TOOLS: however a script ends that uses TOOLS/run_processes.sh, everything it
# has started ends too, and a second one does not share its folder.
set -euo pipefail

work=$(mktemp -d)
processes=
# shellcheck disable=SC2086
trap 'kill -KILL $processes 2>/dev/null || true; rm -rf "$work"' EXIT

# One of its processes has to be killed, which the shell reports on standard error.
cat >"$work/script" <<TEXT
set -euo pipefail
. "$1/run_processes.sh"
hold "$work/root"
start sleep 600
start bash -c 'trap "" TERM; while true; do sleep 0.1; done'
echo "\$\$ \${pids[*]}" >"$work/pids.new"
mv "$work/pids.new" "$work/pids"
wait
TEXT

fail() {
    echo "$*" >&2
    exit 1
}

# soon WHAT COMMAND...
soon() {
    for ((tenths = 0; tenths < 300; ++tenths)); do
        "${@:2}" 2>/dev/null && return
        sleep 0.1
    done
    fail "$1"
}

gone() { ! kill -0 "$@"; }

for how in INT TERM HUP KILL reader; do
    rm -f "$work/pids"
    # A shell's background commands do not hear of Ctrl-C unless they are told to.
    setsid env --default-signal=INT \
        bash -c "bash $work/script 2>&1 | (echo \$BASHPID >$work/reader; exec tee $work/log) >$work/out" &
    group=$!
    soon "nothing starts" test -f "$work/pids"
    read -r script processes <"$work/pids"
    bash "$work/script" 2>"$work/second" && fail "two share a folder"
    grep --quiet "process $script, holds" "$work/second" || fail "it does not say who holds it"

    case $how in
        KILL) kill -KILL "$script" ;;
        reader) kill -KILL "$(<"$work/reader")" && kill -TERM "$script" ;;
        *) kill -"$how" -- "-$group" ;;
    esac
    for process in $script $processes; do
        # What shrugs off the end of its parent is not asked again.
        [[ $how == KILL && $process == "${processes##* }" ]] && kill -KILL "$process"
        soon "$how leaves $process" gone "$process"
    done
done
