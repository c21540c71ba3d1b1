#!/usr/bin/env python3
"""Fails each call that writes, one after the other, in whole runs of the program, and looks at what is left.

For every output and for a settings file: a run under strace lists the calls that reach files of the output folder; then
one run for each of them, in which that call fails. Whatever fails, the old file or the new one is there whole; a run
that ends with status 0 has left the new one; one that does not has said why.

usage: failing_calls.py ZENRO SAVE_SETTINGS      exit status 77: strace cannot trace here
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

CALLS = "openat,write,pwrite64,writev,fsync,fdatasync,rename,renameat,renameat2,fchmod,close,ftruncate,lseek"
ERRORS = {"openat": "EACCES", "fsync": "EIO", "close": "EIO", "lseek": "EIO", "rename": "EACCES", "renameat": "EACCES",
          "renameat2": "EACCES"}
MOST = 6  # calls of one kind that are failed; more are spread over all of them
OLD = b"the old file\n"

RULES = "* -> symbol 200\n"
LINES = """{"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::4528"}},
"features":[%s]}""" % ",".join(
    '{"type":"Feature","properties":{},"geometry":{"type":"LineString","coordinates":[[%d,3456010],[%d,3456080]]}}'
    % (40512010 + i, 40512090 - i) for i in range(60))


class Errand:
    """One command that replaces one file."""

    def __init__(self, name, target, command):
        self.name, self.target, self.command = name, target, command

    def run(self, folder, tracing):
        environment = dict(os.environ, ZENRO_LANGUAGE="en", XDG_CONFIG_HOME=str(folder / "config"), SOURCE_DATE_EPOCH="1700000000")
        log = folder / "calls.log"
        done = subprocess.run(["strace", "-f", "-qq", "-y", "-o", str(log), *tracing, *self.command], cwd=folder,
                              env=environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        return done, log.read_text(errors="replace").splitlines()


def fresh(errand, folder):
    for entry in folder.iterdir():
        if entry.name != "config":
            shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
    (folder / "r.rules").write_text(RULES)
    (folder / "in.geojson").write_text(LINES)
    (folder / errand.target).write_bytes(OLD if errand.name != "settings" else b"[a]\r\nk=old\r\n")


def calls_of(lines, folder, out):
    """(call, its number among the calls of that kind of its thread) for each that reaches the folder or the file out."""
    counts, found = {}, []
    for line in lines:
        match = re.match(r"(\d+)\s+(\w+)\(", line)
        if not match:
            continue
        thread, call = match.groups()
        number = counts[thread, call] = counts.get((thread, call), 0) + 1
        line = re.sub(r"AT_FDCWD<[^>]*>", "", line)
        if (str(folder) in line or f'"{out}' in line) and "in.geojson" not in line and "r.rules" not in line:
            found.append((call, number))
    return found


def spread(items):
    return items if len(items) <= MOST else [items[i * (len(items) - 1) // (MOST - 1)] for i in range(MOST)]


def content(errand, folder):
    """The file's bytes, a PDF without its dates and numbers made by chance; None where there is none."""
    path = folder / errand.target
    if not path.exists():
        return None
    return re.sub(rb"D:\d+[-+Z'\d]*|\d{4}-\d\d-\d\dT[-+:\dZ]+|<[0-9a-f]{32}>|uuid:[-0-9a-f]+", b"", path.read_bytes())


def check(errand, folder):
    fresh(errand, folder)
    old = content(errand, folder)
    done, lines = errand.run(folder, ["-e", "trace=" + CALLS])
    new = content(errand, folder)
    if done.returncode != 0 or new == old:
        return 0, [f"{errand.name}: the run without a failure ended with {done.returncode}: {done.stderr.decode()}"]
    by_call = {}
    for call, number in calls_of(lines, folder, errand.target):
        by_call.setdefault(call, []).append(number)
    faults, runs = [], 0
    for call, numbers in sorted(by_call.items()):
        for number in spread(sorted(set(numbers))):
            fresh(errand, folder)
            error = ERRORS.get(call, "ENOSPC")
            done, _ = errand.run(folder, ["-e", "trace=" + CALLS, "-e", f"inject={call}:error={error}:when={number}"])
            runs += 1
            left = content(errand, folder)
            where = f"{errand.name}: {call} number {number} fails with {error}"
            if left != old and left != new:
                faults.append(f"{where}: neither the old nor the new file is there whole")
            elif done.returncode == 0 and left != new:
                faults.append(f"{where}: status 0, and the old file is there")
            elif done.returncode < 0:
                faults.append(f"{where}: ended by signal {-done.returncode}")
            elif done.returncode != 0 and not done.stderr and not done.stdout:
                faults.append(f"{where}: status {done.returncode} without a word")
    if runs == 0:
        faults.append(f"{errand.name}: no call reached the folder")
    return runs, faults


def main():
    zenro, save_settings = (str(pathlib.Path(name).resolve()) for name in sys.argv[1:3])
    if not shutil.which("strace") or subprocess.run(["strace", "-qq", "-e", "inject=close:error=EIO:when=1000", "true"],
                                                    capture_output=True).returncode != 0:
        print("strace is missing or may not trace here; install strace or allow ptrace")
        return 77
    errands = [Errand(kind, "out." + kind, [zenro, "draw", "in.geojson", "--rules", "./r.rules", "--scale", "1000", "--quiet",
                                            "-o", "out." + kind, "--overwrite"])
               for kind in ("svg", "dwg", "rec", "png", "pdf")]
    errands.append(Errand("settings", "settings.ini", [save_settings, "settings.ini"]))
    faults = []
    for errand in errands:
        with tempfile.TemporaryDirectory(prefix="zm-faults-") as name:
            folder = pathlib.Path(name).resolve()
            runs, found = check(errand, folder)
        print(f"{errand.name}: {runs} runs, {len(found)} faults")
        faults += found
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
