#!/usr/bin/env python3
"""Fails reads of inputs, in whole runs of the program: what cannot be read to its end is refused, not taken as far as it goes.

For every kind of input: a run under strace lists the calls that read it; then one run for some of them, in which that call
fails. It must give the same output all the same, or end with a reason and a status that is not 0, and leave no output; or say
what is left out.

usage: failing_reads.py ZENRO [ERRAND...]      exit status 77: strace cannot trace here
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

CALLS = "read,pread64,readv,preadv,lseek,openat,fstat,newfstatat,stat,statx"
READS, OTHERS = 6, 3  # calls of one kind on one input that are failed, the first and the last among them

LINES = "".join('"LINESTRING(40512010 %d,40512090 3456080)",a name that fills the line\n' % (3456010 + i % 80)
                for i in range(4000))
LAYER = {"type": "FeatureCollection", "crs": {"type": "name", "properties": {"name": "urn:ogc:def:crs:EPSG::4528"}},
         "features": [{"type": "Feature", "properties": {"n": i}, "geometry": {
             "type": "LineString", "coordinates": [[40512010, 3456010 + i % 80], [40512090, 3456080]]}} for i in range(2000)]}

FORMATS = ("in.gpkg", "in.shp", "in.fgb", "in.kml", "in.gml", "in.mif", "in.dxf", "in.geojsonl", "in.sqlite", "in.tab")

# Words of what is left out, with status 4.
PARTLY = (b"reading ended early", b"cannot be used as a block", b"Cannot open block file", b"cannot be read to its end")


def run(command, folder, tracing=()):
    environment = dict(os.environ, ZENRO_LANGUAGE="en", XDG_CONFIG_HOME=str(folder / "config"), TMPDIR=str(folder))
    return subprocess.run([*tracing, *command], cwd=folder, env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=120)


def traced(command, folder, *more):
    log = folder / "calls.log"
    done = run(command, folder, ["strace", "-f", "-qq", "-y", "-o", str(log), "-e", "trace=" + CALLS, *more])
    lines = log.read_text(errors="replace").splitlines()
    log.unlink()
    return done, lines


def reads_of(lines, name):
    """The names of the input, and the calls that read it, in their order; counted among the calls of that kind on it."""
    counts, found, names = {}, [], set()
    for line in lines:
        match = re.match(r'(\d+)\s+(\w+)\((?:AT_FDCWD(?:<[^>]*>)?, )?(?:\d+<([^>]*)>|"([^"]*)")', line)
        if not match:
            continue
        thread, call, opened, named = match.groups()
        if pathlib.PurePath(opened or named).name != name:
            continue
        names.add(opened or named)
        number = counts[thread, call] = counts.get((thread, call), 0) + 1
        found.append((call, number))
    return sorted(names), sorted(set(found))


def strokes(output):
    """Without their order: a database without its index gives features in another."""
    return sorted(re.split(b'[M"]', output))


def spread(items):
    chosen = []
    for kind in sorted({call for call, _ in items}):
        calls = [item for item in items if item[0] == kind]
        most = READS if "read" in kind else OTHERS
        chosen += calls if len(calls) <= most else [calls[i * (len(calls) - 1) // (most - 1)] for i in range(most)]
    return chosen


def prepare(zenro, folder):
    (folder / "r.rules").write_text("* -> symbol 200\n" + "# a comment that fills the file\n" * 4000)
    (folder / "few.rules").write_text("* -> symbol 200\n")
    (folder / "named.rules").write_text("* -> symbol 200, note #, label n\n")
    (folder / "in.geojson").write_text(json.dumps(LAYER))
    (folder / "few.geojson").write_text(json.dumps(dict(LAYER, features=LAYER["features"][:2])))
    spots = dict(LAYER, features=[{"type": "Feature", "properties": {}, "geometry": {
        "type": "Point", "coordinates": [40512010 + i, 3456010 + i % 80]}} for i in range(20)])
    (folder / "spots.geojson").write_text(json.dumps(spots))
    (folder / "spots.rules").write_text("* -> symbol 17\n")
    (folder / "in.csv").write_text("WKT,name\n" + LINES)
    (folder / "points.txt").write_text("".join("3456000.%d 512000.%d\n" % (i, i) for i in range(9000)))
    for name in ("a.dwg", "a.rec"):
        run([zenro, "draw", "in.geojson", "--rules", "few.rules", "--scale", "1000", "-o", name], folder).check_returncode()
    run([zenro, "draw", "spots.geojson", "--rules", "spots.rules", "--scale", "1000", "-o", "house.dwg"], folder).check_returncode()
    (folder / "blocks.txt").write_text("17 house\n")
    run([zenro, "series", "plan", "in.geojson", "--rules", "few.rules", "--scale", "500", "--within",
         "40500000,3450000,40505000,3455000", "-o", "plan.gpkg"], folder).check_returncode()
    for name in FORMATS:
        run(["ogr2ogr", name, "in.geojson"], folder).check_returncode()


def main():
    zenro = str(pathlib.Path(sys.argv[1]).resolve())
    if not shutil.which("strace") or subprocess.run(["strace", "-qq", "-e", "inject=close:error=EIO:when=1000", "true"],
                                                    capture_output=True).returncode != 0:
        print("strace is missing or may not trace here; install strace or allow ptrace")
        return 77

    def draw(name, rules="few.rules", out="out.svg", *more):
        known = name.endswith((".kml", ".gml", ".geojsonl", ".shp"))
        source = [] if known else ["--source", "EPSG:4528"]
        return ["draw", name, "--rules", rules, "--scale", "1000", "-o", out, *source, *more]

    errands = {name: draw(name) for name in ("in.geojson", "in.csv", *FORMATS)}
    # A sheet reads its data again from the beginning; what it does not find there the other file hides.
    errands["few.geojson"] = draw("few.geojson", "few.rules", "out.svg", "in.geojson", "--sheet", "40512000,3456000,40512100,3456100")
    errands.update({"in.shx": draw("in.shp"), "in.dbf": draw("in.shp"), "in.prj": draw("in.shp"), "in.cpg": draw("in.shp"),
                    "r.rules": draw("in.geojson", "r.rules"),
                    "a.dwg": ["dwg", "draw", "a.dwg", "out.svg"], "a.rec": ["replay", "a.rec", "out.svg"],
                    # What the program has beside it, or is given.
                    "symbol.dat": draw("in.geojson"), "Orvnote.cod": draw("in.geojson", "named.rules"),
                    "acad.dwg": draw("in.geojson", "few.rules", "out.dwg"),
                    "house.dwg": draw("spots.geojson", "spots.rules", "out.dwg", "--blocks", "blocks.txt"),
                    "blocks.txt": draw("spots.geojson", "spots.rules", "out.dwg", "--blocks", "blocks.txt"),
                    "plan.gpkg": ["series", "draw", "plan.gpkg", "--dry-run"],
                    "points.txt": ["coord", "to-geo", "points.txt", "--meridian", "120"]})
    runs, faults = 0, []
    with tempfile.TemporaryDirectory(prefix="zm-reads-") as name:
        folder = pathlib.Path(name)
        prepare(zenro, folder)
        for file, command in errands.items():
            if sys.argv[2:] and file not in sys.argv[2:]:
                continue
            out = folder / next((word for word in command if word.startswith("out.")), "none")
            done, lines = traced([zenro, *command], folder)
            names, calls = reads_of(lines, file)
            paths = [word for name in names for word in ("-P", name)]
            calls = spread(calls)
            whole = out.read_bytes() if out.exists() else done.stdout
            if done.returncode != 0 or not calls:
                faults.append(f"{file}: the run without a failure ended with {done.returncode}: {done.stderr.decode()}")
            failed = 0
            for call, number in calls:
                out.unlink(missing_ok=True)
                done, lines = traced([zenro, *command], folder, *paths, "-e", f"inject={call}:error=EIO:when={number}")
                if not any("(INJECTED)" in line for line in lines):
                    continue
                failed += 1
                made = out.read_bytes() if out.exists() else None
                same = done.returncode == 0 and strokes(made or done.stdout) == strokes(whole)
                refused = 0 < done.returncode < 9 and b"error: " in done.stderr and made is None
                reported = done.returncode == 4 and any(words in done.stderr for words in PARTLY)
                if not (same or refused or reported):
                    faults.append(f"{file}: {call} number {number} fails: status {done.returncode}, output "
                                  f"{out.exists()}: {done.stderr.decode()}")
            out.unlink(missing_ok=True)
            if calls and failed == 0:
                faults.append(f"{file}: none of its reads was failed")
            runs += failed
            print(f"{file}: {failed} runs", flush=True)
    print(f"{runs} runs, {len(faults)} faults")
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
