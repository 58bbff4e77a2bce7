#!/usr/bin/env python3
"""Reads back with other people's programs what zelvo-desk writes of a small bridge that has everything.

readback_test.py PROGRAM
"""
import csv
import hashlib
import json
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

import jsonschema
import meshio
import numpy
import openpyxl
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
from vtkmodules.util.numpy_support import vtk_to_numpy

SCHEMA = pathlib.Path(__file__).resolve().parents[2] / "docs" / "results.schema.json"
TITLE = "</script><img src=x onerror=alert(1)>, \"A\" & 'B'"
STAGES = ["=1+1", '@pour "A", wet', "<é>\a & b"]
FACTORS = [1, 1, 1.25]
WEB = "webthick\n1\n384 0.5\n"
BRIDGE = f"""!@ title {TITLE}
!@ stage 1 {STAGES[0]}
!@ stage 2 {STAGES[1]}
!@ stage 3 {STAGES[2]}
!@ load_factor 3 {FACTORS[2]}
!@ bearing_spacing 24
!@ limit top_flange 33
prname\n'small'\nngird\n2\noffset\n54\nrcurv\n4800\nlgbr\n384
secdim\n36 36 48 10 240 8
{WEB}botfthick\n2\n168 0.75\n216 1.0\ntfthick\n1\n384 0.5
internal_brace\n3\n96 1 4.5\n192 1 4.5\n288 1 4.5
external_brace\n2\n96 1 5.0\n288 1 5.0
top_lateral\n4\n1 0 96 5.0\n2 96 192 5.0\n1 192 288 5.0\n2 288 384 5.0
web_stiffener\n3\n0 6 0.75\n192 5.5 0.625\n384 6 0.75
support\n3\n0\n192\n384
studs\n1\n384 12 3
pour_seq\n3\n2\n192\n192
1.0E-6 0.001 0.1\n1.0E-6 0.001 0.1
1.0E-6 0.001 2.0\n1.0E-6 0.001 0.0
2400. 150. 0.0\n1.0E-6 0.001 2.0
1
buckle\nT 1\n2\nsolver\n1 1.0E-6\nend
"""
NODES, SHELLS = 107, 52  # of a section with two girders: nodes of a station, shells of a bay
FEET = {"left_foot": [58, 91], "right_foot": [66, 99]}  # nodes of a station, of each girder
STRIP_TABLES = ("s22", "s12", "mid22", "mid12")
PARTS = {4: "internal", 5: "external", 6: "laterals"}  # bars of a field, by their table


def run(program, *arguments, status=0):
    done = subprocess.run([program, *map(str, arguments)], capture_output=True, text=True, check=False)
    assert done.returncode == status, (arguments, done.returncode, done.stdout, done.stderr)
    return done.stdout


def flat(series):
    return [value for values in series for value in values]


# ---- results.json


def check_sums(results):
    """Totals are sums of increments, envelopes bound them where their stage says."""
    for name, table in results["tables"].items():
        states = [numpy.array(stage[name]) for stage in results["totals"]]
        places = results["places"][table["along"]]
        shape = (len(table["series"]), len(places.get("number", places.get("position_in"))))
        assert all(values.shape == shape or values.size == 0 == shape[0] for values in states), name
        if table["linear"] and states[0].size:
            increments = numpy.array([stage[name] for stage in results["increments"]])
            largest = abs(increments).max()
            assert numpy.allclose(numpy.cumsum(increments, 0), states, rtol=0, atol=1e-12 * largest), name
        envelope = results["envelopes"]["totals"][name]
        for side, better in (("high", numpy.max), ("low", numpy.min)):
            assert numpy.array_equal(envelope[side], better(states, 0)), (name, side)
            tie = 1e-9 * abs(numpy.array(envelope["high"] + envelope["low"])).max(initial=0)
            for value, stage, *all_states in zip(flat(envelope[side]), flat(envelope[side + "_stage"]),
                                                 *map(flat, states)):
                assert abs(all_states[stage - 1] - value) <= tie, (name, side, stage)


def check_results(results):
    jsonschema.Draft7Validator(json.loads(SCHEMA.read_text())).validate(results)
    assert results["title"] == TITLE and results["input"]["text"] == BRIDGE
    assert results["input"]["sha256"] == hashlib.sha256(BRIDGE.encode()).hexdigest()
    assert [s["name"] for s in results["stages"]] == STAGES
    assert [s["load_factor"] for s in results["stages"]] == FACTORS
    check_sums(results)
    for stage, factor, increment in zip(results["stages"], FACTORS, results["increments"]):
        checks = stage["checks"]
        reactions = sum(flat(increment["reaction"]))
        assert math.isclose(reactions, factor * checks["reactions_kip"], rel_tol=1e-9)
        assert abs(checks["load_kip"] - checks["reactions_kip"] - checks["grounded_kip"]) < 1e-6
    geometry = results["buckling"]["geometry"]
    assert len(geometry["xyz"]) == 3 * geometry["nodes_per_section"] * len(geometry["section_in"])
    for check in results["buckling"]["history"]:
        assert len(check["modes"]) == 2 and check["modes"][0]["factor"] < check["modes"][1]["factor"]
        assert len(check["modes"][0]["shape"]) == len(geometry["xyz"])
        assert max(map(abs, check["modes"][0]["shape"])) == 10000


# ---- tables: what every writer of them has to hold


def expected_tables(results):
    """Table name to its states, each (kind, stage or None, values, governing stages or None)."""
    tables = {}
    stages = range(1, len(results["stages"]) + 1)
    for name, table in results["tables"].items():
        assert table["series"], name
        envelope = results["envelopes"]["totals"][name]
        tables[name] = [(kind, k, results[kind + "s"][k - 1][name], None)
                        for kind in ("increment", "total") for k in stages]
        tables[name] += [(side, None, envelope[side], envelope[side + "_stage"]) for side in ("high", "low")]
        if name in results["member_stress"]:
            stress = results["member_stress"][name]
            tables[name + "_stress"] = [(side, None, stress[side], envelope[side + "_stage"])
                                        for side in ("high", "low")]
    camber, buckling = results["camber"], results["buckling"]
    tables["camber"] = [("total", None, camber["camber"], None)]
    tables["to_come"] = [("total", k, camber["to_come"][k - 1], None) for k in stages]
    tables["buckling_factor"] = [("total", k, [
        [mode["factor"] for mode in checks[k - 1]["modes"]] if checks[k - 1] else [None, None]
        for checks in (buckling[kind] for kind in ("history", "batch_rule", "softest"))], None) for k in stages]
    return tables


def check_csv(path, results, strips):
    with open(path, newline="", encoding="utf-8") as file:
        header, *rows = csv.reader(file)
    assert header == ["stage", "stage_name", "kind", "girder", "station_ft", "member", "quantity", "unit",
                      "value", "governing_stage"]
    found = {}
    for row in rows:
        assert len(row) == len(header), row
        stage, name, kind, *_, quantity, _, value, governing = row
        assert name == (["'" + STAGES[0], "'" + STAGES[1], STAGES[2]][int(stage) - 1] if stage else ""), row
        values, governors = found.setdefault((quantity, kind, stage), ([], []))
        values.append(float(value) if value else None)
        governors.append(int(governing) if governing else None)
    for quantity, states in expected_tables(results).items():
        for kind, stage, values, governors in states:
            if quantity in STRIP_TABLES and not strips:
                continue
            key = ((quantity, kind, str(stage or "")) if kind in ("increment", "total") else
                   (f"{quantity} {kind}", "envelope", ""))
            expected = flat(values)
            assert found.pop(key) == (expected, flat(governors) if governors else [None] * len(expected)), key
    assert not found, list(found)
    places = {(r[3], r[4], r[5]) for r in rows if r[6] == "deflection"}
    assert places == {(str(g), repr(s / 1.0).removesuffix(".0"), "") for g in (1, 2) for s in range(33)}


def check_xlsx(path, results):
    book = openpyxl.load_workbook(path)
    tables = expected_tables(results)
    assert book.sheetnames == ["contents", *book.sheetnames[1:]] and set(book.sheetnames[1:]) == set(tables)
    assert book["contents"]["A1"].value == TITLE
    for name, states in tables.items():
        sheet = book[name]
        assert len(sheet._charts) == (name not in STRIP_TABLES), name
        rows = list(sheet.iter_rows())
        assert all(cell.data_type in "ns" for row in rows for cell in row), name
        top = next(i for i, row in enumerate(rows) if row[0].value == "station, ft")
        columns = {}  # what stands before the name of the series, to columns of values
        for column in list(zip(*rows[top:]))[3:]:
            kind = re.match(r"(total|increment) \d|(envelope|stage of) (high|low)|", column[0].value)[0]
            columns.setdefault(kind, []).append([cell.value for cell in column[1:]])
            if kind.startswith(("total", "increment")):
                stage = STAGES[int(kind[-1]) - 1].replace("\a", "_x0007_")
                assert column[0].value.startswith(f"{kind} {stage}"), column[0].value
        for kind, stage, values, governors in states:
            key = f"{kind} {stage}" if stage else f"envelope {kind}" if governors else ""
            same = [[a == b if a is None or b is None else math.isclose(a, b, rel_tol=1e-15)
                     for a, b in zip(*pair)] for pair in zip(columns.pop(key), values, strict=True)]
            assert all(map(all, same)), (name, key)
            if governors:
                assert columns.pop("stage of " + kind) == governors
        assert not columns, (name, list(columns))


# ---- fields


def read_field(path):
    """Points, cell types, and arrays of points and cells, after two readers have agreed on them."""
    mesh = meshio.read(path)
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(str(path))
    reader.Update()
    grid = reader.GetOutput()
    points, cells = grid.GetPointData(), grid.GetCellData()
    assert len(mesh.points) == grid.GetNumberOfPoints() > 0
    assert sum(len(block.data) for block in mesh.cells) == grid.GetNumberOfCells() > 0
    assert numpy.array_equal(mesh.points, vtk_to_numpy(grid.GetPoints().GetData()))
    arrays = {}
    for data, theirs in ((points, mesh.point_data), (cells, mesh.cell_data)):
        for i in range(data.GetNumberOfArrays()):
            name, values = data.GetArrayName(i), vtk_to_numpy(data.GetArray(i))
            other = theirs[name] if data is points else numpy.concatenate(theirs[name])
            assert numpy.array_equal(values, other, equal_nan=True), (path, name)
            arrays[name] = values
    fields = grid.GetFieldData()
    for i in range(fields.GetNumberOfArrays()):
        arrays[fields.GetArrayName(i)] = vtk_to_numpy(fields.GetArray(i))
    types = vtk_to_numpy(grid.GetCellTypesArray())
    assert [28] * SHELLS * 16 == types[:SHELLS * 16].tolist() and set(types[SHELLS * 16:]) == {3}
    return types, arrays


def files_of(path):
    sets = ElementTree.parse(path).getroot().find("Collection").findall("DataSet")
    return [(float(s.get("timestep")), path.parent / s.get("file")) for s in sets]


def check_stage_field(path, results, k):
    types, arrays = read_field(path)
    assert arrays["stage"].tolist() == [k]
    for kind in ("increment", "total"):
        tables = results[kind + "s"][k - 1]
        for name, nodes in FEET.items():
            for node, expected in zip(nodes, tables[name]):
                vertical = arrays[kind + "_displacement"][node - 1::NODES, 1][:len(expected)]
                assert numpy.allclose(vertical, expected, rtol=1e-12, atol=1e-15), (path, kind, name)
        shells = types == 28
        for name, table in (("s22", "mid22"), ("s12", "mid12")):
            stress = arrays[f"{kind}_{name}"][shells].reshape(-1, SHELLS)
            assert numpy.array_equal(stress.T, tables[table]), (path, kind, table)
        for part, table in PARTS.items():
            force = arrays[kind + "_axial_force"][arrays["part"] == part]
            assert numpy.array_equal(force.reshape(-1, len(tables[table])).T, tables[table]), (path, table)
    assert (arrays["thickness"][shells] > 0).all() and (arrays["modulus"] > 0).all()


def check_fields(folder, results):
    stages = files_of(folder / "small.pvd")
    assert [time for time, _ in stages] == [1, 2, 3]
    for k, (_, path) in enumerate(stages, 1):
        check_stage_field(path, results, k)
    modes = iter(files_of(folder / "small_modes.pvd"))
    for k, check in enumerate(results["buckling"]["history"], 1):
        for mode in check["modes"]:
            _, arrays = read_field(next(modes)[1])
            assert arrays["stage"].tolist() == [k] and arrays["factor"].tolist() == [mode["factor"]]
            longest = numpy.linalg.norm(arrays["displacement"], axis=1).max()
            assert math.isclose(longest, 1, rel_tol=1e-12)
    assert next(modes, None) is None


# ---- the deck for CalculiX


def cards(path):
    """The deck as (card, rows of numbers); rows of words are left out."""
    for block in re.split(r"^(?=\*)", path.read_text(), flags=re.M)[1:]:
        card, *rows = block.splitlines()
        yield card, [[float(w) for w in row.split(",") if w.strip()] for row in rows if re.match(r"[-.\d]", row)]


def complete_reactions(path, moved, forces):
    """CalculiX's forces at supports lack what springs bring, and contain what is loaded there directly."""
    nodes, sets, bars, stiffness, loads = {}, {}, {}, {}, []
    for card, rows in cards(path):
        name = card.split("=")[-1]
        if card.startswith("*NODE,"):
            nodes |= {int(n): numpy.array(xyz) for n, *xyz in rows}
        elif card.startswith("*NSET"):
            sets[name] = {n for row in rows for n in row}
        elif "SPRINGA" in card:
            bars[name] = [(int(a), int(b)) for _, a, b in rows]
        elif card.startswith("*SPRING"):
            stiffness[name] = rows[-1][0]
        elif card == "*CLOAD":
            loads = [(n, load) for n, direction, load in rows if direction == 2]
    for name, pairs in bars.items():
        for a, b in pairs:
            along = (nodes[b] - nodes[a]) / numpy.linalg.norm(nodes[b] - nodes[a])
            upward = stiffness[name] * along @ (moved[b] - moved[a]) * along[1]
            loads += [(a, upward), (b, -upward)]
    return [force - sum(load for n, load in loads if n in sets[f"SUPPORT{i}"])
            for i, force in enumerate(forces, 1)]


def solve_deck(path):
    """Displacements of the feet and ends of bars, vertical reactions of the supports."""
    environment = os.environ | {"OMP_NUM_THREADS": "1"}
    subprocess.run(["ccx", path.stem], cwd=path.parent, env=environment, check=True, capture_output=True)
    moved, forces, block = {}, [], ""
    for line in path.with_suffix(".dat").read_text().splitlines():
        words = line.split()
        if "for set" in line:
            block = line
        elif words and "SUPPORT" in block:
            forces.append(float(words[1]))
        elif words:
            moved[int(words[0])] = numpy.array([float(word) for word in words[1:4]])
    return moved, complete_reactions(path, moved, forces)


def compare_deck(path, results, k):
    """Largest differences of reactions and of feet's deflections, shares of their largest value."""
    moved, forces = solve_deck(path)
    stage = results["increments"][k - 1]
    factor = results["stages"][k - 1]["load_factor"]
    ours = [sum(girders) / factor for girders in zip(*stage["reaction"])]
    reaction = max(abs(a - b) for a, b in zip(ours, forces, strict=True)) / max(map(abs, ours))
    pattern, feet_nodes = ((NODES, FEET) if len(stage["reaction"]) == 2 else
                           (54, {"left_foot": [38], "right_foot": [46]}))
    pairs = [(value / factor, moved[s * pattern + node][1]) for name, nodes in feet_nodes.items()
             for node, values in zip(nodes, stage[name]) for s, value in enumerate(values)]
    a, b = max(pairs, key=lambda pair: abs(pair[0]))
    deflection = max(abs(a - b) for a, b in pairs) / abs(a)
    print(f"{path.stem}: reactions {ours} {forces}, {100 * reaction:.3f} %; "
          f"deflection {a:.6f} {b:.6f} in, {100 * deflection:.3f} %")
    return reaction, deflection


# ---- report, comparison


def check_report(path):
    text = path.read_text(encoding="utf-8")
    assert len(text) < 3_000_000 and text.startswith("<!DOCTYPE html>")
    assert "default-src 'none'" in text
    for fetched in (r"(src|href|data|action)\s*=\s*[\"']?\s*(https?:)?//", r"url\(\s*[\"']?https?:", "@import",
                    "<link", "<img", "<iframe"):
        assert not re.search(fetched, text), fetched


def check_diff(program, folder):
    results = folder / "results.json"
    for a, b in ((results, results), (folder / "small.txt", folder / "small.txt")):
        assert run(program, "diff", a, b) == "no difference\n"
        assert json.loads(run(program, "diff", a, b, "--json")) == []
    changed = folder / "changed.txt"
    changed.write_text(BRIDGE.replace(WEB, WEB.replace("0.5", "0.625")), encoding="utf-8")
    assert "webthick row 1 thickness: 0.5 -> 0.625" in run(program, "diff", folder / "small.txt", changed, status=1)
    text = json.loads(results.read_text())
    text["totals"][1]["deflection"][0][8] *= 2
    (folder / "other.json").write_text(json.dumps(text))
    first = json.loads(run(program, "diff", results, folder / "other.json", "--json", status=1))[0]
    assert first["what"] == "deflection, total 2, girder 1, 8 ft", first


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        bridge = folder / "small.txt"
        bridge.write_text(BRIDGE, encoding="utf-8")
        run(program, "run", bridge, "--buckling", "history")
        results = json.loads((folder / "results.json").read_text(encoding="utf-8"))
        check_results(results)
        for strips in ([], ["--strips"]):
            run(program, "csv", bridge, *strips)
            check_csv(folder / "results.csv", results, bool(strips))
        run(program, "xlsx", bridge)
        check_xlsx(folder / "results.xlsx", results)
        run(program, "vtu", bridge, "--buckling", "history")
        check_fields(folder, results)
        for k in (1, 2, 3):
            run(program, "inp", bridge, "--stage", k)
            differences = compare_deck(folder / f"small_stage_{k}.inp", results, k)
            assert max(differences) < 0.05, differences
        run(program, "report", bridge)
        check_report(folder / "report.html")
        check_diff(program, folder)
    print("ok")


if __name__ == "__main__":
    main()
