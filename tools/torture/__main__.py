"""Tortures a built terminal, and counts what is lost.

Each trial prints one line: how often it tried, and what of that was lost. What has lost something
keeps its folder, with the log of its programs. All runs as an unprivileged user, in a mount
namespace of its own, in folders made for it: nobody, where root starts it.
"""

import argparse
import os
import pathlib
import sys
import time

import trials

INSIDE = "ZEL_TORTURE_INSIDE"
PYTHON = "/usr/bin/python3"  # which everybody may run


def go_inside():
    """Begins anew as nobody in particular, who may mount where nobody else sees it."""
    inside = ["unshare", "--user", "--map-root-user", "--mount", PYTHON, *sys.argv]
    if os.geteuid() == 0:
        inside = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", *inside]
    os.execvpe(inside[0], inside, os.environ | {INSIDE: "1", "PYTHONDONTWRITEBYTECODE": "1"})


def main():
    arguments = argparse.ArgumentParser(prog="torture", description=__doc__)
    arguments.add_argument("--quick", action="store_true", help="each trial a few times, a minute")
    arguments.add_argument("--tries", type=int, help="of each trial, whatever its own number is")
    arguments.add_argument("--lanes", type=int, default=4, help="terminals at a time")
    arguments.add_argument("--seed", default=str(int(time.time())), help="of what is random")
    arguments.add_argument("--build", type=pathlib.Path, help="where it was built",
                           default=pathlib.Path(__file__).resolve().parents[2] / "build/release")
    arguments.add_argument("trials", nargs="*", choices=[[], *trials.TRIALS],
                           help=", ".join(trials.TRIALS))
    given = arguments.parse_args()
    if INSIDE not in os.environ:
        go_inside()
    print("seed", given.seed, flush=True)
    names = given.trials or trials.TRIALS
    good = [trials.run(name, given.build.resolve(), given.seed, given.lanes, given.quick,
                       given.tries)
            for name in names]
    return 0 if all(good) else 1


sys.exit(main())
