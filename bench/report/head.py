"""What stands above the table: where, when and with what."""


def machine_text(machine, load):
    return (f"Machine: {machine['processor']}, {machine['processors']} processors, {machine['memory in GiB']} GiB; "
            f"{machine['kernel']}, {machine['distribution']}; trees and locks on "
            f"{machine['file system of the trees and locks']}; load before the run {load}.")


def pairs(words, known):
    return f"{words}: " + ", ".join(f"{name} {value}" for name, value in known.items()) + "."


def lines(facts):
    machine = facts["machine"]
    commit, _, changes = facts["commit"].partition(" ")
    yield (f"Taken on {facts['date']} at commit {commit[:12]} {changes}".rstrip()
           + (", with --quick: only indicative." if facts["quick"] else "."))
    yield machine_text(machine, facts["load before"])
    tools = ("compiler", "compiler for Windows", "Wine")
    yield "Built and run with: " + "; ".join(machine[tool] for tool in tools if machine[tool]) + "."
    yield pairs("Versions", facts["versions"])
    yield pairs("Settings", facts["settings"])
