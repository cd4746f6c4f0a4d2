"""What the rows are: the rows.json of each folder."""
import json

# The order of the table.
AREAS = ["paths", "files", "timers", "semaphore", "services", "locks"]
REQUIRED = {"row": ("title", "unit"), "growth": ("title", "unit", "x")}


class Declarations:
    """Rows by system and name, and growths by system and name, in the order in which they are declared."""

    def __init__(self):
        self.rows = {}
        self.growths = {}
        self.contestants = {}
        self.complaints = []

    def find(self, system, name):
        """The declaration of a row or a growth; empty where there is none."""
        return self.rows.get((system, name)) or self.growths.get((system, name)) or {}

    def system_of(self, system, name):
        """A native program's row is Wine's where only Wine has a row of that name: the program starts others."""
        if system == "linux" and not self.find("linux", name) and self.find("windows", name):
            return "windows"
        return system

    def add(self, area, entry):
        if "contestant" in entry:
            told = [entry[part] for part in ("title", "settings") if entry.get(part)]
            self.contestants[entry["contestant"]] = "; ".join(told)
            return
        kind = "growth" if "growth" in entry else "row"
        if kind not in entry or any(part not in entry for part in REQUIRED[kind]):
            self.complaints.append(f"bench/{area}/rows.json: not a row: {json.dumps(entry)}")
            return
        known = self.growths if kind == "growth" else self.rows
        system = entry.get("system", "linux")
        key = "windows" if system == "wine" else system, entry[kind]
        if key in known:
            self.complaints.append(f"bench/{area}/rows.json: {key[1]} ({key[0]}) is declared twice")
        known[key] = {"better": "lower", **entry, **limits(entry), "area": area, "system": key[0], "name": key[1]}


def limits(entry):
    """`target` is of the row's base, where it names one. Else it is of the best peer; where there is none, of the floor;
    where there is neither, in the row's own unit."""
    if entry.get("base"):
        return {"target": None, "base_target": entry.get("target")}
    if entry.get("peers") != [] or entry.get("target") is None:
        return {}
    return {"target": None, "floor_target" if entry.get("floor") else "value_target": entry["target"]}


def read(folder, areas=None):
    """The declarations of all areas, or of some."""
    declared = Declarations()
    for area in areas or AREAS:
        path = folder / area / "rows.json"
        if not path.exists():
            declared.complaints.append(f"bench/{area}/rows.json: missing")
            continue
        for entry in json.loads(path.read_text(encoding="utf-8")):
            declared.add(area, entry)
    return declared
