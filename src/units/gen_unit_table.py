#!/usr/bin/env python3
"""Generates unit_table_data.h from unit_table.txt.

    python3 gen_unit_table.py            writes unit_table_data.h beside this script
    python3 gen_unit_table.py --check    exits 1 when unit_table_data.h is out of date
    python3 gen_unit_table.py --output F writes F instead

Sizes are evaluated in exact rational arithmetic (fractions.Fraction); each
factor size(reference) / size(unit) is rounded once to the nearest double and
written in its shortest round-trip form, which a C++ compiler reads back to
the same double. The data file's format is described at its top.
"""

import ast
import operator
import sys
from fractions import Fraction
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOURCE = HERE / "unit_table.txt"
OUTPUT = HERE / "unit_table_data.h"

FIRST_EXTENDED = 16384  # codes from here on are 16384 + 256 n + h
FIRST_FIELDBUS = 1000   # FOUNDATION Fieldbus codes: 1000 to 16383
TEMPERATURE_KIND = 1
PIN_TOLERANCE = Fraction(1, 10**6)


class TableError(Exception):
    pass


# ---------------------------------------------------------------------------
# Expressions: numbers, names, + - * / ** (integer exponents) and parentheses.
# ---------------------------------------------------------------------------
_BINARY = {ast.Add: operator.add, ast.Sub: operator.sub, ast.Mult: operator.mul, ast.Div: operator.truediv}


def evaluate(text, constants, where):
    try:
        tree = ast.parse(text.strip(), mode="eval")
    except SyntaxError as e:
        raise TableError(f"{where}: cannot read expression '{text}': {e.msg}") from None

    def walk(node):
        if isinstance(node, ast.Expression):
            return walk(node.body)
        if isinstance(node, ast.Constant) and isinstance(node.value, (int, float)):
            # The literal's own digits, not the double Python made of them.
            return Fraction(ast.get_source_segment(text.strip(), node))
        if isinstance(node, ast.Name):
            if node.id not in constants:
                raise TableError(f"{where}: unknown name '{node.id}'")
            return constants[node.id]
        if isinstance(node, ast.UnaryOp) and isinstance(node.op, (ast.USub, ast.UAdd)):
            value = walk(node.operand)
            return -value if isinstance(node.op, ast.USub) else value
        if isinstance(node, ast.BinOp) and type(node.op) in _BINARY:
            return _BINARY[type(node.op)](walk(node.left), walk(node.right))
        if isinstance(node, ast.BinOp) and isinstance(node.op, ast.Pow):
            exponent = walk(node.right)
            if exponent.denominator != 1:
                raise TableError(f"{where}: exponent must be an integer in '{text}'")
            return walk(node.left) ** int(exponent)
        raise TableError(f"{where}: unsupported construct in '{text}'")

    value = walk(tree)
    if value <= 0:
        raise TableError(f"{where}: '{text}' is not positive")
    return value


# ---------------------------------------------------------------------------
# Reading the data file
# ---------------------------------------------------------------------------
def strip_comment(line):
    return line.split("#", 1)[0].strip()


def parse_code_ranges(text, where):
    codes = []
    for item in text.split():
        first, _, last = item.partition("-")
        try:
            a, b = int(first), int(last or first)
        except ValueError:
            raise TableError(f"{where}: bad code range '{item}'") from None
        if b < a:
            raise TableError(f"{where}: empty range '{item}'")
        codes.extend(range(a, b + 1))
    return codes


def read_table(path):
    kinds = {}            # number -> name
    kind_of = {}          # quantity -> kind number
    constants = {}
    rows = {}             # code -> dict
    listed = []           # codes in file order
    mirrors = []
    for number, raw in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        where = f"{path.name}:{number}"
        line = raw.strip()
        if not line or line.startswith("#"):
            continue
        if line.startswith("kind "):
            head, _, quantities = line[5:].partition(":")
            num, _, name = head.strip().partition(" ")
            k = int(num)
            if k in kinds:
                raise TableError(f"{where}: kind {k} defined twice")
            kinds[k] = name.strip()
            for q in quantities.split(","):
                q = q.strip()
                if q in kind_of:
                    raise TableError(f"{where}: quantity '{q}' in two kinds")
                kind_of[q] = k
        elif line.startswith("const "):
            name, _, expr = strip_comment(line[6:]).partition("=")
            name = name.strip()
            if not name.isidentifier() or name in constants:
                raise TableError(f"{where}: bad or repeated constant '{name}'")
            constants[name] = evaluate(expr, constants, where)
        elif line.startswith("mirror "):
            mirrors.extend(parse_code_ranges(strip_comment(line[7:]), where))
        else:
            fields = [f.strip() for f in line.split("|")]
            if len(fields) != 6:
                raise TableError(f"{where}: expected 6 fields, found {len(fields)}")
            code, group = int(fields[0]), int(fields[1])
            if code in rows:
                raise TableError(f"{where}: code {code} listed twice")
            if fields[5] not in kind_of:
                raise TableError(f"{where}: quantity '{fields[5]}' has no kind")
            rows[code] = {"code": code, "group": group, "size": fields[2], "symbol": fields[3],
                          "name": fields[4], "quantity": fields[5], "kind": kind_of[fields[5]],
                          "where": where}
            listed.append(code)
    if listed != sorted(listed):
        raise TableError("rows are not listed in ascending code order")
    return kinds, constants, rows, mirrors


# ---------------------------------------------------------------------------
# Building the table
# ---------------------------------------------------------------------------
def is_hart(code):
    return code < FIRST_FIELDBUS or code >= FIRST_EXTENDED


def size_of(row, constants):
    spec = row["size"]
    if spec in ("-", "temperature") or spec.startswith("="):
        return None
    return evaluate(spec, constants, row["where"])


def factor_of(row, rows, constants):
    """The row's factor as a double."""
    spec, where = row["size"], row["where"]
    if spec == "-":
        if row["group"] != row["code"]:
            raise TableError(f"{where}: a unit of its own must be its own group")
        return 1.0
    if spec == "temperature":
        if row["kind"] != TEMPERATURE_KIND:
            raise TableError(f"{where}: only temperatures convert by formula")
        return 0.0
    reference = rows[row["group"]]
    reference_size = size_of(reference, constants)
    if reference_size is None:
        raise TableError(f"{where}: reference row {reference['code']} has no size")
    if spec.startswith("="):
        literal, _, approx = spec[1:].partition("~")
        fixed = float(literal)
        expected = reference_size / evaluate(approx, constants, where)
        if abs(Fraction(fixed) / expected - 1) > PIN_TOLERANCE:
            raise TableError(f"{where}: fixed factor {fixed} disagrees with {approx.strip()}")
        return fixed
    return float(reference_size / size_of(row, constants))


def build(kinds, constants, rows, mirrors):
    for code, row in rows.items():
        where = row["where"]
        if not 0 < code < 65536:
            raise TableError(f"{where}: code {code} out of range")
        group = rows.get(row["group"])
        if group is None:
            raise TableError(f"{where}: group {row['group']} has no reference row")
        if group["kind"] != row["kind"]:
            raise TableError(f"{where}: kind differs from the reference row's")
        if is_hart(code) != is_hart(row["group"]):
            raise TableError(f"{where}: HART and fieldbus codes share group {row['group']}")
    table = {}
    for code, row in rows.items():
        table[code] = dict(row, factor=factor_of(row, rows, constants))
        if code == row["group"] and table[code]["factor"] != 1.0:
            raise TableError(f"{row['where']}: reference row's factor is not 1.0")
    for code in mirrors:
        h = (code - FIRST_EXTENDED) % 256
        if code < FIRST_EXTENDED or code in table or h not in rows or not h < FIRST_FIELDBUS:
            raise TableError(f"mirror {code}: not an extended code repeating a HART row")
        table[code] = dict(table[h], code=code)
    return [table[c] for c in sorted(table)]


# ---------------------------------------------------------------------------
# Writing the header
# ---------------------------------------------------------------------------
def c_string(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def render(kinds, table):
    out = []
    w = out.append
    w("// Generated by gen_unit_table.py from unit_table.txt: edit those, not this file.\n")
    w("//\n// The unit table, ascending by code. factor: units per reference unit of the\n")
    w("// group (the group number is the reference unit's code); 0.0 for temperatures,\n")
    w("// which convert by formula.\n//\n// Kinds:\n")
    for k in sorted(kinds):
        w(f"//   {k:>2}  {kinds[k]}\n")
    w("#pragma once\n\n#include \"units/unit_row.h\"\n\nnamespace varion::detail {\n\n")
    w(f"inline constexpr int kUnitRowCount = {len(table)};\n\n")
    w("// clang-format off\n")
    w("inline constexpr UnitRow kUnitRows[kUnitRowCount] = {\n")
    w("//   code  group kind  factor\n")
    for r in table:
        cells = f"{{{r['code']:>5}, {r['group']:>5}, {r['kind']:>2}, {repr(r['factor'])}}},"
        w(f"    {cells:<44}// {r['symbol'] or r['name']}\n")
    w("};\n\n")
    w("inline constexpr UnitText kUnitTexts[kUnitRowCount] = {\n")
    for r in table:
        w(f"    {{{c_string(r['symbol'])}, {c_string(r['name'])}, {c_string(r['quantity'])}}},\n")
    w("};\n// clang-format on\n\n}  // namespace varion::detail\n")
    return "".join(out)


def main(argv):
    check = "--check" in argv
    output = OUTPUT
    if "--output" in argv:
        index = argv.index("--output")
        if index + 1 >= len(argv):
            print("gen_unit_table.py: --output needs a file", file=sys.stderr)
            return 2
        output = Path(argv[index + 1])
    try:
        kinds, constants, rows, mirrors = read_table(SOURCE)
        text = render(kinds, build(kinds, constants, rows, mirrors))
    except TableError as e:
        print(f"gen_unit_table.py: {e}", file=sys.stderr)
        return 1
    if check:
        current = output.read_text(encoding="utf-8") if output.exists() else ""
        if current != text:
            print(f"gen_unit_table.py: {output} is out of date; run gen_unit_table.py", file=sys.stderr)
            return 1
        return 0
    output.write_text(text, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
