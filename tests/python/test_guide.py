"""The Python of the guide runs; its map is shown by a notebook without a display."""
import base64
import json
import os
import pathlib
import re
import subprocess
import sys

import pytest

GUIDE = pathlib.Path(__file__).parents[2] / "docs" / "guide" / "python.md"
CELLS = re.findall(r"^```python\n(.*?)^```$", GUIDE.read_text(encoding="utf-8"), re.M | re.S)

README, = re.findall(r"^```python\n(.*?)^```$", (GUIDE.parents[2] / "README.md").read_text(encoding="utf-8"), re.M | re.S)


def test_the_python_of_readme_runs_as_it_stands(tmp_path):
    subprocess.run([sys.executable, "-W", "error", "-c", README], check=True, cwd=tmp_path)
    assert [file.name for file in tmp_path.iterdir()] == ["garden.png"]
    assert (tmp_path / "garden.png").stat().st_size > 10000


@pytest.mark.parametrize("number", range(len(CELLS)))
def test_each_piece_of_the_guide_runs_by_itself(number):
    subprocess.run([sys.executable, "-W", "error", "-c", CELLS[number]], check=True)


@pytest.mark.parametrize("name, sources", [("guide", CELLS), ("readme", [README])])
def test_a_notebook_shows_the_map(name, sources, tmp_path):
    cells = [{"cell_type": "code", "execution_count": None, "metadata": {}, "outputs": [], "source": cell} for cell in sources]
    kernel = {"kernelspec": {"name": "python3", "display_name": "Python 3", "language": "python"}}
    (tmp_path / f"{name}.ipynb").write_text(json.dumps({"cells": cells, "metadata": kernel, "nbformat": 4, "nbformat_minor": 4}))
    environment = {**os.environ, "HOME": str(tmp_path), "JUPYTER_PLATFORM_DIRS": "0", "IPYTHONDIR": str(tmp_path / "ipython")}
    environment.pop("DISPLAY", None)
    subprocess.run(["/usr/bin/python3", "-m", "nbconvert", "--execute", "--to", "notebook", "--output", "run.ipynb",
                    str(tmp_path / f"{name}.ipynb")], check=True, env=environment, cwd=tmp_path, timeout=240)
    last = json.loads((tmp_path / "run.ipynb").read_text(encoding="utf-8"))["cells"][-1]["outputs"]
    shown = [output["data"] for output in last if output["output_type"] == "execute_result"]
    assert len(shown) == 1 and [o for o in last if o["output_type"] != "execute_result"] == []
    assert "清溪园</text>" in "".join(shown[0]["image/svg+xml"])
    png = base64.b64decode("".join(shown[0]["image/png"]))
    assert png[:8] == b"\x89PNG\r\n\x1a\n" and len(png) > 10000
    folder = os.environ.get("ZM_PICTURES")  # for who wants to look at it
    if folder:
        pathlib.Path(folder, f"notebook-{name}.png").write_bytes(png)
