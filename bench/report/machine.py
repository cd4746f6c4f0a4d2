"""What the figures were taken on and with."""
import os
import re
import subprocess
from pathlib import Path

# Peers, and what they rest on, by the package that holds them.
PACKAGES = [
    "libc6", "libstdc++6", "g++-mingw-w64-x86-64-posix", "libboost1.81-dev", "libboost-filesystem1.81.0", "libfmt-dev",
    "findutils", "coreutils", "nodejs", "node-proper-lockfile", "python3", "python3-filelock", "python3-flufl.lock",
    "liblockfile-bin", "procmail", "libbenchmark1debian", "strace", "wine"]


def output(*command):
    """The first line of what a command says; empty where there is no such command."""
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=30,
                              check=False)
    except (OSError, subprocess.TimeoutExpired):
        return ""
    return done.stdout.strip().split("\n")[0] if done.returncode == 0 else ""


def processor():
    """The processor's own name of itself, and of one that has a common name only the numbers that tell it apart."""
    text = Path("/proc/cpuinfo").read_text(encoding="utf-8", errors="replace")
    found = dict(reversed(re.findall(r"^([a-z ]+?)\s*: (.*)$", text, re.M)))
    numbers = ", ".join(f"{key} {found[key]}" for key in ("cpu family", "model", "stepping") if key in found)
    return f"{found.get('model name', 'unknown')} ({numbers})" if numbers else found.get("model name", "unknown")


def file_system(folder):
    """The type of the file system that holds a folder."""
    best = ("", "unknown")
    for line in Path("/proc/self/mounts").read_text(encoding="utf-8").splitlines():
        _, point, kind = line.split()[:3]
        point = point.replace("\\040", " ")
        inside = f"{os.path.realpath(folder)}/".startswith(point.rstrip("/") + "/")
        if inside and len(point) >= len(best[0]):
            best = (point, kind)
    return best[1]


def memory_in_gib():
    found = re.search(r"^MemTotal:\s+(\d+) kB", Path("/proc/meminfo").read_text(encoding="utf-8"), re.M)
    return round(int(found.group(1)) / 1048576, 1)


def version(package):
    return output("dpkg-query", "-W", "-f=${Version}", package)


def commit(root):
    changed = subprocess.run(["git", "-C", str(root), "status", "--porcelain", "--untracked-files=no"],
                             capture_output=True, text=True, check=False).stdout.strip()
    return (output("git", "-C", str(root), "rev-parse", "HEAD") or "unknown") + (" with changes" if changed else "")


def describe(build_folder):
    system = os.uname()
    return {
        "processor": processor(),
        "processors": len(os.sched_getaffinity(0)),
        "memory in GiB": memory_in_gib(),
        "kernel": f"{system.sysname} {system.release}",
        "distribution": re.sub(r'.*PRETTY_NAME="([^"]*)".*', r"\1", Path("/etc/os-release").read_text(encoding="utf-8"),
                               flags=re.S),
        "file system of the trees and locks": file_system(build_folder),
        "compiler": output("c++", "--version"),
        "compiler for Windows": output("x86_64-w64-mingw32-g++-posix", "--version"),
        "Wine": output("wine", "--version"),
    }


def versions():
    return {package: found for package in PACKAGES if (found := version(package))}
