#!/usr/bin/env bash
# Builds the terminal for a board's architecture and tries it here.
#   tools/cross.sh armhf|arm64 [FOLDER]
# As root. Compiler and libraries are in a Debian 12 root of their own, FOLDER/ARCH (build/cross/ARCH
# without one), which takes 2 GB, is made when it is not there and may be removed at any time. It is
# made from this machine's Debian mirror; ZEL_MIRROR names another one. What is built is in
# build/ARCH. It runs in that root under qemu, against the simulated controller of this machine:
# the tests of what the architecture may change, then the program itself (tools/cross_trial.py).
set -euo pipefail

declare -A compilers=([armhf]=g++-arm-linux-gnueabihf [arm64]=g++-aarch64-linux-gnu)
declare -A emulators=([armhf]=qemu-arm-static [arm64]=qemu-aarch64-static)
arch=${1:-}
if [[ -z $arch || -z ${compilers[$arch]:-} || $# -gt 2 ]]; then
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
((EUID == 0)) || {
    echo "Making and entering a root takes root's rights." >&2
    exit 1
}
folder=$(realpath --canonicalize-missing "${2:-$(dirname "$0")/../build/cross}")
cd "$(dirname "$(realpath "$0")")/.."
. tools/run_processes.sh
hold "build/$arch.cross"

tests=(device_link_test records_test script_handler_test time_range_test cloud_rest_server_test)
programs=(zel-terminal blank_window terminal_first_frame)

# ---- The root ------------------------------------------------------------------------------------

root=$folder/$arch
packages=(ccache cmake "${compilers[$arch]}" fonts-noto-core fonts-noto-cjk fonts-noto-cjk-extra
    imagemagick librsvg2-bin ninja-build pkg-config python3 python3-fonttools qemu-user-static tzdata
    {libbenchmark-dev,libhangul-dev,libpistache-dev,libsqlite3-dev,qtbase5-dev}:"$arch")
include=$(IFS=,; echo "${packages[*]}")
# One that was made for other packages is made anew.
if [[ ! -d $root || $(cat "$root.packages" 2>/dev/null) != "$include" ]]; then
    command -v mmdebstrap >/dev/null || {
        echo "Debian's package mmdebstrap is missing." >&2
        exit 1
    }
    echo "Making the root $root"
    mkdir -p "$folder"
    # What was not made here is not removed.
    for old in "$root" "$root.new"; do
        [[ ! -e $old || -e $root.packages ]] || {
            echo "$old is there and not of this script." >&2
            exit 1
        }
    done
    echo >"$root.packages"
    rm -rf --one-file-system "$root" "$root.new"
    mirror=${ZEL_MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' \
        'Component: main' 'Identifier: Packages' | head -n 1)}
    # What it mounts on the way is in a namespace of its own: nothing is left behind, whatever happens.
    unshare --mount --propagation private -- mmdebstrap --quiet --variant=minbase --mode=root \
        --architectures="amd64,$arch" --include="$include" \
        bookworm "$root.new" ${mirror:+"$mirror"} || {
        rm -rf --one-file-system "$root.new"
        exit 1
    }
    mv "$root.new" "$root"
    echo "$include" >"$root.packages"
fi

# inside COMMAND...: in the root, where these sources lie as they do here, read-only but for what is
# built. The mounts are gone with the command.
here=$PWD
cache=${CCACHE_DIR:-$HOME/.cache/ccache}
inside() {
    mkdir -p "build/$arch" "$cache" "$root$here" "$root/ccache"
    unshare --mount --propagation private -- bash -euo pipefail -c '
        root=$1 here=$2 build=$3 cache=$4
        shift 4
        mount --bind "$here" "$root$here"
        mount --options remount,bind,ro "$root$here"
        mount --bind "$build" "$root$build"
        mount --bind "$cache" "$root/ccache"
        mount --types proc proc "$root/proc"
        exec chroot "$root" env --chdir="$here" CCACHE_DIR=/ccache LC_ALL=C.UTF-8 TZ=Asia/Seoul "$@"
        ' bash "$root" "$here" "$here/build/$arch" "$cache" "$@"
}

# ---- Build and tests -----------------------------------------------------------------------------

tools/install_packages.sh
[[ -f build/release/build.ninja ]] || cmake --preset release
cmake --build --preset release --parallel "$(nproc)" --target zel-controller-sim
inside cmake --preset "$arch"
inside cmake --build --preset "$arch" --parallel "$(nproc)" --target "${programs[@]}" "${tests[@]}" zel_data
inside ctest --test-dir "build/$arch" --output-on-failure --no-tests=error \
    --tests-regex "^($(IFS='|'; echo "${tests[*]}"))\$"

# ---- The program ---------------------------------------------------------------------------------

echo "Laying the device root"
trial=build/$arch/root
rm -rf "$trial"
inside env DESTDIR="$here/$trial" cmake --install "build/$arch" >"$scratch/install.log" || {
    cat "$scratch/install.log" >&2
    exit 1
}
mkdir -p "$trial"/mnt/data/{Images,input,user,thumb} "$trial"/usr/{img,lib/fonts}

free_port 15150
export ZEL_ROOT=$here/$trial ZEL_LINK_PORT=$port
free_port 15151
control_port=$port
free_port 8080
export ZEL_REST_PORT=$port
start build/release/bin/zel-controller-sim --control "$control_port" >"$scratch/controller.log" 2>&1
inside env XDG_RUNTIME_DIR=/run tools/cross_trial.py "${emulators[$arch]}" "build/$arch" "$control_port" || {
    cat "$scratch/controller.log" >&2
    exit 1
}
