#!/usr/bin/env bash
# Builds the Debian packages in a clean Debian 12 and tries them in another one: lintian, the service
# under systemd, what a purge leaves, and the example of a controller. As root, with
# mmdebstrap, systemd-container, debhelper and lintian installed; some 20 minutes, 5 GB in /var/tmp.
#   tools/package_check.sh               what is committed, built there
#   tools/package_check.sh --assembled   packed from build/release instead
#   tools/package_check.sh --lint        packed from build/release, and lintian; nothing else, by anybody
# DEBIAN_MIRROR names another mirror than Debian's own, ZEL_PACKAGE_CCACHE a folder for a compiler
# cache that lasts.
set -euo pipefail

mirror=${DEBIAN_MIRROR:-http://deb.debian.org/debian}
mode=${1:---clean}
if (($# > 1)) || [[ ! $mode =~ ^--(clean|assembled|lint)$ ]]; then
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
wanted=(dpkg-buildpackage dh lintian)
if [[ $mode != --lint ]]; then
    ((EUID == 0)) || { echo "A container wants root." >&2 && exit 1; }
    wanted+=(mmdebstrap systemd-nspawn)
fi
for command in "${wanted[@]}"; do
    command -v "$command" >/dev/null || { echo "$command is missing." >&2 && exit 1; }
done
cd "$(dirname "$0")/.."

scratch=$(mktemp -d /var/tmp/zel-packages.XXXXXX)
# clean: removes the roots, unless something is still mounted in one of them.
clean() {
    if findmnt --list --noheadings --output TARGET | grep --fixed-strings --quiet "$scratch/"; then
        echo "Something is mounted in $scratch, which therefore stays." >&2
    else
        rm -rf --one-file-system "$scratch"
    fi
}
trap clean EXIT

step() { printf '\n== %s (%d s)\n' "$1" "$SECONDS"; }

# root NAME PACKAGES: a minimal Debian 12 with these packages, comma separated
root() {
    mmdebstrap --quiet --mode=root --variant=minbase --dpkgopt=force-unsafe-io \
        --include="$2" bookworm "$scratch/$1" "$mirror"
    # The container's own service of names is not tried here.
    rm -f "$scratch/$1/etc/resolv.conf"
    echo "nameserver 192.0.2.1" >"$scratch/$1/etc/resolv.conf"
}

# within ROOT OPTIONS... -- COMMAND...: in a container, with the packages for all to see
within() {
    local name=$1 options=()
    shift
    while [[ $1 != -- ]]; do
        options+=("$1")
        shift
    done
    shift
    systemd-nspawn --quiet --register=no --keep-unit --pipe --directory="$scratch/$name" \
        "${options[@]}" -- "$@" </dev/null 2> >(grep -v 'Attempted to remove disk file system' >&2)
}
online=(--resolv-conf=bind-host)
export SYSTEMD_LOG_LEVEL=warning
apt='DEBIAN_FRONTEND=noninteractive apt-get --quiet=2 --yes --no-install-recommends -o Dpkg::Use-Pty=0'

# ---- Build -----------------------------------------------------------------------------------------

packages=$scratch/packages
# or_tell COMMAND...: what it prints is of interest where it fails
or_tell() { "$@" >"$scratch/said" 2>&1 || { tail -n 50 "$scratch/said" >&2 && exit 1; }; }

if [[ $mode == --clean ]]; then
    step "A clean Debian 12 to build in"
    root build build-essential,ca-certificates,ccache
    within build -- useradd --create-home builder
    mkdir "$scratch/build/home/builder/zel-terminal"
    git archive HEAD | tar -x -C "$scratch/build/home/builder/zel-terminal"
    within build "${online[@]}" -- sh -c "cd /home/builder/zel-terminal &&
        $apt update && $apt build-dep . >/dev/null && chown -R builder: /home/builder"

    step "dpkg-buildpackage -us -uc -b, as a user, without a network"
    cache=${ZEL_PACKAGE_CCACHE:-$scratch/ccache}
    mkdir -p "$cache"
    chmod 777 "$cache"
    # shellcheck disable=SC2016
    or_tell within build --private-network --user=builder --bind="$cache:/ccache" -- sh -ec '
        cd ~/zel-terminal
        export CCACHE_DIR=/ccache DEB_BUILD_OPTIONS="parallel=$(nproc) terse"
        dpkg-buildpackage -us -uc -b
        cmake --build obj-package --target zel_trial
        mv obj-package/trial ..'
    grep --fixed-strings 'tests passed' "$scratch/said"
    mv "$scratch/build/home/builder" "$packages"
else
    step "dpkg-buildpackage over build/release"
    mkdir -p "$packages/zel-terminal"
    git archive HEAD | tar -x -C "$packages/zel-terminal"
    or_tell env --chdir="$packages/zel-terminal" BUILD="$PWD/build/release" DEB_BUILD_OPTIONS=nocheck \
        dpkg-buildpackage -us -uc -b -d
    if [[ $mode == --assembled ]]; then
        or_tell cmake --build build/release --target zel_trial
        cp -r build/release/trial "$packages"
    fi
fi
step "lintian"
(cd "$packages" && ls -l ./*.deb)
as=()
((EUID != 0)) || as=(--allow-root)
lintian "${as[@]}" --fail-on error,warning "$packages"/*.changes
echo "silent"
[[ $mode != --lint ]] || exit 0

# ---- Install ---------------------------------------------------------------------------------------

step "A clean Debian 12 to install into"
root try ca-certificates,curl,dbus,iproute2,netcat-openbsd,procps,systemd-sysv,udhcpc,udhcpd,udev
mkdir "$scratch/try/packages"
cp "$packages"/zel-terminal{,-dev,-sim}_*.deb "$scratch/try/packages"
names=(zel-terminal zel-terminal-dev zel-terminal-sim)
# listing: what there is that is neither a package manager's nor a log
listing() {
    (cd "$scratch/try" && find . -xdev \( -path ./packages -o -path ./trial -o -path './var/lib/dpkg' \
        -o -path './var/lib/apt' -o -path './var/cache' -o -path './var/log' -o -path ./tmp \) -prune \
        -o -printf '%p %y %u %g %m %l\n' | sort)
}
# Their dependencies first, so that what is there afterwards is theirs.
within try "${online[@]}" -- sh -ec "$apt update; cd /packages
    for package in *.deb; do $apt satisfy \"\$(dpkg-deb -f \$package Depends)\" >/dev/null; done"
listing >"$scratch/before"
within try --private-network -- sh -ec 'dpkg --install /packages/*.deb >/dev/null; dpkg --audit'

step "The service under systemd"
cp -r "$packages/trial" "$scratch/try/trial"
cp packaging/trial/service.sh "$scratch/try/trial"
mkdir -p "$scratch/try/etc/systemd/system/zel-terminal.service.d"
# There is no display.
cat >"$scratch/try/etc/systemd/system/zel-terminal.service.d/offscreen.conf" <<'END'
[Service]
ExecStart=
ExecStart=/usr/bin/zel-terminal -platform offscreen
END
cat >"$scratch/try/etc/systemd/system/trial.service" <<'END'
[Unit]
Wants=zel-terminal.service
[Service]
Type=oneshot
ExecStart=/bin/sh -c '/trial/service.sh >/trial/log 2>&1; echo $? >/trial/status'
ExecStopPost=systemctl poweroff --no-block
TimeoutStartSec=300
END
# Which devices a service may open is a matter of programs in the kernel.
SYSTEMD_NSPAWN_UNIFIED_HIERARCHY=1 systemd-nspawn --quiet --register=no --keep-unit --private-network \
    --system-call-filter=bpf --console=pipe --boot --directory="$scratch/try" -- systemd.unit=trial.service >"$scratch/boot" 2>&1 </dev/null || true
cat "$scratch/try/trial/log" || tail -n 20 "$scratch/boot"
[[ $(cat "$scratch/try/trial/status") == 0 ]] || exit 1

step "Purge"
rm -r "$scratch"/try/etc/systemd/system/{trial.service,zel-terminal.service.d}
within try --private-network -- sh -ec "dpkg --purge ${names[*]} >/dev/null; dpkg --audit"
listing >"$scratch/after"
# Data and user stay, and what systemd notes down of a machine that it has booted.
left=$(diff "$scratch/before" "$scratch/after" | sed -n 's/^[<>] //p' |
    grep -vE '^\./(mnt/data|etc/(passwd|group|shadow|gshadow|subuid|subgid)-?|var/lib/systemd|var/lib/dbus/machine-id)[ /]') || true
[[ -z $left ]] || { printf 'It leaves, or has changed:\n%s\n' "$left" && exit 1; }
echo "nothing is left but data and user"

step "The example controller against the development package"
within try "${online[@]}" -- sh -ec "$apt install cmake g++ make pkg-config >/dev/null"
within try --private-network -- sh -ec 'dpkg --install /packages/zel-terminal_*.deb /packages/zel-terminal-dev_*.deb >/dev/null'
# As docs/integrating.md has it, but that there is no display.
# shellcheck disable=SC2016
within try --private-network -- su nobody --shell=/bin/sh --command='set -e
    cd "$(mktemp --directory)"
    example=/usr/share/doc/zel-terminal-dev/examples/controller
    cp -r $example my-controller && cd my-controller
    cmake -B build >/dev/null && cmake --build build >/dev/null
    g++ -std=c++17 -fPIC -Wall -Wextra -Werror main.cpp $(pkg-config --cflags --libs zel-terminal-link) -o by-hand
    build/example-controller 15150 >said & controller=$!
    export ZEL_ROOT=$(mktemp --directory) XDG_RUNTIME_DIR=$(mktemp --directory)
    cp -r /zel1 $ZEL_ROOT && mkdir -p $ZEL_ROOT/mnt/data/Images $ZEL_ROOT/usr/img $ZEL_ROOT/usr/lib/fonts
    ZEL_REST_PORT=8080 zel-terminal -platform offscreen & terminal=$!
    for _ in $(seq 600); do grep -q DoorOpened said && break; sleep 0.1; done
    kill $terminal $controller
    grep -e Greeting -e Recognised said
    grep DoorOpened said'
step "Done"
