#!/usr/bin/env python3
"""Refuses each piece of memory in turn that the library and the program ask for, in whole runs: a library loaded, maps
drawn to three forms, a drawing read and proven.

Whatever is refused, the run ends by itself with a message and without status 0, or without harm with what it would have
had; old outputs are there whole, and nothing unfinished is left.

usage: failing_memory.py ZENRO LIBRARY_THAT_REFUSES [RUNS_EACH]      exit status 77: it cannot be loaded ahead here
"""
import os
import pathlib
import random
import subprocess
import sys
import tempfile

OLD = b"the old file\n"
RULES = "a < 3 -> symbol 5\na < 6 -> symbol 240, label a, note 0\n* -> symbol 147, outline 200\n"


def feature(kind, coordinates, number):
    return '{"type":"Feature","properties":{"a":%d},"geometry":{"type":"%s","coordinates":%s}}' % (number, kind, coordinates)


def data():
    features = [feature("Point", "[%d,3456020]" % (40512010 + 9 * i), i % 3) for i in range(8)]
    features += [feature("LineString", "[[40512010,%d],[40512090,3456080]]" % (3456010 + i), 4) for i in range(5)]
    features += [feature("Polygon", "[[[40512020,3456030],[40512070,3456030],[40512070,3456070],[40512020,3456030]]]", 7)]
    return ('{"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::4528"}},'
            '"features":[%s]}' % ",".join(features))


def errands():
    draw = ["draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "--title", "map", "--overwrite", "-o"]
    for form in ("svg", "dwg", "dxf", "rec"):
        yield "draw " + form, draw + ["out." + form], "out." + form
    yield "symbols", ["symbols", "list"], None
    yield "check", ["dwg", "check", "sound.dwg"], None


def main():
    zenro, library = (os.path.abspath(name) for name in sys.argv[1:3])
    most = int(sys.argv[3]) if len(sys.argv) > 3 else 60
    chance = random.Random(21)
    problems, runs, refusals = [], 0, 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        environment = dict(os.environ, ZENRO_LANGUAGE="en", XDG_CONFIG_HOME=str(folder / "config"))
        (folder / "r.rules").write_text(RULES)
        (folder / "in.geojson").write_text(data())

        def run(command, **more):
            return subprocess.run([zenro, *command], cwd=folder, env=dict(environment, **more), capture_output=True,
                                  stdin=subprocess.DEVNULL, timeout=120)

        subprocess.run([zenro, "draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "-o", "sound.dwg"],
                       cwd=folder, env=environment, capture_output=True, check=False)
        for title, command, target in errands():
            counted = folder / "count"
            counted.unlink(missing_ok=True)
            whole = run(command, LD_PRELOAD=library, ZM_COUNT_NEW=str(counted))
            if not counted.exists():
                print("failing_memory: the library cannot be loaded ahead here")
                return 77
            count = int(counted.read_text())
            new = (folder / target).read_bytes() if target else whole.stdout
            numbers = list(range(1, min(count, most // 2) + 1))
            numbers += sorted(chance.sample(range(1, count + 1), min(count, most // 2)))
            for number in dict.fromkeys(numbers):
                if target:
                    (folder / target).write_bytes(OLD)
                done = run(command, LD_PRELOAD=library, ZM_FAIL_NEW=str(number))
                runs += 1
                where = "%s, request %d of %d" % (title, number, count)
                now = (folder / target).read_bytes() if target else done.stdout
                if done.returncode < 0:
                    problems.append("%s: ended by signal %d" % (where, -done.returncode))
                elif done.returncode == whole.returncode and now != new:
                    problems.append("%s: status %d, but the result is another one" % (where, done.returncode))
                elif done.returncode != whole.returncode:
                    refusals += 1
                    if not done.stderr.strip():
                        problems.append("%s: status %d without a word" % (where, done.returncode))
                if target and now not in (OLD, new):
                    problems.append("%s: neither the old file nor the new one" % where)
                left = [entry.name for entry in folder.iterdir() if ".part" in entry.name]
                if left:
                    problems.append("%s: left %s" % (where, left))
                    for entry in left:
                        (folder / entry).unlink()
    print("%d runs, %d of them ended with a message" % (runs, refusals))
    for problem in problems:
        print(problem)
    return 1 if problems or refusals == 0 else 0


sys.exit(main())
