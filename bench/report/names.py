"""What the name of a benchmark of Google Benchmark says."""
import re

# What the library itself appends to a name.
SUFFIX = re.compile(
    r"^(iterations|repeats|min_time|min_warmup_time|threads):[^/]*$|^(manual_time|real_time|process_time)$")
ARGUMENT = re.compile(r"^(?:[A-Za-z_]+:)?(\d+(?:\.\d+)?)$")


def split(name):
    """(row, contestant, x): walk, zorvel and 1000 of `walk/zorvel/1000/real_time`; x is None in a row."""
    parts = name.split("/")
    while len(parts) > 1 and SUFFIX.match(parts[-1]):
        parts.pop()
    x = None
    found = ARGUMENT.match(parts[-1])
    if found and len(parts) > 2:
        x = float(found.group(1))
        parts.pop()
    return "/".join(parts[:-1]), parts[-1], x
