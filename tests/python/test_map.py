"""Maps through the Python module: each output by its own reader, words as warnings and exceptions, threads in turn."""
import pathlib
import re
import signal
import struct
import threading
import time
import warnings
import zlib

import numpy as np
import pytest

import zenromath as zm
from zenromath.map import FORMATS

WALL, TREE = 206, 140


def garden(**options):
    garden = zm.Map(500, bounds=(0, 0, 100, 100), **options)
    garden.area([20, 80, 80, 20], [30, 30, 70, 70], symbol=WALL)
    garden.points([50, 60], [50, 50], symbol=TREE, text=["柳", "B"])
    return garden


def pixels(png):
    """Rows of an 8-bit PNG file as an array (height, width, channels), by the standard library alone."""
    assert png[:8] == b"\x89PNG\r\n\x1a\n"
    at, data = 8, b""
    while at < len(png):
        size, kind = struct.unpack(">I4s", png[at:at + 8])
        body = png[at + 8:at + 8 + size]
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", body[:10])
        if kind == b"PLTE":
            palette = np.frombuffer(body, np.uint8).reshape(-1, 3)
        if kind == b"IDAT":
            data += body
        at += 12 + size
    assert depth == 8
    channels = {0: 1, 2: 3, 3: 1, 6: 4}[colour]
    rows, previous = [], np.zeros(width * channels, int)
    raw = np.frombuffer(zlib.decompress(data), np.uint8).reshape(height, 1 + width * channels)
    for row in raw:
        kind, line = row[0], row[1:].astype(int)
        if kind == 2:
            line = (line + previous) & 255
        elif kind in (1, 3, 4):
            for i in range(line.size):
                left = line[i - channels] if i >= channels else 0
                up, corner = previous[i], previous[i - channels] if i >= channels else 0
                guess = left if kind == 1 else (left + up) // 2
                if kind == 4:
                    p = left + up - corner
                    guess = min((abs(p - left), 0, left), (abs(p - up), 1, up), (abs(p - corner), 2, corner))[2]
                line[i] = (line[i] + guess) & 255
        rows.append(line)
        previous = line
    picture = np.array(rows).reshape(height, width, channels)
    return palette[picture[:, :, 0]] if colour == 3 else picture


def ink(png):
    """Where a picture is not white."""
    return (pixels(png)[:, :, :3] < 200).any(axis=2)


def test_svg_has_the_text_and_its_size_on_paper():
    svg = garden().to_svg()
    assert 'width="200mm" height="200mm"' in svg
    assert "柳</text>" in svg and svg.count("<path") > 1


def test_png_has_ink_where_the_wall_is_and_none_beside():
    shown = ink(garden().to_bytes("png", dpi=100))
    size = shown.shape[0]
    assert abs(size - 200 / 25.4 * 100) <= 1
    at = lambda x, y: (slice(int((100 - y) / 100 * size) - 3, int((100 - y) / 100 * size) + 4),
                       slice(int(x / 100 * size) - 3, int(x / 100 * size) + 4))
    assert shown[at(20, 50)].any() and shown[at(50, 70)].any()  # two sides
    assert shown[at(50, 50.5)].any()                            # the tree
    assert not shown[at(35, 60)].any() and not shown[at(10, 10)].any()


def test_pdf_has_one_page_of_the_size_of_the_sheet():
    pdf = garden().to_bytes("pdf")
    assert pdf.startswith(b"%PDF-")
    box = re.search(rb"/MediaBox \[0 0 ([\d.]+) ([\d.]+)", pdf)
    assert [float(v) for v in box.groups()] == pytest.approx([200 / 25.4 * 72] * 2, abs=1.0)


def test_dwg_is_read_back_as_records(tmp_path):
    path = garden().draw(tmp_path / "garden.dwg")
    drawing = zm.read_drawing(path)
    assert drawing.version == 1006 and drawing.problems() == []
    assert drawing.bounds[0] == pytest.approx(20.0, abs=1.0)
    records = drawing.entities()
    texts = [r for r in records if r["kind"] == "TEXT"]
    assert sorted(r["fields"]["text"] for r in texts) == ["B", "柳"]
    assert {layer["name"] for layer in drawing.layers} >= {r["layer"] for r in records}
    assert all(r["points"].shape[1] == 3 for r in records) and all(not r["erased"] for r in records)
    wall = np.concatenate([r["points"] for r in records if r["kind"] in ("LINE", "POLYLINE", "VERTEX")])
    assert (np.abs(wall[:, :2] - [20.0, 30.0]).sum(axis=1) < 1e-9).any()


def test_dxf_is_read_by_ezdxf(tmp_path):
    import ezdxf
    document = ezdxf.readfile(garden().draw(tmp_path / "garden.dxf", utf8=True), encoding="utf8")
    texts = {entity.dxf.text for entity in document.modelspace().query("TEXT")}
    assert texts == {"柳", "B"}
    assert not document.audit().has_errors


def test_a_hole_stays_empty():
    lake = zm.Map(500, bounds=(0, 0, 100, 100))
    square = lambda low, high: ([low, high, high, low], [low, low, high, high])
    lake.area(*square(10, 90), holes=[square(30, 70)], symbol=827)
    shown = ink(lake.to_bytes("png", dpi=60))
    part = lambda low, high: shown[int((100 - high) / 100 * len(shown)):int((100 - low) / 100 * len(shown)),
                                   int(low / 100 * len(shown)):int(high / 100 * len(shown))]
    assert not part(33, 67).any()
    assert shown[int(len(shown) * 0.8), int(len(shown) * 0.15):int(len(shown) * 0.85)].any()


def test_everything_with_a_geo_interface():
    import shapely.geometry as shapely
    plain = zm.Map(500, bounds=(0, 0, 100, 100))
    plain.area([20, 80, 80, 20, 20], [30, 30, 70, 70, 30], symbol=WALL).line([10, 90], [10, 20], symbol=250)
    plain.points([50, 60], [50, 50], symbol=TREE)
    mixed = zm.Map(500, bounds=(0, 0, 100, 100))
    mixed.add(shapely.Polygon([(20, 30), (80, 30), (80, 70), (20, 70)]), symbol=WALL)
    mixed.add([shapely.LineString([(10, 10), (90, 20)])], symbol=250)
    mixed.add({"type": "Feature", "properties": {"name": "x"},
               "geometry": {"type": "MultiPoint", "coordinates": [(50, 50, 7.0), (60, 50, 8.0)]}}, symbol=TREE)
    assert mixed.to_svg() == plain.to_svg()


def test_texts_and_heights_come_from_properties(tmp_path):
    features = {"type": "FeatureCollection", "features": [
        {"type": "Feature", "properties": {"name": "井", "h": 12.5}, "geometry": {"type": "Point", "coordinates": [30, 30]}},
        {"type": "Feature", "properties": {"name": None, "h": 13.5}, "geometry": {"type": "Point", "coordinates": [60, 60]}}]}
    drawn = zm.Map(500, bounds=(0, 0, 100, 100)).add(features, symbol=TREE, field="name", height="h")
    records = zm.read_drawing(drawn.draw(tmp_path / "a.dwg")).entities()
    assert [r["fields"]["text"] for r in records if r["kind"] == "TEXT"] == ["井"]
    assert {12.5, 13.5} <= {r["elevation"] for r in records}
    with pytest.raises(KeyError, match="no property 'nam'"):
        zm.Map().add(features, field="nam")


def test_features_without_a_geometry_are_told():
    with pytest.warns(zm.LibraryWarning, match="1 features without a geometry") as told:
        zm.Map().add({"type": "Feature", "geometry": None, "properties": {}})
    assert told[0].filename == __file__


def test_the_sheet_follows_the_data_in_whole_centimetres():
    drawn = zm.Map(1000).points([103.0, 147.0], [203.0, 218.0])
    assert drawn.sheet == (1000.0, 100.0, 200.0, 150.0, 230.0)  # 3 mm of paper around are 3 m
    assert zm.Map().points([0.0, 250.0], [0.0, 100.0]).sheet[0] == 500.0
    assert zm.Map(2000, bounds=(5, 6, 7, 8)).sheet == (2000.0, 5.0, 6.0, 7.0, 8.0)


def test_a_symbol_that_is_none_is_a_warning_with_the_caller_named():
    drawn = zm.Map(500, bounds=(0, 0, 10, 10)).points(5, 5, symbol=998)
    with pytest.warns(zm.LibraryWarning, match="symbol 998 is not in the symbol library") as told:
        drawn.to_svg()
    assert told[0].filename == __file__
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        with pytest.raises(zm.LibraryWarning):
            drawn.to_svg()


@pytest.mark.parametrize("words, wrong", [
    ("2 characters that the code page GBK lacks", lambda m: m.points(1, 1, text="a\U0001F333\U0001F333")),
    ("point 1 has a coordinate that is no finite number", lambda m: m.line([0, float("nan")], [0, 1])),
    ("at least 2", lambda m: m.line([0], [0])),
    ("ring 1 of an area needs at least 3 points", lambda m: m.area([0, 1, 1], [0, 0, 1], holes=[([0, 1], [0, 1])])),
    ("one for each of 2 points, not 3", lambda m: m.points([1, 2], [1, 2], text=["a", "b", "c"])),
    ("symbol must be a whole number from 0 to 999, not 1000", lambda m: m.points(1, 1, symbol=1000)),
    ("place must be one of", lambda m: m.points(1, 1, place="above")),
    ("the extension names no output", lambda m: m.points(1, 1).draw("map.bmp")),
    ("format must be one of", lambda m: m.points(1, 1).to_bytes("bmp")),
    ("the map is empty", lambda m: m.to_svg()),
    ("x is east and y is north", lambda m: m.points(3486438.284, 40523750.615).to_svg()),
    ("are these degrees", lambda m: m.line([120.1, 120.2], [31.0, 31.1]).to_svg()),
    ("m of paper at 1:500", lambda m: zm.Map(500).line([0, 50000], [0, 0]).to_svg()),
    ("type 'Curve' cannot be drawn", lambda m: m.add({"type": "Curve", "coordinates": []})),
])
def test_what_is_wrong_is_refused_in_words(words, wrong):
    with pytest.raises(ValueError, match=words):
        wrong(zm.Map())


def test_data_in_degrees_is_refused_by_its_system():
    class Frame:
        class crs:
            is_geographic = True
        __geo_interface__ = {"type": "Point", "coordinates": [120.0, 31.0]}

    with pytest.raises(ValueError, match="to_crs"):
        zm.Map().add(Frame())


def test_a_file_that_is_no_symbol_library_is_refused(tmp_path):
    wrong = tmp_path / "notes.txt"
    wrong.write_text("no symbols\n")
    with pytest.raises(OSError, match="is no symbol library"):
        zm.Map(500, bounds=(0, 0, 10, 10), symbols=wrong).points(5, 5).to_svg()
    with pytest.raises(FileNotFoundError, match="symbols: .*no such file"):
        zm.Map(symbols=tmp_path / "missing.dat")


def test_an_output_that_cannot_be_written_is_an_oserror(tmp_path):
    with pytest.raises(OSError, match="missing"):
        garden().draw(tmp_path / "missing" / "a.svg")
    assert list(tmp_path.iterdir()) == []


def test_where_the_library_would_end_the_process_python_goes_on(tmp_path):
    (tmp_path / "project.ini").write_text("[LayerSet]\n")
    (tmp_path / "acad.dwg").write_bytes(b"AC1006" + bytes(100))  # the template of this project's drawings
    out = tmp_path / "out"
    out.mkdir()
    with pytest.raises(zm.LibraryError, match="acad.dwg.*; the library asked to end the process with status 1"):
        garden(project=tmp_path / "project.ini").draw(out / "a.dwg")
    assert list(out.iterdir()) == []
    assert zm.read_drawing(garden().draw(out / "b.dwg")).problems() == []


def test_a_read_drawing_says_what_is_wrong(tmp_path):
    text = tmp_path / "a.dwg"
    text.write_text("nothing of the kind")
    with pytest.raises(ValueError, match="a.dwg: no drawing of a version that can be read"):
        zm.read_drawing(text)
    with pytest.raises(FileNotFoundError):
        zm.read_drawing(tmp_path / "b.dwg")
    whole = garden().to_bytes("dwg")
    damaged = zm.Drawing(whole[:len(whole) - 40])
    assert damaged.problems() != [] and isinstance(damaged.entities(), list)


def test_what_a_notebook_shows():
    assert zm.Map()._repr_svg_() is None and zm.Map()._repr_png_() is None
    assert garden()._repr_svg_() == garden().to_svg()
    assert ink(garden()._repr_png_()).any()
    assert repr(garden()) == "<zenromath.Map of 3 features>"


def test_heights_of_a_table_elsewhere_do_not_reach_a_drawing(tmp_path):
    table = zm.Find4H([50.0], [50.0], [77.0])
    records = zm.read_drawing(garden().draw(tmp_path / "a.dwg")).entities()
    assert 77.0 not in {r["elevation"] for r in records}
    assert table.find(50.0, 50.0) == 77.0


def test_threads_draw_in_turn(tmp_path):
    makers = [lambda: garden(), lambda: garden(monochrome=True),
              lambda: zm.Map(2000, frame=True, title="图").points(range(50), range(50), symbol=TREE),
              lambda: zm.Map(1000).line(range(0, 100, 10), [0, 5] * 5, symbol=WALL, line_type=2)]
    alone = [{f: make().to_bytes(f) for f in FORMATS} for make in makers]
    wrong = []

    def draw(i):
        own = makers[i % len(makers)]()
        for round in range(3):
            for f in FORMATS:
                if own.to_bytes(f) != alone[i % len(makers)][f]:
                    wrong.append((i, f))

    threads = [threading.Thread(target=draw, args=(i,)) for i in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []


def large():
    rng = np.random.default_rng(5)
    return zm.Map(500, bounds=(0, 0, 250, 250)).points(rng.uniform(0, 250, 60000), rng.uniform(0, 250, 60000), symbol=TREE)


def test_others_go_on_while_a_map_is_drawn_and_it_stays_as_it_is():
    drawn = large()
    thread = threading.Thread(target=drawn.to_svg)
    thread.start()
    steps, refused = 0, 0
    while thread.is_alive():
        steps += 1
        try:
            drawn.points(1, 1, symbol=TREE)
        except RuntimeError as busy:
            assert "being drawn by another thread" in str(busy)
            refused += 1
    assert steps > 100 and refused > 0


def test_ctrl_c_stops_a_drawing_and_leaves_no_file(tmp_path):
    drawn = large()
    before = signal.signal(signal.SIGALRM, lambda *_: (_ for _ in ()).throw(KeyboardInterrupt()))
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.15)
        with pytest.raises(KeyboardInterrupt):
            for _ in range(100):
                drawn.draw(tmp_path / "large.svg")
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert [p.suffix for p in tmp_path.iterdir() if p.name != "large.svg"] == []
    assert len(garden()) == 3 and "柳" in garden().to_svg()
