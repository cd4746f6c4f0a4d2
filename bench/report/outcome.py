"""Ours beside the peers: ratios, floors and targets of each row."""
from dataclasses import dataclass, field

from . import figures

OURS = "zorvel"
# So much above its floor a row may be and still stand at it: less is not told apart from one run to the next.
AT_FLOOR = 1.05


@dataclass
class Figure:
    contestant: str
    samples: list
    median: float
    spread: float
    settings: str

    @staticmethod
    def of(series):
        return Figure(series.contestant, series.samples, figures.median(series.samples), figures.spread(series.samples),
                      series.settings)


@dataclass
class Outcome:
    """One row of the table. What was not measured, or does not apply, is None."""
    declared: dict
    ours: Figure = None
    peers: list = field(default_factory=list)
    floor: Figure = None
    base: Figure = None
    ratio: float = None
    floor_ratio: float = None
    base_ratio: float = None
    met: bool = None

    @property
    def is_at_floor(self):
        """Whether nobody who keeps the promises is noticeably faster."""
        return self.floor_ratio is not None and self.floor_ratio <= AT_FLOOR


def turned_ratio(value, reference, better):
    """At most 1 always means: at or ahead of the reference."""
    if better == "higher":
        value, reference = reference, value
    if value == reference:
        return 1.0
    return value / reference if reference else float("inf")


def met(outcome):
    """Whether the row reaches all of its targets; None where it has none, False where one cannot be judged."""
    declared, verdicts = outcome.declared, []
    for limit, ratio in (("target", outcome.ratio), ("floor_target", outcome.floor_ratio),
                         ("base_target", outcome.base_ratio)):
        if declared.get(limit) is not None:
            verdicts.append(ratio is not None and ratio <= declared[limit])
    limit = declared.get("value_target")
    if limit is not None:
        verdicts.append(outcome.ours is not None and
                        turned_ratio(outcome.ours.median, limit, declared["better"]) <= 1.0)
    return all(verdicts) if verdicts else None


def judge(declared, series):
    """The outcome of a row from the series that were measured for it."""
    outcome = Outcome(declared)
    for figure in map(Figure.of, series):
        if figure.contestant == OURS:
            outcome.ours = figure
        elif figure.contestant == declared.get("floor"):
            outcome.floor = figure
        elif figure.contestant == declared.get("base"):
            outcome.base = figure
        else:
            outcome.peers.append(figure)
    outcome.peers.sort(key=lambda peer: peer.median, reverse=declared["better"] == "higher")
    if outcome.ours and outcome.peers:
        outcome.ratio = turned_ratio(outcome.ours.median, outcome.peers[0].median, declared["better"])
    if outcome.ours and outcome.base:
        outcome.base_ratio = turned_ratio(outcome.ours.median, outcome.base.median, declared["better"])
    if outcome.ours and outcome.floor:
        outcome.floor_ratio = turned_ratio(outcome.ours.median, outcome.floor.median, declared["better"])
    outcome.met = met(outcome)
    return outcome


def missing_parts(outcome):
    """What a row names and nobody measured."""
    declared, missing = outcome.declared, []
    if outcome.ours is None:
        missing.append(OURS)
    if declared.get("floor") and outcome.floor is None:
        missing.append(declared["floor"])
    if declared.get("base") and outcome.base is None:
        missing.append(declared["base"])
    there = {peer.contestant for peer in outcome.peers}
    missing += [peer for peer in declared.get("peers", []) if peer not in there]
    if "peers" not in declared and not there:
        missing.append("any peer")
    return missing


def in_declared_unit(series, declared, complaints):
    """The series with its samples in the unit of its row; None, with a complaint, where that cannot be."""
    try:
        series.samples = [figures.convert(s, series.unit, declared["unit"]) for s in series.samples]
    except ValueError as error:
        complaints.append(f"{series.name}/{series.contestant} ({series.system}): {error}")
        return None
    series.unit = declared["unit"]
    return series


def compare(declarations, measured):
    """(outcomes in the order of declaration, growths by declaration, complaints)."""
    complaints = declarations.complaints + measured.complaints
    by_row, by_growth = {}, {}
    for series, known, into in [(s, declarations.rows, by_row) for s in measured.rows()] + \
                               [(s, declarations.growths, by_growth) for s in measured.growths()]:
        key = series.system, series.name
        if key not in known:
            complaints.append(f"measured, but no rows.json names it: {series.name} ({series.system})")
        elif in_declared_unit(series, known[key], complaints):
            into.setdefault(key, []).append(series)
    outcomes = [judge(row, by_row.get(key, [])) for key, row in declarations.rows.items()]
    for outcome in outcomes:
        missing = missing_parts(outcome)
        if missing:
            complaints.append(f"named, but not measured: {outcome.declared['name']} ({outcome.declared['system']}): "
                              f"{', '.join(missing)}")
    for key in declarations.growths:
        if key not in by_growth:
            complaints.append(f"named, but not measured: the growth {key[1]} ({key[0]})")
    growths = [(declared, sorted(by_growth[key], key=lambda s: s.x))
               for key, declared in declarations.growths.items() if key in by_growth]
    return outcomes, growths, list(dict.fromkeys(complaints))
