"""Tortures a built terminal, and counts what is lost.

Each trial prints one line: how often it has tried, and what of that was lost. A loss leaves its
folder behind, with the log of the programs. All runs as an unprivileged user (nobody, where root
starts it), in a mount namespace of its own, with copies of the programs, in folders made for it.
"""

import argparse
import contextlib
import ctypes
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # nothing is left beside the sources
import trials  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
INSIDE = "ZEL_TORTURE_INSIDE"
PYTHON = "/usr/bin/python3"  # which everybody may run
NEEDS = {"disk": "mounts", "power": "disks"}
DISK = 64  # megabytes of a disk that loses its power
CLONE_NEWNS = 0x20000
PROGRAMS = ("zel-terminal", "zel-controller-sim", "zel-device-clock.so")


def options():
    arguments = argparse.ArgumentParser(prog="torture", description=__doc__)
    arguments.add_argument("--quick", action="store_true", help="each trial a few times: a minute")
    arguments.add_argument("--tries", type=int, help="of each trial, whatever its own number is")
    arguments.add_argument("--lanes", type=int, default=4, help="terminals at a time")
    arguments.add_argument("--seed", default=str(int(time.time())), help="of what is random")
    arguments.add_argument("--build", type=pathlib.Path, default=HERE.parents[1] / "build/release",
                           help="where it was built")
    arguments.add_argument("trials", nargs="*", choices=[[], *trials.TRIALS],
                           help=", ".join(trials.TRIALS))
    return arguments.parse_args()


@contextlib.contextmanager
def disks(folder, lanes):
    """Files in a folder that are disks, each mounted beside itself where nobody else sees it. Gives
    whether they are there: only root may have them, and not everywhere."""
    folder.mkdir()
    mounted = []
    try:
        # A mount namespace of this process and its children.
        if os.geteuid() == 0 and ctypes.CDLL(None).unshare(CLONE_NEWNS) == 0:
            subprocess.run(["mount", "--make-rprivate", "/"], check=True)
            for lane in range(lanes):
                image, place = folder / f"{lane}.img", folder / str(lane)
                image.touch()
                os.truncate(image, DISK << 20)
                place.mkdir()
                subprocess.run(["mkfs.ext4", "-q", "-E", "root_owner=65534:65534", image],
                               check=True)
                if subprocess.run(["mount", "-o", "loop", image, place], check=False).returncode:
                    break
                mounted.append(place)
        yield len(mounted) == lanes
    finally:
        for place in mounted:
            subprocess.run(["umount", "--lazy", place], check=True)


def run_inside(given):
    """Begins anew as nobody in particular, who may mount where nobody else sees it."""
    with tempfile.TemporaryDirectory(prefix="torture-") as folder, \
            disks(pathlib.Path(folder, "disks"), given.lanes) as have_disks:
        copy = pathlib.Path(folder)
        (copy / "bin").mkdir()
        for program in PROGRAMS:
            shutil.copy(given.build / "bin" / program, copy / "bin")
        shutil.copytree(given.build / "stage", copy / "stage")
        shutil.copytree(HERE, copy / "torture")
        subprocess.run(["chmod", "-R", "a+rX", folder], check=True)
        user = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"]
        inside = user if os.geteuid() == 0 else []
        namespace = [*inside, "unshare", "--user", "--map-root-user", "--mount"]
        mounts = subprocess.run([*namespace, "true"], check=False).returncode == 0
        able = ["mounts"] * mounts + ["disks"] * (mounts and have_disks)
        return subprocess.run(
            [*(namespace if mounts else inside), PYTHON, copy / "torture", *sys.argv[1:], "--build",
             folder], cwd="/", check=False,
            env=os.environ | {INSIDE: " ".join(able)}).returncode


def main():
    given = options()
    if INSIDE not in os.environ:
        return run_inside(given)
    print("seed", given.seed, flush=True)
    good = True
    for name in given.trials or trials.TRIALS:
        if NEEDS.get(name, "") not in os.environ[INSIDE]:
            print(f"{name}: not tried, since this cannot have {NEEDS[name]} here", flush=True)
            continue
        good &= trials.run(name, given)
    return 0 if good else 1


sys.exit(main())
