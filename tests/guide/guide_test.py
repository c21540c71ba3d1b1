"""The guide is right: each of its programs is compiled and run, each of its commands too, page by page.

usage: guide_test.py PAGE ZENRO_DIR COMPILER FLAG...

In a page ```cpp is a whole program whose first line is "// program NAME", ```text file=NAME a file, ```sh commands, and a plain
```text after a program what it prints. Everything of a page happens in one folder, in its order.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^```(\w+)(?: file=(\S+))?\n(.*?)^```$", re.M | re.S)


def stop(page, what):
    sys.exit(f"{page.name}: {what}")


def run(command, folder, **more):
    return subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=300, **more)


def program(page, text, compile_command, folder):
    name = re.match(r"// program (\w+)\n", text)
    if not name:
        stop(page, f"a program without a name: {text.splitlines()[0]}")
    source = folder / f"{name[1]}.cpp"
    source.write_text(text, encoding="utf-8")
    built = run([compile_command[0], str(source), "-o", name[1], *compile_command[1:]], folder)
    if built.returncode != 0 or built.stderr:
        stop(page, f"{name[1]} does not compile cleanly:\n{built.stderr}")
    done = run([str(folder / name[1])], folder)
    if done.returncode != 0:
        stop(page, f"{name[1]} ends with status {done.returncode}:\n{done.stdout}{done.stderr}")
    return name[1], done.stdout


def commands(page, text, folder):
    done = run(["bash", "-euc", text], folder)
    if done.returncode != 0:
        stop(page, f"status {done.returncode} of\n{text}{done.stdout}{done.stderr}")


def main():
    page, tools, compile_command = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3:]
    keep = os.environ.get("ZM_PICTURES")  # for who wants to look at them
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place)
        os.environ.update(PATH=f"{tools}:{os.environ['PATH']}", XDG_CONFIG_HOME=str(folder / "config"), LC_ALL="C.UTF-8", ZENRO_LANGUAGE="en")
        count, printed = 0, None
        for kind, file, text in BLOCK.findall(page.read_text(encoding="utf-8")):
            if kind == "cpp":
                printed = program(page, text, compile_command, folder)
            elif kind == "sh":
                commands(page, text, folder)
            elif kind == "text" and file:
                (folder / file).write_text(text, encoding="utf-8")
            elif kind == "text" and printed:
                if printed[1] != text:
                    stop(page, f"{printed[0]} prints\n{printed[1]}and not\n{text}")
                printed = None
            else:
                stop(page, f"a block of kind {kind} that nothing is done with")
            count += 1
        if count == 0:
            stop(page, "has nothing to prove")
        for picture in folder.glob("*.png") if keep else ():
            pathlib.Path(keep, picture.name).write_bytes(picture.read_bytes())
    print(f"{page.name}: {count} pieces")


if __name__ == "__main__":
    main()
