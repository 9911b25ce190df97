#!/usr/bin/env bash
# Installs the Debian packages of packages.txt that are missing; does nothing when all are there.
set -euo pipefail

mapfile -t wanted < <(sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$(dirname "$0")/packages.txt")
# Another package may provide one of them, as that of a newer nodejs does with npm.
installed=$(dpkg-query --show --showformat='${db:Status-Abbrev} ${Package}, ${Provides}\n' |
    sed -n 's/^ii  *//p' | tr ',' '\n' | sed -e 's/(.*//' -e 's/ //g')
mapfile -t missing < <(comm -23 <(printf '%s\n' "${wanted[@]}" | sort -u) <(sort -u <<<"$installed"))
((${#missing[@]})) || exit 0

as_root=(env DEBIAN_FRONTEND=noninteractive)
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "These Debian packages are missing, and there is no sudo to install them with. As root:" >&2
        echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo "${as_root[@]}")
fi

echo "Installing ${#missing[@]} Debian packages: ${missing[*]}"
# Waits for another package manager at work (a fresh machine updates itself) rather than failing.
apt=("${as_root[@]}" apt-get --quiet --yes -o DPkg::Lock::Timeout=300)
"${apt[@]}" update
"${apt[@]}" install --no-install-recommends "${missing[@]}"
