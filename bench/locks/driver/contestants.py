"""Who is measured, and with which settings."""

import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, List

LOCKS = Path(__file__).resolve().parent.parent
ROOT = LOCKS.parent.parent
PROGRAMS = ROOT / "build/linux-bench/bin"
WINDOWS_PROGRAMS = ROOT / "build/windows-bench/bin"
PEERS = LOCKS / "peers"
# Where the distribution's packages lie, which a node from elsewhere does not know.
NODE_PACKAGES = "/usr/share/nodejs"


@dataclass(frozen=True)
class Contestant:
    """Somebody with a lock. The command gets the directory to be locked; an order follows it."""

    name: str
    settings: str
    command: Callable[[Path], List[str]]


def version(package):
    command = ["dpkg-query", "-W", "-f=${Version}", package]
    answer = subprocess.run(command, capture_output=True, text=True, check=False)
    return f"{package} {answer.stdout or '(not installed)'}"


def zorvel(kind="exclusive", latency_msec=0):
    settings = f"latency {latency_msec} ms" if latency_msec else "default file system"
    return Contestant("zorvel", f"{kind}, refreshed; {settings}",
                      lambda place: [str(PROGRAMS / "locks_zorvel"), kind, str(latency_msec), str(place)])


def pauses():
    """The prescribed pause of an acquire by itself."""
    return Contestant("pauses", "nanosleep of 5 ms", lambda place: [str(PROGRAMS / "locks_bare"), "pauses", str(place)])


def bare(kind="exclusive"):
    """The floor: what is prescribed, by bare system calls."""
    settings = f"the prescribed pauses, file operations and threads, {kind}; the threads only wait"
    return Contestant("bare-steps", settings, lambda place: [str(PROGRAMS / "locks_bare"), kind, str(place)])


def refresh_threads():
    """What a lock that is refreshed starts and ends, ours and the least that it can be."""
    bare_thread = Contestant("bare-thread", "std::thread that waits for a condition; start and end",
                             lambda place: [str(PROGRAMS / "locks_bare"), "thread", str(place)])
    return [zorvel("refresh-thread"), bare_thread]


def filelock(kind, poll="default"):
    name = {"hard": "filelock", "soft": "softfilelock"}[kind] + ("" if poll == "default" else "-5ms")
    what = {"hard": "FileLock", "soft": "SoftFileLock"}[kind]
    how = "default poll (50 ms)" if poll == "default" else f"poll_interval={poll}"
    return Contestant(name, f"{version('python3-filelock')}, {what}, {how}",
                      lambda place: [str(PEERS / "filelock_locks.py"), kind, poll, str(place)])


def flufl():
    return Contestant("flufl.lock", f"{version('python3-flufl.lock')}, defaults; its poll cannot be set",
                      lambda place: [str(PEERS / "flufl_locks.py"), str(place)])


def proper_lockfile(name, retries, how):
    return Contestant(name, f"{version('node-proper-lockfile')}, {version('nodejs')}, {how}",
                      lambda place: ["env", f"NODE_PATH={NODE_PACKAGES}", str(PEERS / "proper_lockfile_locks.js"),
                                     retries, str(place)])


def proper_lockfiles():
    return [
        proper_lockfile("proper-lockfile", '{"forever":true}',
                        "retries: {forever: true}, else defaults (1 s, doubled)"),
        proper_lockfile("proper-lockfile-5ms", '{"forever":true,"minTimeout":5,"maxTimeout":5,"factor":1}',
                        "retries: forever, every 5 ms"),
    ]


def by_command(name, settings, acquire, release):
    def command(place):
        lock = str(place / "peer.lock")
        named = [[lock if word == "LOCK" else word for word in words] for words in (acquire, release)]
        return [str(PROGRAMS / "locks_command"), *named[0], "--", *named[1], "--"]

    return Contestant(name, settings, command)


def dotlockfiles():
    package = version("liblockfile-bin")
    release = ["dotlockfile", "-u", "LOCK"]
    return [
        by_command("dotlockfile", f"{package}, command, -r -1, else defaults (5 s, then 5 s more each time)",
                   ["dotlockfile", "-r", "-1", "-l", "LOCK"], release),
        by_command("dotlockfile-1s", f"{package}, command, -r -1 -i 1, its shortest poll",
                   ["dotlockfile", "-r", "-1", "-i", "1", "-l", "LOCK"], release),
    ]


def liblockfile():
    return Contestant("liblockfile", f"{version('liblockfile1')}, lockfile_create(name, 5, L_PID)",
                      lambda place: [str(PROGRAMS / "locks_liblockfile"), "5", str(place)])


def procmail_lockfiles():
    package = version("procmail")
    release = ["rm", "-f", "LOCK"]
    return [
        by_command("lockfile", f"{package}, command, defaults (8 s)", ["lockfile", "LOCK"], release),
        by_command("lockfile-1s", f"{package}, command, -1, its shortest poll", ["lockfile", "-1", "LOCK"], release),
    ]


def alone_peers():
    """With a free lock no poll is made, so each peer is here once."""
    return [filelock("hard"), filelock("soft"), flufl(), proper_lockfiles()[0], liblockfile(), dotlockfiles()[0]]


def contending():
    return [zorvel(), bare(), filelock("hard"), filelock("hard", "0.005"), filelock("soft"),
            filelock("soft", "0.005"), flufl(), *proper_lockfiles(), *dotlockfiles(), *procmail_lockfiles()]
