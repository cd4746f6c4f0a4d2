"""Makes the report of what was measured, or publishes one that was made.

    python3 -m report make ROOT [--quick] [--area AREA]... [--load LOAD] [--setting NAME=VALUE]...
    python3 -m report publish ROOT
"""
import argparse
import datetime
import pathlib
import sys

from . import head, machine, outcome, plots, publish, raw, results, rows, table


def arguments():
    parser = argparse.ArgumentParser(prog="report")
    parser.add_argument("what", choices=["make", "publish"])
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--area", action="append", choices=rows.AREAS)
    parser.add_argument("--load", default="unknown")
    parser.add_argument("--setting", action="append", default=[])
    return parser.parse_args()


def facts(given, build):
    return {"date": datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC"),
            "commit": machine.commit(given.root), "quick": given.quick, "areas": given.area or rows.AREAS,
            "machine": machine.describe(build), "load before": given.load,
            "settings": dict(setting.split("=", 1) for setting in given.setting), "versions": machine.versions()}


def make(given):
    """The exit status: 1 where something that was to be measured was not, or the other way round."""
    build = given.root / "build" / "bench"
    declared = rows.read(given.root / "bench", given.area)
    found = raw.read_folder(build / "raw", declared)
    outcomes, growths, complaints = outcome.compare(declared, found)
    known = {**facts(given, build), "peers": table.settings(outcomes, {**found.contexts, **declared.contestants})}
    results.write(build / "results.json", known, outcomes, growths, complaints)
    plots.write(build / "plots", outcomes, growths)
    text = table.terminal(outcomes)
    (build / "table.md").write_text(table.markdown(outcomes), encoding="utf-8")
    peers = "\n".join(f"{name}: {how}" for name, how in known["peers"])
    grown = "\n".join(table.growth_markdown(*growth) for growth in growths)
    print("\n".join(head.lines(known)), text, peers, grown, table.summary(outcomes), sep="\n\n")
    for complaint in complaints:
        print(f"bench: NOT AS DECLARED: {complaint}", file=sys.stderr)
    return 1 if complaints and not given.quick else 0


def main():
    given = arguments()
    if given.what == "make":
        return make(given)
    known, outcomes, growths, _ = results.read(given.root / "build" / "bench" / "results.json")
    for name, _ in publish.publish(given.root / "docs" / "performance.md", known, outcomes, growths):
        print(f"docs/performance/{name}")
    return 0


sys.exit(main())
