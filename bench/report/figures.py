"""Medians, spreads, units and how figures are written."""
import statistics

SCALES = {
    "time": {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0},
    "size": {"B": 1.0, "bytes": 1.0, "kB": 1e3, "KiB": 1024.0, "MB": 1e6, "MiB": 1048576.0},
    "rate of bytes": {"B/s": 1.0, "MB/s": 1e6, "GB/s": 1e9},
    "rate": {"/s": 1.0, "1/s": 1.0, "items/s": 1.0},
}


def scale_of(unit):
    """(kind, factor) of a unit; (None, None) of one that converts to no other."""
    for kind, units in SCALES.items():
        if unit in units:
            return kind, units[unit]
    return None, None


def convert(value, unit, to):
    """The value in another unit. ValueError where the two do not measure the same."""
    if unit == to:
        return value
    (kind, factor), (wanted, divisor) = scale_of(unit), scale_of(to)
    if kind is None or kind != wanted:
        raise ValueError(f"{unit} is not {to}")
    return value * factor / divisor


def median(samples):
    return statistics.median(samples)


def quartiles(samples):
    """The first and the third quartile; of fewer than four samples the least and the greatest."""
    if len(samples) < 4:
        return min(samples), max(samples)
    low, _, high = statistics.quantiles(samples, n=4, method="inclusive")
    return low, high


def spread(samples):
    """What lies between the quartiles, in percent of the median; None where that says nothing."""
    middle = median(samples)
    if len(samples) < 2 or middle == 0:
        return None
    low, high = quartiles(samples)
    return 100.0 * (high - low) / abs(middle)


def number(value):
    """Three significant digits, never an exponent."""
    if value == float("inf"):
        return "infinite"
    if value == 0:
        return "0"
    size = abs(value)
    if size >= 100:
        return f"{value:,.0f}"
    digits = 2
    while size < 1 and digits < 8:
        size *= 10
        digits += 1
    return f"{value:.{digits - 1 if size >= 10 else digits}f}"


def with_unit(value, unit):
    return f"{number(value)} {written(unit)}".strip()


def written(unit):
    """A unit as it is written: a figure that compares two of a kind has none."""
    return {"us": "µs", "us/s": "µs/s", "1/s": "/s", "fewest/most": ""}.get(unit, unit)


def ratio_text(ratio):
    """Two decimals; more where two would hide on which side of 1 it is, or everything."""
    if ratio is None:
        return "–"
    if ratio == float("inf"):
        return "∞"
    if ratio >= 100:
        return f"{ratio:,.0f}"
    for decimals in (2, 3, 4):
        text = f"{ratio:.{decimals}f}"
        if float(text) > 0 and (float(text) == 1.0) == (ratio == 1.0):
            return text
    return text
