"""Each command of a README can be typed as it stands, after "make demo", on the data that this has written.

usage: readme_test.py README ZENRO_DIR

The commands are the lines of its ```sh block. The first one goes to the demonstration and holds for all; each other one is run
by itself, in their order, ends with status 0 and leaves the files that it names by -o. What opens a window goes on until it is
stopped; settings are printed in place of their window, which needs a display.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

WINDOW = re.compile(r"zenro view ")
SETTINGS = re.compile(r"(zenro settings \w+)")
SECONDS_OF_A_WINDOW = 6


def stop(line, what):
    sys.exit(f"{line}\n{what}")


def run(first, line, folder):
    text = SETTINGS.sub(r"\1 --list", line)
    return subprocess.run(["bash", "-euo", "pipefail", "-c", f"{first}\n{text}"], cwd=folder, capture_output=True, text=True, timeout=300)


def stays(first, line, folder):
    """A window is there until it is closed; wrong options or no data end it at once."""
    text = line.split("#")[0]
    shown = subprocess.run(["bash", "-euc", f"{first}\ntimeout {SECONDS_OF_A_WINDOW} {text}"], cwd=folder, capture_output=True, text=True,
                           timeout=300, env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
    if shown.returncode != 124:
        stop(line, f"its window ends with status {shown.returncode}:\n{shown.stdout}{shown.stderr}")


def main():
    readme, tools = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    blocks = re.findall(r"^```sh\n(.*?)^```$", readme.read_text(encoding="utf-8"), re.M | re.S)
    if len(blocks) != 1:
        sys.exit(f"{readme.name}: one block of commands is expected, not {len(blocks)}")
    first, *lines = blocks[0].splitlines()
    typed = [line for line in re.findall(r"^.*?\bzenro .*$", readme.read_text(encoding="utf-8"), re.M) if re.match(r"zenro \w", line)]
    outside = [line for line in typed if line not in lines]
    if outside:
        stop(outside[0], f"{readme.name}: this command is in no block that is run")
    if len(lines) < 5:
        sys.exit(f"{readme.name}: too few commands")
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place)
        (folder / "build" / "demo").mkdir(parents=True)
        (folder / "build" / "demo" / "bin").symlink_to(tools)
        os.environ.update(XDG_CONFIG_HOME=str(folder / "config"), LC_ALL="C.UTF-8", ZENRO_LANGUAGE="en")
        subprocess.run([tools / "zenro", "demo", "out/demo", "--quiet"], cwd=folder, check=True, capture_output=True)
        for line in lines:
            if WINDOW.match(line):
                stays(first, line, folder)
                continue
            done = run(first, line, folder)
            if done.returncode != 0:
                stop(line, f"status {done.returncode}:\n{done.stdout}{done.stderr}")
            for file in re.findall(r" -o (\S+)", line.split("#")[0]):
                written = folder / "out" / "demo" / file
                if not written.is_file() or written.stat().st_size == 0:
                    stop(line, f"does not write {file}")
    print(f"{readme.name}: {len(lines)} commands")


if __name__ == "__main__":
    main()
