#!/usr/bin/env bash
# Fuzzes the parsers of what comes from outside, one after the other, with libFuzzer under asan and
# ubsan (Debian's clang and libclang-rt-14-dev).
#   tools/fuzz.sh MINUTES [TARGET...]   each target, or those named, for so many minutes of the
#                                       processor, which on a busy machine take longer
# Inputs that reached something new are kept in build/fuzz/corpus/TARGET and gone on from, findings in
# build/fuzz/findings; build/fuzz/tests/TARGET FILE runs one again. Exits with 1 when there are any.
#
# What is fuzzed deletes and writes files and calls addresses that the inputs choose, so it runs in a
# folder made for it, without a network, and as nobody when root starts it. With FUZZ_BUILT set nothing
# is built before.
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ ! ${1:-} =~ ^[0-9]+$ ]]; then
    sed -n 's/^# \{0,1\}//p' "$0" | sed -n 2,5p >&2
    exit 2
fi
seconds=$(($1 * 60))
shift
readonly most_findings=10
root=$PWD

[[ -n ${FUZZ_BUILT:-} ]] || {
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz --parallel 2
}
targets=("$@")
(($#)) || mapfile -t targets < <(sed -n 's/^zel_add_fuzz_target(\([a-z_]*\) .*/\1/p' tests/CMakeLists.txt)

work=$(mktemp -d)
# What has been found so far is kept also when the run is ended before its time.
keep() {
    [[ -d $work/${target:-.}/corpus ]] || return 0
    cp -rT "$work/$target/corpus" "build/fuzz/corpus/$target"
    for finding in "$work/$target"/findings/*; do
        [[ ! -e $finding ]] || cp "$finding" "build/fuzz/findings/$target-${finding##*/}"
    done
    [[ ! -e $work/$target/log ]] || cp "$work/$target/log" "build/fuzz/findings/$target.log"
}
trap 'keep; rm -rf "$work"' EXIT
mkdir -p build/fuzz/corpus build/fuzz/findings
mkdir -m 700 "$work/tmp"
unprivileged=()
if ((EUID == 0)); then
    unprivileged=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
fi

# Everything in namespaces of its own: processes that a target starts end with it, and there is
# nothing but loopback.
inside=(unshare --user --map-root-user --net --pid --fork --kill-child --mount-proc
    sh -c 'ip link set lo up && exec "$@"' sh)

export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TZ=Asia/Seoul TMPDIR=$work/tmp HOME=$work
export XDG_RUNTIME_DIR=$work/tmp UBSAN_OPTIONS=print_stacktrace=1 FUZZ_COUNT=$work/count
export LSAN_OPTIONS="suppressions='$root/tests/lsan.supp':print_suppressions=0"
# What starts a thread or keeps caches for each input is not searched for leaks after each; memory
# that adds up ends the run all the same.
declare -A leaks=([screens_fuzz]=0 [usb_names_fuzz]=0 [service_answers_fuzz]=0)
# Streams are as long as that from the beginning.
declare -A streams=([frame_parser_fuzz]=8192 [face_search_fuzz]=8192)

# Seconds of the processor that what was started here has taken so far.
processor() {
    awk -v hertz="$(getconf CLK_TCK)" '{ print int(($16 + $17) / hertz) }' "/proc/$$/stat"
}

printf '%-22s %12s %14s %8s\n' target executions bytes findings
failed=0
for target in "${targets[@]}"; do
    mkdir -p "$work/$target"/{corpus,seeds,findings} "build/fuzz/corpus/$target"
    cp -rT "build/fuzz/corpus/$target" "$work/$target/corpus"
    cp -rT "tests/fuzz/corpus/$target" "$work/$target/seeds"
    options=(-timeout=120 -report_slow_units=120 -rss_limit_mb=4096 -malloc_limit_mb=256 -artifact_prefix=findings/
        "-max_len=${streams[$target]:-4096}")
    [[ -z ${streams[$target]:-} ]] || options+=(-len_control=0)
    [[ ! -e tests/fuzz/$target.dict ]] || options+=("-dict=$root/tests/fuzz/$target.dict")
    rm -f "$FUZZ_COUNT"
    ((EUID != 0)) || chown -R nobody:nogroup "$work"
    export ASAN_OPTIONS=malloc_context_size=8:detect_leaks=${leaks[$target]:-1}
    found=0
    end=$(($(processor) + seconds))
    # The limit's end is a SIGKILL, the only signal that the first process of a namespace heeds.
    while left=$((end - $(processor))) && ((found < most_findings && left > 0)); do
        (cd "$work/$target" && nice -n 19 "${unprivileged[@]}" "${inside[@]}" \
            prlimit --cpu="$left" "$root/build/fuzz/tests/$target" "${options[@]}" \
            corpus seeds) >>"$work/$target/log" 2>&1 || true
        now=$(find "$work/$target/findings" -type f | wc -l)
        ((now > found)) || break
        found=$now
    done
    keep
    read -r executions bytes < <(od -An -v -w16 -t u8 "$FUZZ_COUNT" 2>/dev/null) || executions=0 bytes=0
    printf '%-22s %12s %14s %8s\n' "$target" "$executions" "$bytes" "$found"
    # One that has not run at all has found nothing out either.
    if ((found > 0 || executions == 0)); then
        failed=1
        tail -n 30 "$work/$target/log" >&2
    fi
done
exit "$failed"
