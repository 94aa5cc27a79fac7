#!/usr/bin/env python3
"""Writes docs/performance.md from one run of bench/run-peers.sh.

Inputs: the Google Benchmark JSON files of varion_peers (one per operation
family, with repetitions), the instruction counts of varion_opcount under
callgrind (instructions.json, made here by `count`), a description of the
machine (machine.json, made by the script) and the hand-written notes
(bench/performance_notes.md), which the document carries as they stand.

    performance_report.py count  --opcount BIN --out results/instructions.json
    performance_report.py render --results DIR --notes FILE --out docs/performance.md

Times are the median CPU time per operation over the repetitions; a ratio
"contender / varion" of 20 means varion takes a twentieth of the contender's
time.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

FAMILIES = [
    ("numeric", "Numeric conversions (make the value, convert, read it back)"),
    ("text", "Number texts"),
    ("copy", "Copy and assignment"),
    ("ops", "Comparison and addition"),
    ("format", "Display formats"),
    ("units", "Unit conversion"),
    ("dates", "Dates"),
]

VARION = "varion"
# Contenders that measure one part of varion's work alone.
PART = "varion, part: "

# ---------------------------------------------------------------------------
# Instruction counts
# ---------------------------------------------------------------------------

# Two runs of each operation, SHORT and LONG times; the difference of their
# totals divided by LONG - SHORT is the operation's count, free of the
# program's start and end. The empty operation gives the loop's own cost,
# which is subtracted.
SHORT, LONG = 200, 1200
BASELINE = "baseline/nothing"


def callgrind_total(opcount, operation, times):
    with tempfile.TemporaryDirectory() as tmp:
        out = pathlib.Path(tmp) / "callgrind.out"
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", opcount, operation, str(times)],
            capture_output=True, text=True, check=True)
        total = None
        for line in out.read_text().splitlines():
            if line.startswith("summary:") or line.startswith("totals:"):
                total = int(line.split()[1])
        allocations = float(re.search(r"allocations (\S+)", run.stdout).group(1))
        return total, allocations


def count(args):
    operations = subprocess.run([args.opcount, "--list"], capture_output=True, text=True,
                                check=True).stdout.splitlines()
    per_op = {}
    for operation in operations:
        short, _ = callgrind_total(args.opcount, operation, SHORT)
        long, allocations = callgrind_total(args.opcount, operation, LONG)
        per_op[operation] = {"instructions": (long - short) / (LONG - SHORT), "allocations": allocations}
        print(f"  {operation}: {per_op[operation]['instructions']:.0f} instructions", file=sys.stderr)
    loop = per_op.pop(BASELINE)["instructions"]
    for values in per_op.values():
        values["instructions"] = max(0.0, values["instructions"] - loop)
    pathlib.Path(args.out).write_text(json.dumps({"loop": loop, "operations": per_op}, indent=1))


# ---------------------------------------------------------------------------
# Benchmark results
# ---------------------------------------------------------------------------

def split_name(name):
    family, rest = name.split("/", 1)
    operation, contender = rest.rsplit("/", 1)
    return family, operation, contender


def load_results(directory):
    """{family: {operation: {contender: {"time": median ns, "label": text}}}} in run order."""
    results = {}
    for family, _ in FAMILIES:
        path = directory / f"{family}.json"
        if not path.exists():
            continue
        data = json.loads(path.read_text())
        ops = results.setdefault(family, {})
        for bench in data["benchmarks"]:
            fam, operation, contender = split_name(bench["run_name"])
            entry = ops.setdefault(operation, {}).setdefault(contender, {"label": "", "times": []})
            entry["order"] = bench.get("family_index", 0)
            if bench["run_type"] == "aggregate":
                if bench.get("aggregate_name") == "median":
                    entry["time"] = bench["cpu_time"]
            else:
                entry["times"].append(bench["cpu_time"])
                entry["label"] = bench.get("label", "")
    # The order the benchmarks were registered in (the runs are interleaved at
    # random): operations as first registered; in each, varion, then varion's
    # other forms, then the peers, then the floors.
    def rank(contender, entry):
        if contender == VARION:
            group = 0
        elif contender.startswith(VARION):
            group = 1
        elif contender.startswith(("Poco", "Q")):
            group = 2
        else:
            group = 3
        return (group, entry.get("order", 0))

    for family, ops in results.items():
        ordered = sorted(ops.items(), key=lambda item: min(e.get("order", 0) for e in item[1].values()))
        results[family] = {op: dict(sorted(c.items(), key=lambda kv: rank(*kv))) for op, c in ordered}
    return results


def time_of(results, family, operation, contender):
    return results.get(family, {}).get(operation, {}).get(contender, {}).get("time")


def ns(t):
    if t is None:
        return "—"
    if t < 10:
        return f"{t:.2f}"
    if t < 100:
        return f"{t:.1f}"
    return f"{t:.0f}"


def ratio(x):
    if x is None:
        return "—"
    return f"{x:.2f}×" if x < 10 else f"{x:.1f}×" if x < 100 else f"{x:.0f}×"


# ---------------------------------------------------------------------------
# Budgets
# ---------------------------------------------------------------------------

NUMERIC_OPS = ["VT_I4 to VT_R8", "VT_R8 to VT_I2", "VT_UI8 to VT_I8 (fails)"]
TEXT_TO_R8 = ['"12.5" to VT_R8', '"12,5" to VT_R8', '"-1.25e3" to VT_R8', '"0.000123456789012345" to VT_R8']
R8_TO_TEXT = ["VT_R8 12.5 to text", "VT_R8 1234567.891 to text", "VT_R8 1e-07 to text"]
DISPLAY = ['"%.2f" of VT_R8 3.14159', '"%X" of VT_I4 31', '"%X" of VT_I4 523124044']
COPY_R8 = "copy VT_R8 (the copy constructor)"
UNITS = "UnitConvert bar to psi (7 to 6), VT_R8"

# Peers that cannot do an operation the way varion does it are left out of
# its budget, with the reason.
NOT_THE_SAME = {
    ("numeric", "VT_UI8 to VT_I8 (fails)", "QVariant"): "QVariant has no range check: it gives -1",
}


def budgets(results, counts):
    """Rows: (budget, operation, measured, met)."""
    rows = []

    def faster_than(family, op, peer, at_least, what):
        v = time_of(results, family, op, VARION)
        p = time_of(results, family, op, peer)
        if (family, op, peer) in NOT_THE_SAME:
            rows.append((what, op, "not measured: " + NOT_THE_SAME[(family, op, peer)], None))
        elif v is None or p is None:
            rows.append((what, op, "missing", False))
        else:
            # "At least 15x faster" includes 15x; plain "faster" (at_least 1) excludes a tie.
            met = p / v >= at_least if at_least > 1 else p / v > 1
            rows.append((what, op, f"{peer} / varion = {ratio(p / v)}", met))

    def within(family, op, floor, at_most, what):
        v = time_of(results, family, op, VARION)
        f = time_of(results, family, op, floor)
        if v is None or f is None:
            rows.append((what, op, "missing", False))
        else:
            rows.append((what, op, f"varion / {floor} = {v / f:.2f}", v / f <= at_most))

    def no_allocation(family, op, what):
        c = counts.get(f"{family}/{op}")
        if c is None:
            rows.append((what, op, "not counted", False))
        else:
            rows.append((what, op, f"{c['allocations']:g} allocations", c["allocations"] == 0))

    for op in NUMERIC_OPS:
        for peer in ("Poco::Dynamic::Var", "QVariant"):
            faster_than("numeric", op, peer, 15, f"numeric conversion ≥ 15× faster than {peer}")
        no_allocation("numeric", op, "numeric conversion: no allocation")
    for op in TEXT_TO_R8:
        within("text", op, "std::from_chars", 2, "text → VT_R8 ≤ 2× std::from_chars")
        faster_than("text", op, "Poco::Dynamic::Var", 3, "text → VT_R8 ≥ 3× faster than Poco")
    for op in R8_TO_TEXT:
        within("text", op, "std::to_chars fixed 15", 1.3, "VT_R8 → text ≤ 1.3× std::to_chars(fixed, 15)")
        faster_than("text", op, "snprintf %.15f", 4, "VT_R8 → text ≥ 4× faster than snprintf(\"%.15f\")")
    for op in DISPLAY:
        faster_than("format", op, "snprintf", 1, "display format faster than snprintf")
    within("copy", COPY_R8, "16-byte copy", 2, "copy of a VT_R8 ≤ 2× copying 16 bytes")
    no_allocation("copy", COPY_R8, "copy of a VT_R8: no allocation")
    v = time_of(results, "units", UNITS, VARION)
    rows.append(("UnitConvert under 50 ns", UNITS, f"{ns(v)} ns", v is not None and v < 50))
    no_allocation("units", UNITS, "UnitConvert: no allocation")
    return rows


# ---------------------------------------------------------------------------
# The document
# ---------------------------------------------------------------------------

def render(args):
    directory = pathlib.Path(args.results)
    results = load_results(directory)
    machine = json.loads((directory / "machine.json").read_text())
    counted = json.loads((directory / "instructions.json").read_text())
    counts = counted["operations"]
    out = []
    w = out.append

    w("# Performance")
    w("")
    w("<!-- Written by bench/run-peers.sh (bench/performance_report.py); the notes come from "
      "bench/performance_notes.md. Edit those, not this file. -->")
    w("")
    w("varion beside the general-purpose variant types its users know, Poco's `Poco::Dynamic::Var` "
      "and Qt 6's `QVariant`, and beside the floors any implementation stands on: a plain C++ cast, "
      "`std::from_chars`, `std::to_chars(fixed, 15)` and `snprintf`. Every contender of an operation "
      "works on the same input in the same process; each family of operations runs in its own process. "
      "Regenerate with `bench/run-peers.sh`.")
    w("")
    w("## Where it ran")
    w("")
    for key, label in [("date", "Date"), ("cpu", "Processor"), ("cpus", "Processors"), ("kernel", "Kernel"),
                       ("compiler", "Compiler"), ("flags", "Build"), ("benchmark", "Google Benchmark"),
                       ("poco", "Poco"), ("qt", "Qt"), ("valgrind", "Valgrind"), ("load", "Load average"),
                       ("repetitions", "Repetitions")]:
        if key in machine:
            w(f"- {label}: {machine[key]}")
    w("")
    w("The machine is shared and its load changes from run to run, so times move by tens of per cent "
      "between runs; the ratios, taken within one process a few milliseconds apart, move less, and the "
      "instruction counts below not at all. Times are medians of the CPU time per operation over the "
      "repetitions, in nanoseconds. A ratio is the contender's time divided by varion's: 20× means varion "
      "takes a twentieth of the contender's time, 0.5× twice the contender's.")
    w("")
    w("## Budgets")
    w("")
    w("| Budget | Operation | Measured | Met |")
    w("|---|---|---|---|")
    rows = budgets(results, counts)
    for what, op, measured, met in rows:
        mark = "—" if met is None else ("yes" if met else "**no**")
        w(f"| {what} | {op} | {measured} | {mark} |")
    missed = [r for r in rows if r[3] is False]
    w("")
    w(f"{len([r for r in rows if r[3]])} of {len([r for r in rows if r[3] is not None])} budget checks met"
      + ("." if not missed else "; the misses are explained in the notes below."))
    w("")
    parts = [(family, op, contender[len(PART):], entry.get("time"), contenders.get(VARION, {}).get("time"))
             for family, ops in results.items() for op, contenders in ops.items()
             for contender, entry in contenders.items() if contender.startswith(PART)]
    if parts:
        w("### Parts of varion's work that the floors do not do")
        w("")
        w("Measured alone in the same run (the rows \"varion, part: ...\" below): what making the "
          "result as the library must costs, beside what `snprintf` and `std::to_chars` write into a "
          "buffer on the stack.")
        w("")
        w("| Operation | Part | Part ns | varion ns | Share of varion's time |")
        w("|---|---|---:|---:|---:|")
        for family, op, part, t, v in parts:
            share = f"{100 * t / v:.0f} %" if t is not None and v else "—"
            w(f"| {op} | {part} | {ns(t)} | {ns(v)} | {share} |")
        w("")

    for family, title in FAMILIES:
        ops = results.get(family)
        if not ops:
            continue
        w(f"## {title}")
        w("")
        for operation, contenders in ops.items():
            v = contenders.get(VARION, {}).get("time")
            w(f"### {operation}")
            w("")
            w("| Contender | Median ns | Contender / varion | Result |")
            w("|---|---:|---:|---|")
            for contender, entry in contenders.items():
                t = entry.get("time")
                r = "—" if contender == VARION or v is None or t is None else ratio(t / v)
                label = entry.get("label", "").replace("|", "\\|")
                w(f"| {contender} | {ns(t)} | {r} | {label} |")
            w("")

    w("## Instruction counts (callgrind)")
    w("")
    w("varion's core paths run under `valgrind --tool=callgrind` by `varion_opcount`, on the same inputs: "
      f"each operation {SHORT} and {LONG} times, the difference of the two totals divided by "
      f"{LONG - SHORT}, less the driver's loop ({counted['loop']:.0f} instructions). These figures "
      "do not depend on the machine's load. Allocations are heap blocks per operation "
      "(operator new, which the library's strings go through).")
    w("")
    before = {}
    baseline = pathlib.Path(args.notes).parent / "instructions_before.json"
    if baseline.exists():
        earlier = json.loads(baseline.read_text())
        before = earlier["operations"]
        w(f"\"Before\" is the same driver against the library as it stood at {earlier['commit']}, before the "
          "optimisations described below (bench/instructions_before.json).")
        w("")
    w("| Operation | Instructions | Allocations | Before: instructions | Before: allocations |")
    w("|---|---:|---:|---:|---:|")
    for operation, c in counts.items():
        b = before.get(operation)
        was = f"{b['instructions']:.0f} | {b['allocations']:g}" if b else "— | —"
        w(f"| {operation} | {c['instructions']:.0f} | {c['allocations']:g} | {was} |")
    w("")
    notes = pathlib.Path(args.notes).read_text().strip()
    w(notes)
    w("")
    pathlib.Path(args.out).write_text("\n".join(out))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    sub = parser.add_subparsers(dest="command", required=True)
    c = sub.add_parser("count")
    c.add_argument("--opcount", required=True)
    c.add_argument("--out", required=True)
    r = sub.add_parser("render")
    r.add_argument("--results", required=True)
    r.add_argument("--notes", required=True)
    r.add_argument("--out", required=True)
    args = parser.parse_args()
    count(args) if args.command == "count" else render(args)


if __name__ == "__main__":
    main()
