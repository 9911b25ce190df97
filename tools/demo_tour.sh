# The tour of ./run --demo: a day at the door, step by step, with a picture of each step.
# Sourced by run, which starts everything; uses its scratch, demo, control_port, terminal, log, clock
# and wait_until.
# shellcheck shell=bash disable=SC2034,SC2154

day=2026-03-09  # a Monday

# tour_clock: has the terminal take the tour's time for the machine's.
tour_clock() {
    clock=$scratch/time
    show_time 08:51
}

# show_time HH:MM: stops the terminal's clock there.
show_time() {
    date --date "$day $1" +%s >"$clock.new"
    mv "$clock.new" "$clock"
}

# at HH:MM: goes on at that time of the day.
at() {
    show_time "$1"
    controller time "$day $1"
}

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

# set_up FIELD VALUE...: settings of the terminal.
set_up() {
    while (($#)); do
        controller settings "$1" "$2"
        shift 2
    done
}

touch_at() { xdotool mousemove "$1" "$2" click 1; }

# Where things are that are touched, in pixels.
middle=(240 500)
banner=(240 52)
call=(88 740)
in_button=(128 462)
out_button=(352 462)
plus=(376 520)
pay=(328 740)
dialog_ok=(240 506)
enrol=(240 740)
forward=(426 36)
add_face=(334 498)
enrolled_ok=(240 483)

# still: whether the screen shows the same twice, a moment apart.
still() {
    mv "$scratch/now.png" "$scratch/before.png" 2>/dev/null || true
    sleep 0.2
    import -silent -window root "$scratch/now.png"
    [[ -f $scratch/before.png ]] && compare -metric AE "$scratch/before.png" "$scratch/now.png" null:
}

steps=0
# keep NAME WHAT: keeps the picture that still has taken.
keep() {
    alive "$terminal" || {
        echo "The terminal has ended." >&2
        exit 1
    }
    steps=$((steps + 1))
    local picture
    picture=$(printf '%s/%02d-%s.png' "$demo" "$steps" "$1")
    mv "$scratch/now.png" "$picture"
    printf '  %-50s %s\n' "$2" "$picture"
}

# step NAME WHAT: a picture of the screen as soon as it rests.
step() {
    rm -f "$scratch/now.png" "$scratch/before.png"
    wait_until "the screen to rest" still
    keep "$@"
}

# glimpse NAME WHAT: a picture of something that is soon over.
glimpse() {
    rm -f "$scratch/now.png" "$scratch/before.png"
    still || true
    keep "$@"
}

tour() {
    wait_until "the terminal's greeting" grep Greeting "$log"
    # Each result stays until the next one takes its place.
    set_up liveSeconds 60 resultSeconds 60 paymentDoneSeconds 60 attendanceDoneSeconds 60
    at 08:51
    step standby "The standby screen, in Korean"
    controller fault touch network
    step faults "Two faults in the self-check"
    touch_at "${middle[@]}"
    step acknowledged "Acknowledged by a touch"

    at 08:52
    touch_at "${middle[@]}"
    step morning "A touch, and the terminal looks for faces"
    controller face 01023456789
    step arrival "Somebody arrives and is recognised"
    touch_at "${in_button[@]}"
    step arrival-recorded "Checked in"
    controller card 10000002
    step card "Somebody else, by card"
    touch_at "${in_button[@]}"
    step card-recorded "Checked in"

    # The same terminal, counting meals.
    set_up setup.operation 2 operation.saveSimpleAccess 0 operation.weekdayIn 07:00~09:00 \
        operation.weekdayOut 11:30~13:30 operation.saturdayIn 17:30~19:30 \
        operation.saturdayOut 22:00~02:00
    at 12:10
    controller live
    step noon "Lunch time"
    controller face 01098765432
    step lunch "Somebody has lunch"
    touch_at "${plus[@]}"
    step lunch-for-two "With a guest"
    touch_at "${pay[@]}"
    step lunch-paid "Paid for both"
    controller face 01098765432
    step lunch-again "Nobody has two lunches"
    controller live
    touch_at "${banner[@]}"
    step meals "Meals so far"
    touch_at 240 540
    at 15:00
    step closed "The canteen has closed"

    set_up setup.operation 1 operation.saveSimpleAccess 1 operation.weekdayIn 08:00~09:30 \
        operation.weekdayOut 17:30~22:00
    at 17:45
    step evening "Time to leave"
    controller face 01023456789
    step leaving "Somebody leaves"
    touch_at "${out_button[@]}"
    step leaving-recorded "Checked out"

    at 18:20
    controller live
    touch_at "${call[@]}"
    step visitor "A visitor, who calls for somebody"
    touch_at "${dialog_ok[@]}"
    controller face unknown
    glimpse unknown "A face that nobody knows"

    at 18:40
    controller live
    touch_at "${enrol[@]}"
    step enrolment "Somebody enrols at the live view"
    touch_at "${forward[@]}"
    step enrolment-card "A card first"
    controller card 30000001
    glimpse enrolment-number "Its number"
    touch_at "${forward[@]}"
    step enrolment-add "The card is stored; the face can be added"
    touch_at "${add_face[@]}"
    step enrolment-face "The terminal looks for the face"
    controller enrol-face good
    glimpse enrolment-progress "And takes it"
    step enrolment-done "Both are stored"
    touch_at "${enrolled_ok[@]}"
    controller live
    step enrolment-over "Back at the door"
    controller face 01090000001
    step enrolment-known "Known at the door from now on"

    at 22:10
    controller alarm arm
    controller card 10000002
    step armed "The last one arms the alarm"
}
