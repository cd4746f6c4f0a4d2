"""Reads what the programs measured: reports of Google Benchmark, and lists of rows."""
import json
from dataclasses import dataclass, field, replace

from . import figures, names


@dataclass
class Series:
    """The samples of one contestant of one row, or of one x of a growth."""
    system: str
    name: str
    contestant: str
    unit: str
    samples: list = field(default_factory=list)
    x: float = None
    settings: str = ""

    def key(self):
        return self.system, self.name, self.contestant, self.x


class Collection:
    """What several files say about one series is one series; what does not fit together is complained about."""

    def __init__(self):
        self.series = {}
        self.complaints = []
        self.contexts = {}

    def add(self, series):
        known = self.series.setdefault(series.key(), replace(series, samples=[]))
        try:
            known.samples += [figures.convert(float(s), series.unit, known.unit) for s in series.samples]
        except (TypeError, ValueError) as error:
            self.complaints.append(f"{series.name}/{series.contestant} ({series.system}): {error}")

    def rows(self):
        return [s for s in self.series.values() if s.x is None and s.samples]

    def growths(self):
        return [s for s in self.series.values() if s.x is not None and s.samples]


def google_value(entry, unit):
    """What an iteration of Google Benchmark measured, in a unit; without a unit in the benchmark's own."""
    if unit is None:
        return entry["real_time"], entry["time_unit"]
    kind, _ = figures.scale_of(unit)
    if unit in entry:
        return entry[unit], unit
    if kind == "rate of bytes":
        return figures.convert(entry["bytes_per_second"], "B/s", unit), unit
    if kind == "rate":
        return entry["items_per_second"], unit
    return figures.convert(entry["real_time"], entry["time_unit"], unit), unit


def read_google(report, system, declared, into):
    """What a program says of its peers stands in the context, as `AREA: PEERS`."""
    for key, text in report.get("context", {}).items():
        if ": " in key:
            into.contexts[key.split(": ", 1)[1] + (" (Wine)" if system == "windows" else "")] = text
    for entry in report["benchmarks"]:
        if entry.get("run_type") == "aggregate":
            continue
        row, contestant, x = names.split(entry.get("run_name", entry["name"]))
        if entry.get("error_occurred"):
            into.complaints.append(f"{row}/{contestant} ({system}): {entry.get('error_message', 'failed')}")
            continue
        known = declared.find(system, row)
        try:
            value, unit = google_value(entry, known.get("unit"))
        except (KeyError, ValueError) as error:
            into.complaints.append(f"{row}/{contestant} ({system}): no {known.get('unit')} measured ({error})")
            continue
        into.add(Series(system, row, contestant, unit, [value], x, entry.get("label", "")))


def read_list(entries, system, declared, into):
    for entry in entries:
        name = entry.get("growth", entry.get("row"))
        x = float(entry["x"]) if "growth" in entry else None
        where = entry.get("system") or declared.system_of(system, name)
        series = Series(where, name, entry["contestant"], entry["unit"], entry["samples"], x, entry.get("settings", ""))
        if not series.samples:
            into.complaints.append(f"{name}/{series.contestant} ({series.system}): no samples")
            continue
        into.add(series)


def read_folder(folder, declared):
    """All raw results. A file's name that begins with `windows-` says where its program ran."""
    found = Collection()
    for path in sorted(folder.glob("*.json")):
        system = "windows" if path.name.startswith("windows-") else "linux"
        try:
            content = json.loads(path.read_text(encoding="utf-8"))
            if isinstance(content, dict):
                read_google(content, system, declared, found)
            else:
                read_list(content, system, declared, found)
        except (ValueError, KeyError, TypeError) as error:
            found.complaints.append(f"{path.name}: not a result ({type(error).__name__}: {error})")
    return found
