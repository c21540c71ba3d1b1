"""Maps: features with symbols, drawn to SVG, PNG, PDF, DWG and DXF."""
import os
import pathlib
import sys
import tempfile
import warnings

import numpy as np

from . import _core

FORMATS = ("svg", "png", "pdf", "dwg", "dxf")
PLACES = (None, "beside", "centre", "along", "spread", "decimal")
# What is drawn where no symbol is named: (symbol, layer).
_PLAIN = {"point": (17, 100), "line": (250, 250), "area": (200, 200)}
_LARGEST_SVG = 4_000_000  # characters that a notebook is given; beyond it takes the image
_NOTEBOOK_DPI = 150


class Map:
    """Features on the plane, in metres, x east and y north, with symbols of the library.

    A map keeps what is added and draws it as often as it is asked; nothing is drawn before. zenromath.to_plane gives x
    north and y east: swap them.

    scale       denominator, such as 1000; None: the largest usual one by which the data fits on 600 mm of paper
    bounds      (x1, y1, x2, y2) of the sheet, metres; None: around the data, in whole centimetres of paper
    frame       True draws the frame of a sheet with its grid, and these texts: title, number, system, remark
    symbols     file of a symbol library; project: ".ini" file with layers, pens and colours; notes: file of note
                classes; None: those that come with the library
    monochrome  everything black

    One map is drawn at a time in a process: a second thread waits. What the library has to say comes as warnings of
    the category LibraryWarning.
    """

    def __init__(self, scale=None, *, bounds=None, frame=False, title="", number="", system="", remark="", symbols=None,
                 project=None, notes=None, monochrome=False):
        self._canvas = _core.Canvas()
        self._scale = 0.0 if scale is None else float(scale)
        if scale is not None and not self._scale > 0.0:
            raise ValueError(f"scale must be the denominator, such as 1000, not {scale}")
        self._bounds = [] if bounds is None else [float(b) for b in bounds]
        self._frame = bool(frame)
        self._texts = (title, number, system, remark)
        self._files = tuple(_file(name, path) for name, path in
                            (("symbols", symbols), ("project", project), ("notes", notes)))
        self._monochrome = bool(monochrome)
        self._options(None, False)  # what is wrong is said here

    def __len__(self):
        """The number of points, lines and areas."""
        return len(self._canvas)

    def points(self, x, y, *, angle=0.0, text=None, **look):
        """Adds points: rows of x and y, metres. angle: degrees, counter-clockwise from east, one or one for each.
        text: one, or one for each. look: see add. Returns the map."""
        texts = [] if text is None else [text] if isinstance(text, str) else [str(t) for t in text]
        self._canvas.points(_look("point", **look), np.atleast_1d(x), np.atleast_1d(y),
                            np.radians(np.atleast_1d(np.asarray(angle, float))), texts)
        return self

    def line(self, x, y, *, text=None, **look):
        """Adds a line: rows of x and y, metres, at least two points. look: see add. Returns the map."""
        self._canvas.line(_look("line", **look), x, y, text or "")
        return self

    def area(self, x, y, *, holes=(), text=None, **look):
        """Adds an area: rows of x and y, metres, at least three points; the closing edge is implied. holes: pairs
        (x, y) of the same kind. look: see add. Returns the map."""
        rings = [(np.asarray(x, float), np.asarray(y, float))]
        rings += [(np.asarray(hx, float), np.asarray(hy, float)) for hx, hy in holes]
        starts = np.cumsum([0] + [ring[0].size for ring in rings]).tolist()
        self._canvas.area(_look("area", **look), np.concatenate([r[0] for r in rings]),
                          np.concatenate([r[1] for r in rings]), starts, text or "")
        return self

    def add(self, what, *, text=None, field=None, angle=0.0, height=None, **look):
        """Adds anything with __geo_interface__ (shapely, geopandas), such a dict, or a list of them. Returns the map.

        symbol     code of the symbol library, 1 to 999, 0 for none; without it the plainest form
        layer      feature code for layer, colour and width; without it the symbol, else the outline
        outline    line symbol along the rings of areas, besides the symbol
        line_type  1 polyline, 2 smooth curve, 3 chain of three-point arcs, 4 and 5 circle
        pen_style, pen_value  as the library's pens have them; 0 takes those of the layer
        angle      of point symbols, degrees, counter-clockwise from east
        height     elevation of the entities in drawings, metres: a number, or the name of a property
        text       a text for each of them; field: the name of the property that has it
        note       note class of the text, "0" without it
        place      of the text: "beside", "centre", "along", "spread", "decimal"; without it by kind
        level      1 to 9, what is drawn first; without it areas 3, lines 5, points 7

        A text that finds no room is left out, with a warning.
        """
        if text is not None and field is not None:
            raise ValueError("give text or field, not both")
        if getattr(getattr(what, "crs", None), "is_geographic", False):
            raise ValueError("the data is in degrees: bring it to a plane first, as by to_crs")
        without = 0
        for geometry, properties in _geometries(what):
            if geometry is None:
                without += 1
                continue
            own = dict(look)
            own["height"] = _property(properties, height, "height") if isinstance(height, str) else height
            label = text if field is None else _property(properties, field, "field")
            self._add(geometry, angle, "" if label is None else str(label), own)
        if without:
            _warn(f"{without} features without a geometry were left out")
        return self

    def _add(self, geometry, angle, text, look):
        kind, coordinates = geometry["type"], geometry.get("coordinates")
        if kind == "GeometryCollection":
            for one in geometry["geometries"]:
                self._add(one, angle, text, look)
        elif kind in ("Point", "MultiPoint"):
            points = [coordinates] if kind == "Point" else coordinates
            if len(points) and len(points[0]):
                self.points(*_columns(points), angle=angle, text=text or None, **look)
        elif kind in ("LineString", "MultiLineString"):
            for line in [coordinates] if kind == "LineString" else coordinates:
                if len(line):
                    self.line(*_columns(line), text=text, **look)
        elif kind in ("Polygon", "MultiPolygon"):
            for rings in [coordinates] if kind == "Polygon" else coordinates:
                if len(rings):
                    outer, *holes = [_columns(ring) for ring in rings]
                    self.area(*outer, holes=holes, text=text, **look)
        else:
            raise ValueError(f"a geometry of type {kind!r} cannot be drawn")

    def _options(self, dpi, utf8):
        return _core.SheetOptions(self._scale, self._bounds, self._frame, *self._texts, *self._files,
                                  0.0 if dpi is None else float(dpi), self._monochrome, utf8)

    @property
    def sheet(self):
        """(scale, x1, y1, x2, y2): what a drawing has, by the data where it was not given."""
        return self._canvas.sheet(self._options(None, False))

    def draw(self, path, *, dpi=None, utf8=False):
        """Draws to a file, by its extension: .svg, .png, .pdf, .dwg, .dxf; one that is there is replaced. Returns path.

        dpi: pixels an inch of PNG, 300 without it. utf8: texts of DXF in UTF-8, else in GBK.
        """
        if dpi is not None and not 1.0 <= dpi <= 10000.0:
            raise ValueError(f"dpi must be within 1 to 10000, not {dpi}")
        name = os.fspath(path)
        if pathlib.Path(name).suffix[1:].lower() not in FORMATS:
            raise ValueError(f"{name}: the extension names no output; use .svg, .png, .pdf, .dwg or .dxf")
        for line in self._canvas.draw(self._options(dpi, utf8), name):
            _warn(line)
        return path

    def to_bytes(self, format, *, dpi=None, utf8=False):
        """The drawing in one of "svg", "png", "pdf", "dwg", "dxf" as bytes; dpi and utf8 as in draw."""
        if format not in FORMATS:
            raise ValueError(f"format must be one of {', '.join(FORMATS)}, not {format!r}")
        with tempfile.TemporaryDirectory() as folder:
            return self.draw(pathlib.Path(folder) / f"map.{format}", dpi=dpi, utf8=utf8).read_bytes()

    def to_svg(self):
        """The drawing as an SVG document."""
        return self.to_bytes("svg").decode()

    def _repr_svg_(self):
        if not len(self):
            return None
        svg = self.to_svg()
        return svg if len(svg) <= _LARGEST_SVG else None

    def _repr_png_(self):
        return self.to_bytes("png", dpi=_NOTEBOOK_DPI) if len(self) else None

    def __repr__(self):
        return f"<zenromath.Map of {len(self)} features>"


def _warn(line):
    """A warning that names the first caller outside this file."""
    frame, level = sys._getframe(), 1
    while frame.f_back is not None and frame.f_code.co_filename == __file__:
        frame, level = frame.f_back, level + 1
    warnings.warn(line, _core.LibraryWarning, stacklevel=level)


def _file(name, path):
    if path is None:
        return ""
    path = os.fspath(path)
    if not os.path.isfile(path):
        raise FileNotFoundError(f"{name}: {path}: no such file")
    return path


def _number(name, value, least, most):
    if isinstance(value, bool) or int(value) != value or not least <= value <= most:
        raise ValueError(f"{name} must be a whole number from {least} to {most}, not {value}")
    return int(value)


def _look(kind, *, symbol=None, layer=None, outline=0, line_type=1, pen_style=0, pen_value=0, height=None, note="0",
          place=None, level=0):
    if symbol is None:
        symbol, plain_layer = (0, outline) if outline and kind == "area" else _PLAIN[kind]
    else:
        plain_layer = symbol or outline or _PLAIN[kind][1]
    if place not in PLACES:
        raise ValueError(f"place must be one of {', '.join(PLACES[1:])}, not {place!r}")
    return _core.Look(_number("symbol", symbol, 0, 999),
                      _number("layer", plain_layer if layer is None else layer, 1, 999),
                      _number("outline", outline, 0, 999), _number("line_type", line_type, 1, 5),
                      _number("pen_style", pen_style, 0, 6), _number("pen_value", pen_value, 0, 255), str(note),
                      PLACES.index(place), _number("level", level, 0, 9), height)


def _columns(points):
    table = np.asarray([point[:2] for point in points], float)
    return np.ascontiguousarray(table[:, 0]), np.ascontiguousarray(table[:, 1])


def _property(properties, name, option):
    try:
        return properties[name]
    except (KeyError, TypeError):
        raise KeyError(f"{option}: the features have no property {name!r}") from None


def _geometries(what):
    """Pairs of a geometry, None where a feature has none, and its properties."""
    if hasattr(what, "__geo_interface__"):
        what = what.__geo_interface__
    if isinstance(what, dict):
        if what.get("type") == "FeatureCollection":
            for feature in what["features"]:
                yield from _geometries(feature)
        elif what.get("type") == "Feature":
            yield what.get("geometry"), what.get("properties")
        elif "type" in what:
            yield what, None
        else:
            raise ValueError("a dict without \"type\" is no geometry")
    elif isinstance(what, (list, tuple)) or hasattr(what, "__iter__") and not isinstance(what, (str, bytes)):
        for one in what:
            yield from _geometries(one)
    else:
        raise TypeError(f"a {type(what).__name__} has no __geo_interface__: see points, line and area for arrays")
