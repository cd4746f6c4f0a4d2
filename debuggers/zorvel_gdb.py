"""Shows zorvel's texts, paths, lock files and locks in gdb. They are read, never called: a core file will do, too.

    (gdb) source .../share/zorvel/zorvel_gdb.py

docs/debugging.md has what the lines mean."""
import re

import gdb
import gdb.types

WHITE_SPACE = b" \t\n\v\f\r\b"
SPECIAL_TICKS = {2**63 - 1: "never", 2**63 - 2: "never", -(2**63): "never"}


def bytes_of(value):
    """A std::string's bytes, as many as gdb's limit allows, and whether there are more."""
    text = value if value.type.strip_typedefs().tag.startswith("std::") else value.cast(base_string(value.type))
    length = int(text["_M_string_length"])
    limit = gdb.parameter("print elements")
    shown = length if limit is None else min(length, limit)
    start = int(text["_M_dataplus"]["_M_p"])
    found = gdb.selected_inferior().read_memory(start, shown).tobytes() if shown else b""
    return found, length > shown


def base_string(type):
    """The std::string that a text or a path is derived from."""
    type = type.strip_typedefs()
    while not type.tag.startswith("std::"):
        type = next(field.type for field in type.fields() if field.is_base_class).strip_typedefs()
    return type


def quoted(value):
    found, cut = bytes_of(value)
    return '"' + found.decode(gdb.host_charset(), "backslashreplace") + '"' + ("..." if cut else "")


def is_normalised(path):
    """Whether the standard normaliser would leave the bytes as they are. Bytes from 0x80 on may begin a double-byte
    character: the one behind them is then no separator."""
    inside = re.sub(rb"[\x80-\xff].", b"x", path[1:], flags=re.DOTALL)
    return path == path.strip(WHITE_SPACE) and b"/" not in path and b"\\\\" not in inside


class Text:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return quoted(self.value)


class Path:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        remarks = []
        active = self.value["m_active"]
        if int(active["px"]) and int(active["pn"]["pi_"]):
            remarks.append("with a normaliser of its own")
        else:
            found, cut = bytes_of(self.value)
            if not cut and not is_normalised(found):
                remarks.append("not normalised")
        return ", ".join([quoted(self.value)] + remarks)


def refresh_of(file):
    ticks = int(file["refreshInterval"]["ticks_"]["value_"])
    if not int(file["timer"]["px"]) or ticks in SPECIAL_TICKS:
        return "not refreshed"
    return "refreshed every %g s" % (ticks / 1e6)


class LockFile:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return quoted(self.value["name"]) + ", " + refresh_of(self.value)


def hold_of(lock):
    """What a lock's count and its file say."""
    count = lock["count"]
    if count.type.strip_typedefs().code == gdb.TYPE_CODE_STRUCT:
        count = count["_M_i"]
    if not int(count):
        return "not held"
    held = "held" if int(count) == 1 else "held %d times" % int(count)
    file = lock["lockFile"]["px"]
    return held + ", " + refresh_of(file.dereference()) if int(file) else held


class ExclusiveLock:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "%s, label %s, %s" % (quoted(self.value["directory"]), quoted(self.value["label"]), hold_of(self.value))


class ReadWriteLock:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "%s, hands out locks" % quoted(self.value["directory"])


class Handle:
    """A reader's or a writer's lock. What it holds is inside the library."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        shared = self.value["impl"]["px"].dereference()
        try:
            return quoted(shared["directory"]) + ", " + hold_of(shared)
        except gdb.error:
            return "a lock at %s: the library was built without -g" % self.value["impl"]["px"]


PRINTERS = {
    "zvMBCSSafeString": Text,
    "zvPathString_<zvMBCSSafeString>": Path,
    "zvLockFile": LockFile,
    "zvDirectoryExclusiveLock": ExclusiveLock,
    "zvDirectoryReadWriteLock": ReadWriteLock,
    "zvDirectoryReadWriteLock::ReadLock": Handle,
    "zvDirectoryReadWriteLock::WriteLock": Handle,
}


class Safely:
    """An object that is not made yet, or gone, must not end the command that shows it."""

    def __init__(self, printer):
        self.printer = printer

    def to_string(self):
        try:
            return self.printer.to_string()
        except (gdb.error, gdb.MemoryError, OverflowError) as error:
            return "not readable: %s" % error


def zorvel(value):
    if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value()
    printer = PRINTERS.get(gdb.types.get_basic_type(value.type).tag)
    return Safely(printer(value)) if printer else None


def register(objfile):
    # gdb knows printers by their names: a second reading replaces the first.
    where = gdb if objfile is None else objfile
    where.pretty_printers[:] = [zorvel] + [one for one in where.pretty_printers if one.__name__ != "zorvel"]


register(gdb.current_objfile())
