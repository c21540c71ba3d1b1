"""The table of docs/design.md that leads from a behaviour to its code names rooms and files that are there, and each room
with code of the library and the program is in it, by itself or by the rooms below it.

usage: design_test.py SOURCE_DIR
"""
import pathlib
import re
import sys

CODE = {".cpp", ".h", ".py"}
# Rooms that hold what a behaviour is made of in other rooms: the public headers, tests, data, the build.
NO_ROOMS = {"bench", "cmake", "data", "docs", "examples", "fuzz", "include", "packaging", "po", "resources", "scripts", "tests"}


def main():
    root = pathlib.Path(sys.argv[1])
    text = (root / "docs/design.md").read_text(encoding="utf-8")
    table = text.split("## Where a behaviour is")[1].split("\n## ")[0]
    rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in table.splitlines() if line.startswith("|")][2:]
    problems = []
    rooms = set()
    for about, names, files in rows:
        of_row = []
        for name in re.findall(r"`([\w/]+)`", names):
            # `tools/zenro/coord/`, `demo/`: a short name lies beside the one before it.
            room = root / name if (root / name).is_dir() else root / rooms_before(of_row) / name
            if not room.is_dir():
                problems.append(f"{about}: there is no room {name}")
                continue
            of_row.append(room.relative_to(root).as_posix())
        rooms.update(of_row)
        for name in re.findall(r"`([\w/]+)`", files):
            if name.endswith("/"):
                if not any((root / place / name).is_dir() for place in ["", *of_row]):
                    problems.append(f"{about}: there is no room {name}")
            elif not any(list((root / room).glob(f"{name}.*")) for room in of_row):
                problems.append(f"{about}: {', '.join(of_row)} has no file {name}")
    for path in sorted(root.rglob("*")):
        room = path.parent.relative_to(root).as_posix()
        top = room.split("/")[0]
        if path.suffix in CODE and top not in NO_ROOMS | {".", "build"} and not top.startswith(".") and not any(
                there == room or there.startswith(room + "/") for there in rooms):
            rooms.add(room)
            problems.append(f"{room} is in no row")
    print(*problems, f"design: {len(rows)} rows, {len(problems)} problems", sep="\n")
    return 1 if problems else 0


def rooms_before(of_row):
    return pathlib.PurePosixPath(of_row[-1]).parent if of_row else pathlib.PurePosixPath()


if __name__ == "__main__":
    sys.exit(main())
