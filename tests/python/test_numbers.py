"""Numbers through the Python module: the same as the library's own, whole arrays and single values alike."""
import math
import threading
import warnings

import numpy as np
import pytest

import zenromath as zm


def test_packed_angles_go_there_and_back():
    assert zm.deg_dms(30.5) == pytest.approx(30.3, abs=1e-12)
    degrees = np.array([0.25, 10.125, 359.9])
    assert zm.dms_deg(zm.deg_dms(degrees)) == pytest.approx(degrees, abs=1e-10)
    assert zm.dms_rad(30.3) == pytest.approx(math.radians(30.5), abs=1e-12)
    assert zm.dms_sec(1.0001) == pytest.approx(3601.0, abs=1e-9)


def test_forward_gives_the_length_of_the_meridian():
    # Quarter meridian of Krassovsky 1940: 10,002,137.498 m (Jordan/Eggert); forward keeps a term that moves it by 0.02 mm.
    x, y = zm.forward(54, math.pi / 2, 0.0)
    assert x == pytest.approx(10002137.498, abs=0.002)
    assert y == pytest.approx(0.0, abs=1e-6)


def test_arrays_have_the_bits_of_single_values():
    rng = np.random.default_rng(7)
    B, l = rng.uniform(0.3, 0.9, 1000), rng.uniform(-0.05, 0.05, 1000)
    x, y, gamma = zm.forward(80, B, l, convergence=True)
    for i in range(0, 1000, 97):
        assert (x[i], y[i], gamma[i]) == zm.forward(80, B[i], l[i], convergence=True)


def test_long_arrays_have_the_bits_of_their_pieces():
    rng = np.random.default_rng(9)
    B, l = rng.uniform(0.3, 0.9, 200_001), rng.uniform(-0.05, 0.05, 200_001)
    whole = zm.forward(80, B, l, convergence=True)
    back = zm.inverse_of_forward(80, whole[0], whole[1])
    for at in range(0, 200_001, 10_007):  # too short to be parted
        piece = zm.forward(80, B[at:at + 10_007], l[at:at + 10_007], convergence=True)
        assert all(np.array_equal(w[at:at + 10_007], p) for w, p in zip(whole, piece))
        inverse = zm.inverse_of_forward(80, piece[0], piece[1])
        assert all(np.array_equal(w[at:at + 10_007], p) for w, p in zip(back, inverse))


def test_inverse_undoes_forward():
    rng = np.random.default_rng(8)
    B, l = rng.uniform(0.1, 1.2, (50, 20)), rng.uniform(-0.06, 0.06, (50, 20))
    back = zm.inverse_of_forward(84, *zm.forward(84, B, l))
    assert back[0].shape == (50, 20)
    assert np.abs(back[0] - B).max() < 1e-12
    assert np.abs(back[1] - l).max() < 1e-12


def test_shapes_that_differ_are_refused():
    with pytest.raises(ValueError, match="B and l must have the same shape: 3 and 2 numbers"):
        zm.forward(80, [0.1, 0.2, 0.3], [0.0, 0.0])


@pytest.mark.parametrize("longitude, width, number, meridian", [(120.0, 3, 40, 120), (118.4, 3, 39, 117), (120.0, 6, 21, 123),
                                                                (113.9, 6, 19, 111)])
def test_zone(longitude, width, number, meridian):
    assert zm.zone(longitude, width) == (number, meridian)


def test_zone_refuses_other_widths():
    with pytest.raises(ValueError, match="3 or 6 degrees, not 5"):
        zm.zone(120.0, 5)


def test_to_plane_and_back_in_degrees():
    longitude, latitude = np.array([120.3, 117.2, 113.9]), np.array([31.1, 30.0, 45.0])
    x, y = zm.to_plane(longitude, latitude)
    assert list(np.trunc(y / 1e6)) == [40.0, 39.0, 38.0]
    back = zm.to_geodetic(x, y)
    assert np.abs(back[0] - longitude).max() < 1e-11
    assert np.abs(back[1] - latitude).max() < 1e-11
    x1, y1 = zm.to_plane(120.3, 31.1, meridian=120.0)
    assert (x1, y1 + 40e6) == (x[0], y[0])


def test_swapped_axes_are_refused():
    with pytest.raises(ValueError, match="longitude comes first"):
        zm.to_plane(31.1, 120.3)
    with pytest.raises(ValueError, match="longitude comes first"):
        zm.area([31.0, 32.0, 32.0], [120.0, 120.0, 121.0])


def test_easting_without_zone_needs_the_meridian():
    with pytest.raises(ValueError, match="meridian"):
        zm.to_geodetic(3444000.0, 528000.0)


def test_area_of_a_square_on_the_equator():
    # Authalic latitude in closed form (Snyder PP 1395, eq. 3-12), WGS 84: one degree by one degree at the equator.
    e2 = 0.00669437999014
    e = math.sqrt(e2)
    q = lambda b: (1 - e2) * (math.sin(b) / (1 - e2 * math.sin(b) ** 2)
                              - math.log((1 - e * math.sin(b)) / (1 + e * math.sin(b))) / (2 * e))
    truth = 6378137.0 ** 2 * math.radians(1) * (q(math.radians(1))) / 2
    got = zm.area([0.0, 1.0, 1.0, 0.0], [0.0, 0.0, 1.0, 1.0])
    assert got == pytest.approx(truth, rel=1e-6)
    many = zm.areas([0.0, 1.0, 1.0, 0.0] * 2, [0.0, 0.0, 1.0, 1.0] * 2, [0, 4, 8])
    assert list(many) == [got, got]


def test_areas_checks_where_rings_begin():
    with pytest.raises(ValueError, match="end with the number of points, 4"):
        zm.areas([0.0, 1.0, 1.0, 0.0], [0.0, 0.0, 1.0, 1.0], [0, 3])
    with pytest.raises(ValueError, match="must not fall: entry 2"):
        zm.areas([0.0, 1.0, 1.0, 0.0], [0.0, 0.0, 1.0, 1.0], [0, 3, 2, 4])


def test_distance_along_the_equator():
    assert zm.distance([0.0, 1.0], [0.0, 0.0]) == pytest.approx(6378137.0 * math.radians(1), rel=1e-7)


def test_plane_geometry():
    assert zm.cross((0, 0, 2, 2), (0, 2, 2, 0)) == (1.0, 1.0, True)
    assert zm.cross((0, 0, 1, 1), (0, 1, 1, 2)) is None
    x, y = [0.0, 4.0, 4.0, 0.0], [0.0, 0.0, 4.0, 4.0]
    assert list(zm.point_in_polygon(x, y, [2.0, 5.0, 4.0], [2.0, 2.0, 2.0])) == [1, 0, -1]
    px, py = zm.parallel([0.0, 10.0], [0.0, 0.0], 2.0)
    assert list(px) == pytest.approx([0.0, 10.0]) and list(py) == pytest.approx([-2.0, -2.0])
    sx, sy = zm.spline([0.0, 1.0, 2.0], [0.0, 1.0, 0.0])
    assert len(sx) == 11 and (sx[5], sy[5]) == pytest.approx((1.0, 1.0))
    with pytest.raises(ValueError, match="no arc"):
        zm.arc([0, 1, 2], [0, 0, 0])


@pytest.mark.parametrize("vertices", [3, 23, 24, 300])
def test_many_points_in_a_polygon_have_the_answers_of_single_ones(vertices):
    rng = np.random.default_rng(vertices)
    angles = np.sort(rng.uniform(0, 2 * np.pi, vertices))
    reach = rng.uniform(1.0, 10.0, vertices)
    x, y = np.round(reach * np.cos(angles), 1), np.round(reach * np.sin(angles), 1)
    px, py = np.round(rng.uniform(-10, 10, (2, 3000)), 1)  # many lie on the levels of vertices
    px[:vertices], py[:vertices] = x, y                    # and some on them
    px[-5:-1], py[-5:-1] = [x.max() + 5e-8, x[x.argmax()], x.min() - 5e-8, 50.0], [y[x.argmax()], 50.0, y[x.argmin()], 0.0]
    px[-1] = np.nan
    many = zm.point_in_polygon(x, y, px, py)
    assert set(many[:-1]) == {-1, 0, 1}
    assert [zm.point_in_polygon(x, y, a, b) for a, b in zip(px, py)] == list(many)


def test_clip_area():
    area = zm.ClipArea(0, 0, 10, 10)
    assert area.line(-5, 5, 5, 5) == (0.0, 5.0, 5.0, 5.0)
    assert area.line(-5, -5, -1, -1) is None
    parts, rows = area.lines([[-5, 5, 5, 5], [-5, -5, -1, -1], [1, 1, 2, 2]])
    assert rows.tolist() == [0, 2] and parts.tolist() == [[0, 5, 5, 5], [1, 1, 2, 2]]
    polygon = zm.ClipArea([0.0, 10.0, 0.0], [0.0, 0.0, 10.0])
    assert polygon.where(1.0, 1.0) == 1 and polygon.where(9.0, 9.0) == 0
    with pytest.raises(ValueError, match="at least 3"):
        zm.ClipArea([0.0, 1.0], [0.0, 1.0])


def test_heights():
    table = zm.Find4H([0.0, 10.0], [0.0, 0.0], [5.0, 7.0])
    other = zm.Find4H([0.0], [0.0], [100.0])
    table.append([20.0], [0.0], [9.0])
    assert len(table) == 3
    assert list(table.find([0.0, 10.05, 20.0, 15.0], [0.0, 0.0, 0.04, 0.0])) == [5.0, 7.0, 9.0, 0.0]
    del other
    assert table.find(10.0, 0.0) == 7.0


def test_threads_wait_for_each_other():
    table = zm.Find4H(np.arange(1000.0), np.zeros(1000), np.arange(1000.0) + 1)
    wrong = []

    def ask(number):
        for _ in range(200):
            if table.find(float(number), 0.0) != number + 1:
                wrong.append(number)

    threads = [threading.Thread(target=ask, args=(i,)) for i in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []


def test_nothing_is_said_where_nothing_is_wrong():
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        zm.forward(80, 0.5, 0.01)
        zm.Find4H([0.0], [0.0], [1.0]).find(0.0, 0.0)
