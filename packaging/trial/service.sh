#!/usr/bin/env bash
# Tries the packaged terminal as a service. Runs inside a container that systemd has booted and that
# is made for it, with the trial's own programs in /trial; tools/package_check.sh does all that.
# One line for each thing that was tried; what failed says why.
set -uo pipefail

unit=zel-terminal.service
status=0
# try NAME COMMAND...
try() {
    local name=$1 said
    shift
    if said=$("$@" 2>&1); then
        printf 'ok      %s%s\n' "$name" "${said:+: $said}"
    else
        printf 'FAILED  %s: %s\n' "$name" "$said"
        status=1
    fi
}

property() { systemctl show --value --property "$1" "$unit"; }
logged() { journalctl --quiet --unit "$unit" --output cat --grep "$1" >/dev/null; }
# within SECONDS COMMAND...: until it succeeds
within() {
    local end=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < end)) || { echo "not in time: $*" && return 1; }
        sleep 0.1
    done
}
# active [PID]: whether one is up, and another than that
active() {
    local now
    now=$(systemctl show --property ActiveState,MainPID "$unit" | sort | xargs)
    [[ $now == 'ActiveState=active MainPID='[1-9]* && $now != *"=${1:-none}" ]]
}
words() { printf '%s\n' "$@" | nc -N 127.0.0.1 15151; }

# ---- It starts, and does what it is there for -------------------------------------------------

starts_alone() { within 30 active && [[ $(property NRestarts) == 0 ]]; }

connects() {
    systemd-run --quiet --unit controller --uid zel zel-controller-sim </dev/null
    within 30 logged 'connected to the device controller'
}

serves_port_80() {
    local version
    version=$(dpkg-query --show --showformat '${Version}' zel-terminal)
    curl --silent --max-time 10 -d '' http://127.0.0.1/cloud-service/rest-api/device-status.do |
        grep --fixed-strings "\"$version\"" >/dev/null && echo "version $version"
}

# Until the settings that allow it have arrived the order is refused.
order_user() {
    curl --silent --max-time 10 http://127.0.0.1/cloud-service/rest-api/user-data-send.do -d \
        '{"userInfo":{"cardInfo":{"cardNo":"12345678"},"user":{"name":"Kim"},"authType":"2","userLevel":"1",
          "registTime":"2031-12-24 10:00:00","faceVisible":{"visImg":""}}}' | grep 1000
}
stored() { words users | grep 12345678; }
stores_a_user() {
    words 'settings managerControl 1' >/dev/null
    within 30 order_user && within 30 stored
}

links_pictures_and_fonts() {
    local pictures fonts
    pictures=$(find /usr/img -maxdepth 1 -lname '/zel1/*' | wc -l)
    fonts=$(find /usr/lib/fonts -lname '/zel1/*' | wc -l)
    echo "$pictures pictures, $fonts fonts"
    ((pictures > 100 && fonts == 5)) && ! logged 'cannot be had'
}

# ---- Whose it is, and what it may ----------------------------------------------------------------

runs_as_its_own_user() {
    local pid capabilities
    pid=$(property MainPID)
    capabilities=$(sed -n 's/^CapEff:\t//p' "/proc/$pid/status")
    echo "$(ps -o user= "$pid"), capabilities $capabilities"
    # CAP_NET_BIND_SERVICE, CAP_NET_ADMIN, CAP_NET_RAW
    [[ $(ps -o user= "$pid") == zel && $((16#$capabilities)) == $((1 << 10 | 1 << 12 | 1 << 13)) ]]
}

# inside COMMAND...: in a service of the same rights
inside() {
    mkdir -p /run/systemd/system/probe.service.d
    sed -e '/^Exec/d' -e '/^Watchdog/d' -e '/^Restart/d' -e '/^Type/d' -e '/^NotifyAccess/d' \
        "/lib/systemd/system/$unit" >/run/systemd/system/probe.service
    printf '[Service]\nType=oneshot\nExecStart=%s\n' "$*" >/run/systemd/system/probe.service.d/probe.conf
    systemctl daemon-reload
    systemctl start probe.service || {
        journalctl --quiet --unit probe.service --output cat --lines 5
        return 1
    }
}

pings() { inside /usr/bin/ping -q -c 1 -W 5 127.0.0.1; }

takes_an_address() {
    inside /trial/network_change 10.9.8.7 255.255.255.0 10.9.8.1 10.9.8.2 || return 1
    ip -brief -4 address show dev eth0 | grep --fixed-strings ' 10.9.8.7/24' &&
        ip route show default | grep --fixed-strings 'via 10.9.8.1' &&
        grep --line-regexp 'nameserver 10.9.8.2' /etc/resolv.conf
}

takes_one_by_dhcp() {
    cat >/run/udhcpd.conf <<'END'
start 10.7.0.10
end 10.7.0.20
interface cable
lease_file /run/udhcpd.leases
pidfile /run/udhcpd.pid
option subnet 255.255.255.0
option router 10.7.0.1
option dns 10.7.0.2
END
    touch /run/udhcpd.leases
    udhcpd -S /run/udhcpd.conf
    inside /trial/network_change dhcp || return 1
    kill "$(cat /run/udhcpd.pid)"
    journalctl --quiet --boot --unit probe.service --output cat --grep 'ended with|could not'
    ip -brief -4 address show dev eth0 | grep --fixed-strings ' 10.7.0.1' &&
        grep --line-regexp 'nameserver 10.7.0.2' /etc/resolv.conf
}

writes_nowhere_else() {
    local folder
    for folder in /etc /usr/bin /usr/lib /zel1 /zel1/script /home /root /boot /var/lib; do
        ! inside /usr/bin/touch "$folder/zel-trial" >/dev/null 2>&1 || { echo "$folder" && return 1; }
    done
    for folder in /mnt/data /usr/img /usr/lib/fonts /zel1/image/img/fonts /var/lib/zel-terminal; do
        inside /usr/bin/touch "$folder/zel-trial" || return 1
        rm "$folder/zel-trial"
    done
}

# A panel that is not there can be opened as far as the service is concerned, any other device cannot.
opens_the_panel() {
    mkdir -p /dev/input
    mknod -m 660 /dev/input/event0 c 13 64
    chgrp input /dev/input/event0
    mknod -m 666 /dev/other c 10 1
    [[ $(inside /usr/bin/dd if=/dev/input/event0 2>&1) == *'No such device'* ]] || return 1
    [[ $(inside /usr/bin/dd if=/dev/other 2>&1) == *'Operation not permitted'* ]]
}

is_closed() {
    local exposure
    exposure=$(systemd-analyze security --no-pager "$unit" | sed -n 's/.*exposure level.*: \([0-9.]*\).*/\1/p')
    echo "exposure $exposure"
    ((${exposure/./} <= 40))
}

# udev is shown a touch panel in a file system of its own, and tells what it would do with it.
touch_panel_rule() {
    local sys=/run/trial-sys panel said
    panel=$sys/devices/virtual/input/input7
    mkdir -p "$panel"/{event3,capabilities} "$sys/class/input"
    printf 'PROP=2\nEV=b\nKEY=400 0 0 0 0 0\nABS=260800000000003\n' >"$panel/uevent"
    echo b >"$panel/capabilities/ev"
    echo 400 0 0 0 0 0 >"$panel/capabilities/key"
    echo 260800000000003 >"$panel/capabilities/abs"
    echo 2 >"$panel/properties"
    printf 'MAJOR=13\nMINOR=67\nDEVNAME=input/event3\n' >"$panel/event3/uevent"
    ln -s ../../../../../class/input "$panel/event3/subsystem"
    ln -s ../../../../class/input "$panel/subsystem"
    ln -s ../../devices/virtual/input/input7/event3 "$sys/class/input/event3"
    said=$(unshare --mount sh -c "mount --bind $sys /sys
        SYSTEMD_DEVICE_VERIFY_SYSFS=0 udevadm test /sys/class/input/event3" 2>&1)
    said=$(sed -n 's/.*70-zel-terminal.rules:[0-9]* //p' <<<"$said" | xargs)
    echo "$said"
    [[ $said == "GROUP $(getent group input | cut -d: -f3) MODE 0660 LINK input/touchpanel" ]]
}

# ---- What becomes of it --------------------------------------------------------------------------

log_has_priorities() {
    local counts
    warned() { journalctl --quiet --unit "$unit" --priority 4..4 --output cat --grep '^zel\..*holds no user'; }
    install -d -o zel -g zel /mnt/data/Images/311224100000000_add_87654321
    systemctl restart "$unit"
    within 30 warned || return 1
    counts=$(journalctl --quiet --unit "$unit" _COMM=zel-terminal --output json |
        sed -n 's/.*"PRIORITY":"\([0-9]\)".*/\1/p' | sort | uniq -c | xargs)
    echo "lines by priority: $counts"
    journalctl --quiet --unit "$unit" --priority 6..6 --output cat --grep '^zel.link: connected' >/dev/null
}

# comes_back COMMAND...: how long after the command, which gets the process's number, a new one is up
comes_back() {
    local pid begin
    pid=$(property MainPID)
    begin=$(date +%s%N)
    "$@" "$pid"
    within 30 active "$pid" || return 1
    local took=$((($(date +%s%N) - begin) / 1000000))
    echo "back after $took ms"
    ((took < 10000))
}

end_by_link() { words quit-gui >/dev/null; }

blocks_its_gui_thread() {
    printf '[Service]\nEnvironment=LD_PRELOAD=/trial/libblocked_gui.so\n' \
        >/etc/systemd/system/zel-terminal.service.d/blocked.conf
    systemctl daemon-reload && systemctl restart "$unit" && comes_back kill -USR1
}

ends_in_order() {
    systemctl stop "$unit"
    echo "$(property Result), status $(property ExecMainStatus)"
    [[ $(property Result) == success && $(property ExecMainStatus) == 0 ]]
}

# A veth pair whose other end is the network's.
ip link add eth0 type veth peer name cable
ip link set eth0 up
ip link set cable up
ip address add 10.7.0.1/24 dev cable

try "starts without a controller" starts_alone
try "connects when there is one" connects
try "serves port 80" serves_port_80
try "stores a user that the service orders" stores_a_user
try "links pictures and fonts" links_pictures_and_fonts
try "runs as its own user" runs_as_its_own_user
try "pings" pings
try "takes an address and a name server" takes_an_address
try "takes an address by DHCP" takes_one_by_dhcp
try "writes nowhere else" writes_nowhere_else
try "opens the panel and no other device" opens_the_panel
try "is closed" is_closed
try "is given the touch panel by udev" touch_panel_rule
try "comes back after SIGKILL" comes_back kill -KILL
try "comes back after SIGSTOP" comes_back kill -STOP
try "comes back after its GUI thread was blocked" blocks_its_gui_thread
try "comes back when the controller ends it" comes_back end_by_link
try "logs with priorities" log_has_priorities
try "ends in order" ends_in_order
exit $status
