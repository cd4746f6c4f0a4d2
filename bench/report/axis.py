"""Where a value stands on an axis, and which values are written at it."""
import math


class Axis:
    """From `low` to `high`, drawn from `start` to `end`."""

    def __init__(self, low, high, start, end, logarithmic):
        self.low, self.high, self.start, self.end = low, high, start, end
        self.logarithmic = logarithmic

    def __call__(self, value):
        """The place of a value; what lies outside stands at the end."""
        value = min(max(value, self.low), self.high)
        low, high = self.low, self.high
        if self.logarithmic:
            value, low, high = math.log(value), math.log(low), math.log(high)
        return self.start + (value - low) / (high - low) * (self.end - self.start)

    def ticks(self):
        return decades(self.low, self.high) if self.logarithmic else steps(self.low, self.high)


def decades(low, high):
    """Powers of ten; with few of them 2 and 5 between."""
    factors = (1, 2, 5) if high / low < 1500 else (1,)
    powers = range(math.floor(math.log10(low)), math.ceil(math.log10(high)) + 1)
    return [f * 10.0 ** p for p in powers for f in factors if low * 0.999 <= f * 10.0 ** p <= high * 1.001]


def steps(low, high):
    """Some five round values."""
    rough = (high - low) / 5
    power = 10.0 ** math.floor(math.log10(rough))
    step = next(f * power for f in (1, 2, 5, 10) if f * power >= rough * 0.999)
    count = int((high - low) / step + 1.001)
    return [math.ceil(low / step) * step + i * step for i in range(count)]


def spans_decades(values):
    """Whether a linear axis would press the small ones together."""
    return min(values) > 0 and max(values) / min(values) >= 15


def crowds_low(values):
    """Whether half of the different values would stand in the first fifth of a linear axis, as with 10, 100, 1000."""
    different = sorted(set(values))
    return different[(len(different) - 1) // 2] <= max(values) / 5


def around(values, start, end, logarithmic):
    """An axis that holds the values, and zero where it is not logarithmic."""
    low, high = min(values), max(values)
    if logarithmic:
        return Axis(low / 1.25, high * 1.25, start, end, True)
    return Axis(min(0, low), high * 1.05 if high > 0 else 1.0, start, end, False)


def label(value):
    """Of a tick: without an exponent, as short as can be."""
    for limit, sign in ((1e6, "M"), (1e4, "k")):
        if abs(value) >= limit:
            return f"{value / (1e6 if sign == 'M' else 1e3):g}{sign}"
    return f"{value:.10f}".rstrip("0").rstrip(".") if abs(value) < 1 else f"{value:g}"


def spaced(places, gap):
    """The places moved apart so that neighbours are `gap` apart, in the same order and as near as may be."""
    order = sorted(range(len(places)), key=lambda i: places[i])
    moved = list(places)
    for before, after in zip(order, order[1:]):
        moved[after] = max(moved[after], moved[before] + gap)
    excess = moved[order[-1]] - places[order[-1]] if order else 0
    return [place - excess / 2 for place in moved]
