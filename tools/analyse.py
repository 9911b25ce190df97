#!/usr/bin/python3
"""clang-tidy over the product's sources, each again only when something that it reads has changed.

usage: tools/analyse.py [--all] BUILD

BUILD is a configured and built tree. What a file was analysed with (its own text, the headers that
the compiler found for it, the checks and their version) is kept as one stamp a file in BUILD/tidy;
a stamp is written when nothing was found. --all analyses every file. Exit status: 0 clean, 1 not.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

PRODUCT = ("app", "base", "cloud", "link", "screens", "ui")


def includes_of_objects(build):
    """What the build read for each object file, system headers left out: {object: [path]}."""
    found, current = {}, None
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, text=True,
                             capture_output=True).stdout
    for line in listing.splitlines():
        if not line.startswith(" "):
            current = found.setdefault(line.split(":")[0], []) if line else None
        elif current is not None and not line.strip().startswith("/usr/") and "cmake_pch" not in line:
            current.append(build / line.strip())
    return found


class Digests:
    """The digest of each file's content, read once."""

    def __init__(self):
        self.known = {}

    def of(self, path):
        path = os.path.normpath(path)
        if path not in self.known:
            try:
                self.known[path] = hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()
            except OSError:
                self.known[path] = "missing"
        return self.known[path]


def compile_commands(build, folder):
    """The product's entries, without the compiler's precompiled headers, which clang cannot read."""
    entries = []
    for entry in json.loads((build / "compile_commands.json").read_text()):
        relative = os.path.relpath(entry["file"], folder)
        if not relative.startswith(tuple(part + "/" for part in PRODUCT)):
            continue
        command = re.sub(r" (-Winvalid-pch|-fpch-preprocess|-include \S*cmake_pch\.hxx)", "",
                         entry["command"])
        entries.append({**entry, "command": command, "relative": relative,
                        "object": re.search(r" -o (\S+)", command)[1]})
    return entries


def main():
    arguments = sys.argv[1:]
    everything = "--all" in arguments
    arguments = [argument for argument in arguments if argument != "--all"]
    if len(arguments) != 1:
        sys.exit(__doc__)
    folder = pathlib.Path(__file__).resolve().parent.parent
    build = pathlib.Path(arguments[0]).resolve()
    stamps = build / "tidy"
    stamps.mkdir(exist_ok=True)

    entries = compile_commands(build, folder)
    # Nothing but the keys that clang knows: over another it would silently take BUILD's own list.
    (stamps / "compile_commands.json").write_text(json.dumps(
        [{key: entry[key] for key in ("directory", "command", "file")} for entry in entries]))
    read_by = includes_of_objects(build)
    digests = Digests()
    tool = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True).stdout
    common = hashlib.sha256(tool + (folder / ".clang-tidy").read_bytes())

    # A file that is built into several programs is analysed once, as the one that has been built.
    entries.sort(key=lambda entry: entry["object"] not in read_by)
    entries = list({entry["relative"]: entry for entry in reversed(entries)}.values())

    waiting = []
    for entry in entries:
        key = common.copy()
        key.update(entry["command"].encode())
        inputs = read_by.get(entry["object"], [])
        for path in [entry["file"], *inputs]:
            key.update(digests.of(path).encode())
        stamp = stamps / (entry["relative"].replace("/", "~") + ".stamp")
        digest = key.hexdigest()
        if everything or not inputs or not stamp.exists() or stamp.read_text() != digest:
            waiting.append((entry["file"], stamp, digest))

    def analyse(file, stamp, digest):
        run = subprocess.run(["clang-tidy", "-p", stamps, "--quiet", file], text=True,
                             capture_output=True)
        if run.returncode == 0:
            stamp.write_text(digest)
        else:
            stamp.unlink(missing_ok=True)
            sys.stdout.write(run.stdout + "".join(
                line for line in run.stderr.splitlines(True) if "warnings generated" not in line))
        return run.returncode == 0

    print(f"{len(waiting)} of {len(entries)} files to analyse", flush=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        clean = list(pool.map(lambda job: analyse(*job), waiting))
    sys.exit(0 if all(clean) else 1)


if __name__ == "__main__":
    main()
