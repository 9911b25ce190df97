# The tour of ./run --demo: what is done on the terminal, step by step, with a picture of each.
# Sourced by run, which has started everything; uses its demo, control_port, terminal, log and wait_until.
# shellcheck shell=bash disable=SC2154

# controller WORDS: has the simulated controller carry them out.
controller() {
    local answer
    exec {control}<>"/dev/tcp/127.0.0.1/$control_port"
    echo "$*" >&"$control"
    while read -r -t 5 -u "$control" answer; do
        [[ $answer != error* ]] || {
            echo "The simulated controller on '$*': $answer" >&2
            exit 1
        }
        [[ $answer != ok* ]] || break
    done
    exec {control}>&-
}

touch_at() { xdotool mousemove "$1" "$2" click 1; }

# still: whether the screen shows the same twice, a moment apart.
still() {
    mv "$scratch/now.png" "$scratch/before.png" 2>/dev/null || true
    sleep 0.3
    import -silent -window root "$scratch/now.png"
    [[ -f $scratch/before.png ]] && compare -metric AE "$scratch/before.png" "$scratch/now.png" null:
}

steps=0
# step NAME WHAT: a picture of the screen as soon as it rests.
step() {
    alive "$terminal" || {
        echo "The terminal has ended." >&2
        exit 1
    }
    rm -f "$scratch/now.png"
    wait_until "the screen to rest" still
    steps=$((steps + 1))
    local picture
    picture=$(printf '%s/%02d-%s.png' "$demo" "$steps" "$1")
    mv "$scratch/now.png" "$picture"
    printf '  %-50s %s\n' "$2" "$picture"
}

tour() {
    wait_until "the terminal's greeting" grep Greeting "$log"
    step standby "The standby screen, in Korean"
    controller fault touch network
    step faults "Two faults in the self-check"
    touch_at 240 500
    step acknowledged "Acknowledged by a touch"
}
