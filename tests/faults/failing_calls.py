#!/usr/bin/env python3
"""Fails each call that writes, one after the other, in whole runs of the program, and looks at what is left.

For every output and every settings file: a run under strace lists the calls that reach files of its folder; then one run
for each of them, in which that call fails. Whatever fails, each old file or the new one is there whole, and nothing
unfinished; a run that ends with status 0 has left the new ones; one that does not has said why.

usage: failing_calls.py ZENRO SAVE_SETTINGS [--all]      exit status 77: strace cannot trace here
Without --all some calls of each errand are failed, chosen by the seed ZM_SEED.
"""
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile

CALLS = ("openat,write,pwrite64,writev,copy_file_range,sendfile,fsync,fdatasync,rename,renameat,renameat2,fchmod,close,"
         "ftruncate,lseek,mkdir")
ERRORS = {"openat": "EACCES", "fsync": "EIO", "close": "EIO", "lseek": "EIO", "rename": "EACCES", "renameat": "EACCES",
          "renameat2": "EACCES", "mkdir": "EACCES"}
MOST = 40  # calls of one kind that are failed; more are spread over all of them
SAMPLE = 5  # calls of an errand that are failed without --all
OLD = b"the old file\n"
CHANCE = rb"D:\d+[-+Z'\d]*|\d{4}-\d\d-\d\dT[-+:\dZ]+|<[0-9a-f]{32}>|uuid:[-0-9a-f]+"  # dates and numbers of a PDF

RULES = "* -> symbol 200\n"
SYSTEM = '"crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::4528"}}'


def collection(features):
    return '{"type":"FeatureCollection",%s,\n"features":[%s]}' % (SYSTEM, ",".join(features))


def feature(kind, coordinates, properties=""):
    return ('{"type":"Feature","properties":{%s},"geometry":{"type":"%s","coordinates":%s}}'
            % (properties, kind, json.dumps(coordinates)))


INPUTS = {
    "r.rules": RULES,
    "in.geojson": collection(feature("LineString", [[40512010 + i, 3456010], [40512090 - i, 3456080]]) for i in range(60)),
    "heights.geojson": collection(
        feature("Point", [40512000 + 10 * (i % 8), 3456000 + 10 * (i // 8), 100 + (i % 8) * (i // 8) / 7]) for i in range(64)),
    "areas.geojson": collection(
        feature("Polygon", [[[40512000 + 9 * i, 3456000], [40512008 + 9 * i, 3456000], [40512008 + 9 * i, 3456008],
                             [40512000 + 9 * i, 3456000]]], '"id":%d' % i) for i in range(30)),
    "wide.geojson": collection([feature("LineString", [[40512010, 3456010], [40512490, 3456240]])]),
}
NOTES = ("[NOTE CLASS]\r\nTOTAL=1\r\nCWEIGHT=2.000\r\nC01=0,note,1,3,25,25,2,1,1,memo\r\n[NOTE FONT]\r\nSCREENFONT=System\r\n"
         "1=Song,Standard,Hztxt,0,\r\n")


class Errand:
    """One command that replaces files, or makes them.

    old: files that are there before it; prepare: commands that make what it reads, run once.
    varying: pattern of names whose files differ from run to run, and what must hold of one.
    """

    def __init__(self, name, command, old=None, prepare=(), varying=None):
        self.name, self.command, self.old, self.prepare = name, command, old or {}, prepare
        # Written at each start, whether that succeeds or not.
        self.varying = {r"config/zenromath/Zenro\.ini": lambda content: content.endswith(b"\r\n"), **(varying or {})}

    def run(self, command, folder, tracing=None):
        environment = dict(os.environ, ZENRO_LANGUAGE="en", XDG_CONFIG_HOME=str(folder / "config"),
                           TMPDIR=str(folder / "temporary"), SOURCE_DATE_EPOCH="1700000000",
                           OGR_CURRENT_DATE="2026-01-01T00:00:00.000Z")
        log = folder / "calls.log"
        traced = ["strace", "-f", "-qq", "-y", "-o", str(log), *tracing] if tracing else []
        done = subprocess.run([*traced, *command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=120)
        lines = log.read_text(errors="replace").splitlines() if traced else []
        log.unlink(missing_ok=True)
        return done, lines

    def proof(self, name):
        """What must hold of a file whose bytes differ from run to run; None for other files."""
        return next((holds for pattern, holds in self.varying.items() if re.fullmatch(pattern, name)), None)


def json_lines(content):
    """Each line of a log is whole; the last may be cut, and is passed over by who reads it."""
    try:
        return all(json.loads(line) for line in content.decode().splitlines(keepends=True) if line.endswith("\n"))
    except ValueError:
        return False


def database(content):
    with tempfile.NamedTemporaryFile(prefix="zm-faults-", suffix=".gpkg") as copy:
        copy.write(content)
        copy.flush()
        connection = sqlite3.connect(copy.name)
        try:
            return connection.execute("PRAGMA integrity_check").fetchone() == ("ok",)
        except sqlite3.DatabaseError:
            return False
        finally:
            connection.close()


def anything(_):
    return True


def errands(zenro, save_settings):
    def on(*arguments):
        return [zenro, *arguments]

    def drawn(name, *more):
        return on("draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "--quiet", "-o", name, "--overwrite", *more)

    made = [Errand(kind, drawn("out." + kind), {"out." + kind: OLD}) for kind in ("svg", "dwg", "rec", "png", "pdf", "dxf")]
    made.append(Errand("two forms", drawn("out.svg", "-o", "out.dwg"), {"out.svg": OLD, "out.dwg": OLD}))
    for kind in ("gpkg", "geojson", "shp"):
        made.append(Errand("contours to " + kind, on("contours", "heights.geojson", "--interval", "1", "-o", "out." + kind,
                                                     "--overwrite"), {"out." + kind: OLD}))
    made.append(Errand("areas to gpkg", on("measure", "layer", "areas.geojson", "-o", "out.gpkg", "--overwrite"),
                       {"out.gpkg": OLD}))
    made.append(Errand("areas to kml", on("measure", "layer", "areas.geojson", "-o", "out.kml", "--overwrite"),
                       {"out.kml": OLD}))
    made.append(Errand("another zone", on("coord", "transform", "in.geojson", "-o", "out.geojson", "--to-zone", "6",
                                          "--overwrite"), {"out.geojson": OLD}))
    made.append(Errand("page of symbols", on("symbols", "sheet", "-o", "out.html", "--overwrite"), {"out.html": OLD}))
    dwg, rec = [drawn("a.dwg")], [drawn("a.rec")]
    made.append(Errand("drawing to DXF", on("dwg", "to-dxf", "a.dwg", "out.dxf", "--overwrite"), {"out.dxf": OLD}, dwg))
    for kind in ("svg", "png"):
        made.append(Errand("drawing to " + kind, on("dwg", "draw", "a.dwg", "out." + kind, "--overwrite"),
                           {"out." + kind: OLD}, dwg))
    for kind in ("svg", "dwg", "pdf"):
        made.append(Errand("recording to " + kind, on("replay", "a.rec", "out." + kind, "--overwrite"), {"out." + kind: OLD},
                           rec))
    made.append(Errand("data of the demonstration", on("demo", "made", "--data-only", "--overwrite"),
                       {"made/data/boundaries.geojson": OLD}))
    plan = on("series", "plan", "wide.geojson", "-o", "plan.gpkg", "--scale", "500", "--rules", "./r.rules", "--overwrite",
              "--quiet")
    made.append(Errand("plan of a series", plan, {"plan.gpkg": OLD}))
    varying = {r"plan\.gpkg": database, r"plan\.run/.*\.jsonl": json_lines, r"plan\.run/(lock|.*\.chunks)": anything}
    made.append(Errand("sheets of a series", on("series", "draw", "plan.gpkg", "--jobs", "1", "--quiet"), {}, [plan], varying))
    made.append(Errand("index of a series", on("series", "index", "plan.gpkg", "-o", "out.html", "--overwrite"),
                       {"out.html": OLD}, [plan]))

    def saved(kind, name, old):
        return Errand("settings: " + kind, [save_settings, kind], {name: old.encode()})

    made.append(saved("key", "settings.ini", "[a]\r\nk=old\r\n"))
    made.append(saved("layers", "map.ini", "[LayerSet]\r\nLayers=1\r\nLayer1=AAA 100 199 3 1\r\n"))
    made.append(saved("widths", "neworv.ini", "[PenWidth]\r\nDefault=3\r\n"))
    made.append(saved("colours", "config/zenromath/neworv.ini", "[PenColor]\r\n1=1,2,3\r\n"))
    made.append(saved("classes", "Orvnote.cod", NOTES))
    made.append(saved("fonts", "Orvnote.cod", NOTES))
    return made


def fresh(folder, prepared):
    for entry in folder.iterdir():
        shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
    shutil.copytree(prepared, folder, dirs_exist_ok=True)


def prepare(errand, folder):
    (folder / "temporary").mkdir(parents=True)
    for name, text in INPUTS.items():
        (folder / name).write_text(text)
    for command in errand.prepare:
        done, _ = errand.run(command, folder)
        if done.returncode != 0:
            raise RuntimeError(f"{errand.name}: {command}: {done.stderr.decode()}")
    for name, content in errand.old.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(content)


def content(folder):
    """The bytes of each file that is there, without what differs in every PDF."""
    return {str(path.relative_to(folder)): re.sub(CHANCE, b"", path.read_bytes()) if path.suffix == ".pdf" else path.read_bytes()
            for path in folder.rglob("*") if path.is_file()}


def calls_of(lines, folder):
    """(call, its number among the calls of that kind of its thread) for each that writes to the folder's files."""
    counts, found = {}, []
    for line in lines:
        match = re.match(r"(\d+)\s+(\w+)\(", line)
        if not match:
            continue
        thread, call = match.groups()
        number = counts[thread, call] = counts.get((thread, call), 0) + 1
        line = re.sub(r"AT_FDCWD<[^>]*>", "AT_FDCWD", line)
        here = str(folder) in line or re.search(r'AT_FDCWD, "[^/]', line) or re.search(r'^\d+\s+\w+\("[^/]', line)
        reads = call == "openat" and "O_RDONLY" in line and ".part" not in line
        if here and not reads and not any(name in line for name in INPUTS):
            found.append((call, number))
    return sorted(set(found))


def chosen(calls, everything):
    if not everything:
        return random.Random(os.environ.get("ZM_SEED", "1")).sample(calls, len(calls))
    kinds = {}
    for call, number in calls:
        kinds.setdefault(call, []).append(number)
    return [(call, number) for call, numbers in kinds.items()
            for number in (numbers if len(numbers) <= MOST
                           else [numbers[i * (len(numbers) - 1) // (MOST - 1)] for i in range(MOST)])]


def brings_to_disk(line):
    return (re.search(r" fsync\(\d+<[^>]*/\.[^/]*(\.part\.\w+|\.new)>", line) and "/temporary/" not in line
            and "Zenro.ini" not in line)


def faults_of(errand, call, done, failed, old, new, left):
    """failed: the lines of the calls that failed."""
    if done.returncode < 0:
        yield f"ended by signal {-done.returncode}"
    if done.returncode == 0 and any(brings_to_disk(line) for line in failed):
        yield "status 0, and the file was not brought to the disk"
    said = done.stderr or b"cannot be" in done.stdout or any("write(2<" in line for line in failed)  # the message itself
    if done.returncode != 0 and not said:
        yield f"status {done.returncode} without a word"
    for name in sorted({*old, *new, *left}):
        there = left.get(name)
        if proof := errand.proof(name):
            if there is not None and not proof(there):
                yield f"{name} is not whole"
        elif call == "openat" and name.startswith("temporary/"):
            pass  # the call that failed was that of the removal; the next run removes it
        elif there not in (old.get(name), new.get(name)):
            yield f"{name}: neither the old nor the new file is there whole" if name in new else f"{name} is left"
        elif done.returncode == 0 and there != new.get(name):
            yield f"status 0, and {name} is not the new file"


def check(errand, everything):
    with tempfile.TemporaryDirectory(prefix="zm-faults-") as name:
        prepared, folder = (pathlib.Path(name).resolve() / part for part in ("prepared", "here"))
        folder.mkdir()
        prepare(errand, folder)
        folder.rename(prepared)
        folder.mkdir()
        fresh(folder, prepared)
        old = content(folder)
        done, lines = errand.run(errand.command, folder, ["-e", "trace=" + CALLS])
        new = content(folder)
        changed = [name for name in new if new[name] != old.get(name) and not errand.proof(name)]
        if done.returncode != 0 or not changed or any(new.get(path) == before for path, before in errand.old.items()):
            return 0, [f"{errand.name}: the run without a failure ended with {done.returncode}: {done.stderr.decode()}"]
        calls, faults, runs = calls_of(lines, folder), [], 0
        if not any(brings_to_disk(line) for line in lines):
            faults.append(f"{errand.name}: nothing is brought to the disk before it takes its place")
        for call, number in chosen(calls, everything):
            if runs == SAMPLE and not everything:
                break
            fresh(folder, prepared)
            error = ERRORS.get(call, "ENOSPC")
            done, lines = errand.run(errand.command, folder,
                                     ["-e", "trace=" + CALLS, "-e", f"inject={call}:error={error}:when={number}"])
            failed = [line for line in lines if "(INJECTED)" in line]
            if all(any(name in line for name in INPUTS) for line in failed):
                continue  # no call had the number this time, or another thread met it that reads
            runs += 1
            for fault in faults_of(errand, call, done, failed, old, new, content(folder)):
                faults.append(f"{errand.name}: {call} number {number} fails with {error}: {fault}")
        if runs == 0:
            faults.append(f"{errand.name}: none of its calls was failed")
        return runs, faults


def main():
    arguments = [name for name in sys.argv[1:] if name != "--all"]
    everything = "--all" in sys.argv
    zenro, save_settings = (str(pathlib.Path(name).resolve()) for name in arguments[:2])
    if not shutil.which("strace") or subprocess.run(["strace", "-qq", "-e", "inject=close:error=EIO:when=1000", "true"],
                                                    capture_output=True).returncode != 0:
        print("strace is missing or may not trace here; install strace or allow ptrace")
        return 77
    wanted = [errand for errand in errands(zenro, save_settings) if not arguments[2:] or errand.name in arguments[2:]]
    runs, faults = 0, []
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for errand, (count, found) in zip(wanted, pool.map(lambda errand: check(errand, everything), wanted)):
            print(f"{errand.name}: {count} runs, {len(found)} faults", flush=True)
            runs += count
            faults += found
    print(f"{len(wanted)} errands, {runs} runs, {len(faults)} faults")
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
