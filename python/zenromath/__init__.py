"""Coordinates, distances, areas and map symbols of surveying, over numpy arrays.

Angles are radians in forward, backward and inverse_of_forward, degrees everywhere else; lengths are metres. x is north
and y east in the projection's functions, x east and y north in plane geometry and maps, as in the library itself.
"""
from enum import IntEnum

import numpy as _np

from ._core import (ClipArea, Find4H, LibraryError, LibraryWarning, __version__, arc, area, areas, backward, cross,
                    deg_dms, distance, distance_to_line, dms_deg, dms_rad, dms_sec, forward, inverse_of_forward,
                    parallel, point_in_polygon, rad_dms, spline, zone)
from .drawing import Drawing, read_drawing
from .map import Map


class Ellipsoid(IntEnum):
    """The ellipsoids of forward, backward and inverse_of_forward."""
    KRASSOVSKY_1940 = 54
    IAG_1975 = 80
    WGS_84 = 84


class System(IntEnum):
    """Ellipsoid and zone width in one number, for distance and area."""
    KRASSOVSKY_1940_6_DEGREES = 10154
    KRASSOVSKY_1940_3_DEGREES = 10354
    IAG_1975_6_DEGREES = 10180
    IAG_1975_3_DEGREES = 10380
    WGS_84_3_DEGREES = 10084
    WGS_84_6_DEGREES = 10184


def to_plane(longitude, latitude, *, ellipsoid=Ellipsoid.IAG_1975, width=3, meridian=None):
    """Degrees to plane coordinates with zone number and false easting: (x, y), north and east in metres.

    width: 3 or 6 degrees; each position goes to its own zone. meridian: a central meridian in degrees for all
    positions; then y has the false easting of 500000 m and no zone number.
    """
    longitude, latitude = _np.broadcast_arrays(_np.asarray(longitude, float), _np.asarray(latitude, float))
    if not (_np.all(_np.abs(latitude) <= 90.0) and _np.all(_np.abs(longitude) <= 360.0)):
        raise ValueError("latitudes must lie within -90 to 90 and longitudes within -360 to 360 degrees; "
                         "longitude comes first")
    if meridian is None:
        number, meridian = zone(longitude, width)
        offset = _np.asarray(number) * 1e6 + 500000.0
    else:
        offset = 500000.0
    x, y = forward(int(ellipsoid), _np.radians(latitude), _np.radians(longitude - meridian))
    return x, y + offset


def to_geodetic(x, y, *, ellipsoid=Ellipsoid.IAG_1975, width=3, meridian=None):
    """What to_plane gives back to degrees: (longitude, latitude)."""
    x, y = _np.broadcast_arrays(_np.asarray(x, float), _np.asarray(y, float))
    if meridian is None:
        if width not in (3, 6):
            raise ValueError(f"width must be 3 or 6 degrees, not {width}")
        number = _np.trunc(y / 1e6)
        if not _np.all((number >= 1) & (number <= 360 // width)):
            raise ValueError("an easting without a zone number: give the central meridian, meridian=...")
        y = y - number * 1e6
        meridian = number * 3.0 if width == 3 else number * 6.0 - 3.0
    B, l = inverse_of_forward(int(ellipsoid), x, y - 500000.0)
    return _np.degrees(l) + meridian, _np.degrees(B)


__all__ = ["ClipArea", "Drawing", "Ellipsoid", "Find4H", "LibraryError", "LibraryWarning", "Map", "System", "arc", "area",
           "areas", "backward", "cross", "deg_dms", "distance", "distance_to_line", "dms_deg", "dms_rad", "dms_sec",
           "forward", "inverse_of_forward", "parallel", "point_in_polygon", "rad_dms", "read_drawing", "spline",
           "to_geodetic", "to_plane", "zone"]
