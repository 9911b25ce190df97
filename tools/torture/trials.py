"""The trials. Each gives how often it has tried and what was lost."""

import contextlib
import ctypes
import os
import pathlib
import random
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

from client import post, SUCCEED
from service import FIRMWARE, MOODS, Service, firmware as firmware_at
from stand import Stand, until

RECONNECTED = 20  # seconds; the terminal tries every five
MOUNT_READ_ONLY, MOUNT_REMOUNT, MOUNT_BIND = 1, 32, 4096
# Folders of a device that the controller writes, too.
OTHERS = ("db_user2", "sim", "user", "thumb")
NOISE = bytes.fromhex("c500c5c50102c502c1070000fffffe") + b"noise" * 100


class Trial:
    """What a trial is given: the build, a seed, and how often it is to try, which is its share of
    the tries of all lanes."""

    def __init__(self, build, seed, tries, lane, lanes, quick):
        self.build, self.seed, self.quick = build, f"{seed} {lane}", quick
        self.tries, self.lane, self.lanes = tries // lanes + (lane < tries % lanes), lane, lanes
        self.random = random.Random(self.seed)
        self.done, self.orders, self.refused, self.repetitions, self.losses = 0, 0, 0, 0, []

    @contextlib.contextmanager
    def stand(self, **arguments):
        stand = Stand(self.build, self.seed, **arguments)
        try:
            yield stand
        except Exception as error:  # a stand that fails proves nothing
            stand.loss(f"{type(error).__name__}: {error}")
        finally:
            stand.end()
            self.orders += stand.orders()
            self.refused += stand.refused()
            self.repetitions += stand.repetitions
            self.losses += [f"{loss} ({stand.root})" for loss in stand.losses]

    def rounds(self, stand):
        """As many as there are to be, while nothing is lost."""
        while self.done < self.tries and not stand.losses:
            yield
            self.done += 1

    def turn(self, kinds):
        """Each of the kinds in turn, over all lanes."""
        return kinds[(self.lane + self.done * self.lanes) % len(kinds)]

    def moment(self, *spans):
        """A while of a random one of the spans, in seconds."""
        time.sleep(self.random.uniform(*self.random.choice(spans)))


def kill(trial):
    """kill -9 at random moments, while orders come in and the controller answers."""
    # Before the first look at the disk, while orders are on their way, and once some have settled.
    spans = [(0.1, 2)] * 8 + [(2, 4.5)] * 9 + [(5, 9)] * 3
    with trial.stand() as stand:
        stand.go()
        for _ in trial.rounds(stand):
            stand.start_terminal()
            trial.moment(*spans)
            stand.kill()
            stand.hold()
            stand.check_kept()
            stand.go()
        stand.finish()


def managed_by(peer):
    """The settings of a terminal that is to call a service."""
    return [f"settings network.{field}" for field in (
        "own.managerAddress 127.0.0.1", f"own.managerPort {peer.port}", "connectPeriod 1",
        "checkPeriod 1", "useManager 1")]


def firmware(trial):
    """kill -9 while new firmware is ordered, fetched and handed over."""
    peer = Service()
    with trial.stand(settings=managed_by(peer), clients=0) as stand:
        orders = stand.root / "mnt/data/firmware_orders"
        archive = stand.root / "mnt/data/input/zel01.tar.bz2"
        for _ in trial.rounds(stand):
            stand.start_terminal()
            assert stand.answers(60)
            path, told = f"{FIRMWARE}{trial.done}", stand.relay.upgrades
            answer = post(stand.port, "device-fw-update.do", {"firmFile": f":{peer.port}{path}"})
            trial.orders += answer == SUCCEED
            trial.moment((0, 0.3), (0.3, 2))
            stand.kill()
            if trial.random.random() < 0.5:
                # In what the next process goes on with, 15 seconds after its start.
                stand.start_terminal()
                trial.moment((14.5, 17.5))
                stand.kill()
            stand.start_terminal()
            until(lambda: not list(orders.glob("[0-9]*")))
            if answer == SUCCEED and (stand.relay.upgrades == told or
                                      archive.read_bytes() != firmware_at(path)):
                stand.loss(f"{path} was answered with success and is gone")
            stand.kill()
    peer.close()


def link(trial):
    """Connections to the controller that end, are reset, end within a frame, or bring rubbish; a
    controller that is killed, or takes seconds over what it has been sent and never comes to it."""
    def end_in_an_order():
        stand.relay.cut_order = True
        return until(lambda: not stand.relay.cut_order, 10)

    def kill_the_controller():
        stand.controller.kill()
        stand.controller.wait()
        until(lambda: stand.relay.current() is None)
        stand.start_controller()
        return True

    def trickle():
        # What the terminal has sent lies unread for seconds.
        stand.relay.piece, stand.relay.pause = 1, 0.002
        time.sleep(5)
        stand.relay.drop(cut=True)
        stand.relay.piece, stand.relay.pause = 65536, 0

    with trial.stand() as stand:
        stand.start_terminal()
        assert stand.answers(60)
        before = stand.descriptors()
        stand.go()
        troubles = [stand.relay.drop, lambda: stand.relay.drop(rudely=True), stand.relay.half_frame,
                    end_in_an_order, kill_the_controller, trickle,
                    lambda: stand.relay.noise(NOISE)]
        for _ in trial.rounds(stand):
            trial.moment((0.1, 1), (1, 4))
            trial.turn(troubles)()
            if not stand.answers(RECONNECTED) or not stand.alive():
                stand.loss("the terminal does not come back")
            stand.check_kept()
        stand.finish()
        if not until(lambda: stand.descriptors() <= before, 90):
            stand.loss(f"{stand.descriptors()} descriptors instead of {before}")


def service(trial):
    """A management service that hangs, trickles, floods, resets and refuses, while events happen
    and orders come in. Every event has to be reported in the end."""
    def reached():
        calls = peer.calls
        return until(lambda: peer.calls > calls, 60)

    peer = Service()
    with trial.stand(settings=["users 300", *managed_by(peer)]) as stand:
        cards = [line.split(" card ")[1].split(" ")[0] for line in stand.tell("users").splitlines()
                 if " card " in line and not line.split(" card ")[1].startswith(" ")]
        happened = []
        stand.start_terminal()
        assert stand.answers(60) and reached(), "the service is not reached"
        before = stand.descriptors()
        stand.go()
        for _ in trial.rounds(stand):
            peer.set_mood(trial.turn(MOODS))
            # Longer than the terminal waits for an answer now and then.
            ends = time.monotonic() + trial.random.choice((1, 3, 3, 3, 12))
            while time.monotonic() < ends:
                if len(happened) < len(cards) and trial.random.random() < 0.3:
                    happened.append(cards[len(happened)])
                    stand.tell("card " + happened[-1])
                if not stand.answers(10):
                    stand.loss(f"the controller gets no answer while the service is {peer.mood}")
                time.sleep(0.1)
            peer.set_mood("normal")
            if not reached() or not stand.alive():
                stand.loss("the service is not reached again")
            stand.check_kept()
        stand.finish()
        if not until(lambda: set(happened) <= set(peer.events), 120):
            stand.loss(f"{len(set(happened) - set(peer.events))} events were never reported")
        trial.repetitions += len(peer.events) - len(set(peer.events))
        if not until(lambda: stand.descriptors() <= before, 90):
            stand.loss(f"{stand.descriptors()} descriptors instead of {before}")
    peer.close()


def mount(source, target, kind, flags, data):
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.mount(source, os.fsencode(target), kind, flags, data) != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()), str(target))


def small_disk(root):
    """Gives the terminal a disk that is full soon, and the simulated controller another one."""
    data = root / "mnt/data"
    mount(b"small", data, b"tmpfs", 0, b"size=8m,nr_inodes=4000")
    for folder in OTHERS:
        (data / folder).mkdir()
        mount(b"large", data / folder, b"tmpfs", 0, b"size=64m")


def unmount(root):
    libc = ctypes.CDLL(None)
    for folder in (*OTHERS, ""):
        libc.umount2(os.fsencode(root / "mnt/data" / folder), 2)


def fill(folder, with_files, left):
    """Fills the disk with files, or with bytes but for as many as are given."""
    folder.mkdir()
    if with_files:
        with contextlib.suppress(OSError):
            for number in range(5000):
                (folder / str(number)).touch()
    else:
        with contextlib.suppress(OSError), open(folder / "ballast", "wb", buffering=0) as file:
            while file.write(bytes(4096)):
                pass
        with contextlib.suppress(OSError):
            os.truncate(folder / "ballast", max(0, (folder / "ballast").stat().st_size - left))


def empty(folder):
    for each in folder.iterdir():
        each.unlink()
    folder.rmdir()


def disk(trial):
    """A disk that is full, has no room for another file, or cannot be written; with orders coming
    in, and with a terminal that is killed meanwhile and begins anew on such a disk."""
    with trial.stand(prepare=small_disk) as stand:
        data = stand.root / "mnt/data"
        stand.start_terminal()
        assert stand.answers(60)
        stand.go()
        for _ in trial.rounds(stand):
            kind = trial.turn(("bytes", "files", "read-only"))
            full = kind != "read-only"
            if full:
                fill(data / "ballast", kind == "files", trial.random.randrange(0, 300000))
            else:
                mount(None, data, None, MOUNT_REMOUNT | MOUNT_READ_ONLY, None)
            trial.moment((0.5, 3), (3, 6))
            if trial.random.random() < 0.5:
                stand.kill()
                stand.hold()
                stand.check_kept()
                stand.go()
                stand.start_terminal()
                if not stand.answers(60):
                    stand.loss("the terminal does not start on such a disk")
                trial.moment((0.1, 4))
            if full:
                empty(data / "ballast")
            else:
                mount(None, data, None, MOUNT_REMOUNT, b"size=8m")
            stand.hold()
            taken = stand.orders()
            stand.go()
            if not until(lambda: stand.orders() > taken, 30) or not stand.alive():
                stand.loss("no order is taken any more")
            stand.hold()
            stand.check_kept()
            stand.go()
        # What could not be removed comes again when the terminal starts; the store has to be right.
        stand.finish(settle=False)
        stand.kill()
        stand.start_terminal()
        stand.answers(60)
        time.sleep(5)
        stand.check_store()
        unmount(stand.root)


def cut(stand, image):
    """Ends the terminal as a power cut does: what the disk holds of its data at that moment takes
    the place of what the kernel would have written later."""
    stand.terminal.send_signal(signal.SIGSTOP)
    taken, at = stand.taken(), time.monotonic()
    # What the kernel writes by itself meanwhile would tear the copy.
    while (disk := image.read_bytes()) != image.read_bytes():
        pass
    stand.kill()
    stand.hold()
    with tempfile.TemporaryDirectory(prefix="torture-disk-") as folder:
        copy, kept = pathlib.Path(folder, "disk"), pathlib.Path(folder, "kept")
        copy.write_bytes(disk)
        kept.mkdir()
        # What the kernel does when it mounts it again; 1 says that there was something to do.
        checked = subprocess.run(["/sbin/e2fsck", "-p", copy], stdout=stand.log, stderr=stand.log,
                                 check=False).returncode
        if checked > 1:
            stand.loss(f"the disk is broken: {checked}")
        subprocess.run(["/sbin/debugfs", "-R", f"rdump /data {kept}", copy], stdout=stand.log,
                       stderr=stand.log, check=True)
        stand.check_disk(taken, kept / "data/Images", at)
        data = stand.root / "mnt/data"
        for each in data.iterdir():
            if each.is_dir() and each.name not in OTHERS:
                shutil.rmtree(each)
            elif each.is_file():
                each.unlink()
        shutil.copytree(kept / "data", data, dirs_exist_ok=True)
    # What survived the cut is not lost by the next one.
    handle = os.open(data, os.O_RDONLY)
    ctypes.CDLL(None).syncfs(handle)
    os.close(handle)


def power(trial):
    """Power cuts: what the kernel has not written to the disk yet is lost as well."""
    image = trial.build / "disks" / f"{trial.lane}.img"

    def own_disk(root):
        data = root / "mnt/data"
        place = trial.build / "disks" / str(trial.lane) / "data"
        place.mkdir()
        mount(os.fsencode(place), data, b"", MOUNT_BIND, None)
        # The simulated controller's store does not claim to outlive this.
        for folder in OTHERS:
            (data / folder).mkdir()
            mount(b"other", data / folder, b"tmpfs", 0, b"size=64m")

    with trial.stand(prepare=own_disk) as stand:
        stand.go()
        for _ in trial.rounds(stand):
            stand.start_terminal()
            if trial.done % 2:
                trial.moment((0.1, 2), (2, 9))
            else:
                # The worst moment: right behind an answer.
                taken = stand.orders() + trial.random.randrange(1, 30)
                until(lambda: stand.orders() >= taken)
            cut(stand, image)
            stand.go()
        # What had been removed when the power went may come again, with all behind it.
        stand.finish(settle=False)
        unmount(stand.root)


def clock(trial):
    """A clock that jumps by a year, forwards and back, with orders coming in and now and then a
    terminal that is killed."""
    with trial.stand() as stand:
        stand.moved_clock = True
        stand.start_terminal()
        assert stand.answers(60)
        stand.go()
        year = int(time.strftime("%Y"))
        for _ in trial.rounds(stand):
            year += trial.random.choice((-1, 1))
            stand.tell(time.strftime(f"time {year}-%m-%d %H:%M"))
            trial.moment((0.1, 1), (1, 5))
            if trial.random.random() < 0.3:
                stand.kill()
                stand.hold()
                stand.check_kept()
                stand.go()
                stand.start_terminal()
            if not stand.answers(RECONNECTED) or not stand.alive():
                stand.loss("the terminal does not answer")
        stand.finish()


def descriptors(trial):
    """64 descriptors, a hundred clients that hold connections, and a link that is lost."""
    peer = Service()
    with trial.stand(settings=managed_by(peer)) as stand:
        stand.limit_descriptors(64)
        stand.start_terminal()
        assert stand.answers(60) and stand.serves()
        stand.go()
        for _ in trial.rounds(stand):
            with contextlib.ExitStack() as open_ones:
                for _ in range(100):
                    one = open_ones.enter_context(socket.socket())
                    if one.connect_ex(("127.0.0.1", stand.port)) == 0:
                        one.sendall(b"POST /")
                stand.relay.drop()
                if not stand.answers(RECONNECTED) or not stand.alive():
                    stand.loss("the link does not come back")
                taken, calls = stand.orders(), peer.calls
                if not until(lambda: stand.orders() > taken, 30):
                    stand.loss("no order is taken")
                if not until(lambda: peer.calls > calls, 30):
                    stand.loss("the service is not called")
                stand.check_kept()
        stand.finish()
    peer.close()


def stop(trial):
    """A process that is stopped for a minute, while everybody goes on."""
    with trial.stand() as stand:
        for client in stand.clients:
            client.patience = 3
        stand.start_terminal()
        assert stand.answers(60)
        stand.tell("live", "track on")  # thirty frames a second
        for _ in trial.rounds(stand):
            stand.go()
            trial.moment((0.5, 3))
            stand.terminal.send_signal(signal.SIGSTOP)
            time.sleep(4 if trial.quick else 60)
            stand.terminal.send_signal(signal.SIGCONT)
            if not stand.answers(RECONNECTED) or not stand.alive():
                stand.loss("the terminal does not go on")
            stand.hold()
            stand.check_kept()
        stand.finish()


# By name: the trial, how often it tries, and how often in the quick form.
TRIALS = {
    "kill": (kill, 1000, 12),
    "firmware": (firmware, 40, 1),
    "link": (link, 105, 7),
    "service": (service, 45, 4),
    "disk": (disk, 60, 4),
    "power": (power, 200, 6),
    "clock": (clock, 100, 6),
    "descriptors": (descriptors, 20, 1),
    "stop": (stop, 4, 1),
}


def run(name, given):
    """Runs the trial as the options say, and prints what came of it. Whether nothing was lost."""
    function, own_tries, quick_tries = TRIALS[name]
    tries = given.tries or (quick_tries if given.quick else own_tries)
    lanes = min(given.lanes, tries)
    trials = [Trial(given.build, f"{given.seed} {name}", tries, lane, lanes, given.quick)
              for lane in range(lanes)]
    threads = [threading.Thread(target=function, args=(trial,), daemon=True) for trial in trials]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    losses = [loss for trial in trials for loss in trial.losses]
    total = {field: sum(getattr(trial, field) for trial in trials)
             for field in ("done", "orders", "refused", "repetitions")}
    print(f"{name}: tries {total['done']}, losses {len(losses)}; orders {total['orders']}, "
          f"refused {total['refused']}, repeated {total['repetitions']}", flush=True)
    for loss in losses[:20]:
        print("   ", loss, flush=True)
    return not losses and total["done"] == tries
