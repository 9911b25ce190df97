# What a script runs in the background, and that nothing of it outlives the script. Sourced by run.
# shellcheck shell=bash

pids=()
net=()  # what runs a command in a network of its own, if there is one
scratch=$(mktemp -d)
interrupted=130  # the exit status when somebody ends the script
exec {held}</dev/null

# start COMMAND...: in the background, until this script ends. Its process id is in $! then.
start() {
    # Once the command runs the kernel ends it together with this script, even where that is killed.
    setpriv --pdeathsig TERM -- "$@" <&0 {held}>&- &
    pids+=($!)
}

# start_inside COMMAND...: the same in that network. Whoever enters it loses the kernel's promise.
start_inside() { start "${net[@]}" setpriv --pdeathsig TERM -- "$@"; }

alive() { kill -0 "$1" 2>/dev/null; }

stop_all() {
    # Whoever read what is printed may be gone already. That must not end this half-way.
    trap '' INT TERM HUP PIPE
    local pid
    # The last one started first: the terminal ends while its peers are still there.
    for ((i = ${#pids[@]} - 1; i >= 0; --i)); do
        pid=${pids[i]}
        alive "$pid" || continue
        kill "$pid" || true
        for ((tenths = 0; tenths < 30; ++tenths)); do
            alive "$pid" || break
            sleep 0.1
        done
        ! alive "$pid" || kill -KILL "$pid" || true
    done 2>/dev/null
    rm -rf "$scratch"
}
trap stop_all EXIT
trap 'exit "$interrupted"' INT TERM HUP PIPE

taken=' '
# free_port FIRST: the first free TCP port from FIRST on, in $port.
free_port() {
    port=$1
    while [[ $taken == *" $port "* || -n $(ss --no-header --tcp --listening --numeric "sport = :$port") ]]; do
        port=$((port + 1))
    done
    taken+="$port "
}

# hold FOLDER: keeps others from using FOLDER until this script ends; ends it where another one does.
hold() {
    mkdir -p "$(dirname "$1")"
    exec {held}>>"$1.lock"
    if ! flock --nonblock "$held"; then
        local holder
        read -r holder <"$1.lock" || true
        echo "$(basename "$0"), process ${holder:-unknown}, holds $1 already. End that one first." >&2
        exit 1
    fi
    echo $$ >"$1.lock"
}
