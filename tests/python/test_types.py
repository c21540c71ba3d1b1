"""Type hints, docstrings and the list of names agree with what the module has."""
import ast
import inspect
import pathlib
import re

import pytest

import zenromath as zm

HINTS = ast.parse((pathlib.Path(zm.__file__).with_suffix(".pyi")).read_text(encoding="utf-8"))
FUNCTIONS = {n.name: n for n in HINTS.body if isinstance(n, ast.FunctionDef)}
CLASSES = {n.name: n for n in HINTS.body if isinstance(n, ast.ClassDef)}


def names(arguments):
    return [a.arg for a in arguments.posonlyargs + arguments.args], [a.arg for a in arguments.kwonlyargs]


def methods(name):
    return {n.name: n for n in CLASSES[name].body if isinstance(n, ast.FunctionDef)}


def test_the_version_is_that_of_the_project():
    project = (pathlib.Path(__file__).parents[2] / "CMakeLists.txt").read_text(encoding="utf-8")
    assert zm.__version__ == re.search(r"project\(.*?VERSION\s+([\d.]+)", project, re.S).group(1)


def test_every_public_name_has_hints_and_is_there():
    assert sorted(FUNCTIONS.keys() | CLASSES.keys()) == sorted(zm.__all__)


@pytest.mark.parametrize("name", sorted(zm.__all__))
def test_every_public_name_is_documented(name):
    assert len(inspect.getdoc(getattr(zm, name)) or "") > 20


@pytest.mark.parametrize("name", sorted(FUNCTIONS))
def test_parameters_of_functions_are_as_hinted(name):
    function = getattr(zm, name)
    positional, keywords = names(FUNCTIONS[name].args)
    if inspect.isfunction(function):
        found = inspect.getfullargspec(function)
        assert (found.args, found.kwonlyargs) == (positional, keywords)
    else:  # a compiled one: its first line of documentation has them
        for argument in positional + keywords:
            assert re.search(rf"\b{argument}: |\({argument}\b", function.__doc__), argument


@pytest.mark.parametrize("name", ["Map", "Drawing", "ClipArea", "Find4H"])
def test_methods_are_as_hinted_and_documented(name):
    cls = getattr(zm, name)
    public = {n for n in vars(cls) if not n.startswith("_")}
    assert public == {n for n in methods(name) if not n.startswith("_")}
    assert all(inspect.getdoc(getattr(cls, n)) for n in public)


def test_the_looks_of_a_map_are_as_hinted():
    from zenromath import map
    looks = set(inspect.getfullargspec(map._look).kwonlyargs)
    for name in ("points", "line", "area", "add"):
        _, keywords = names(methods("Map")[name].args)
        own = set(inspect.getfullargspec(getattr(zm.Map, name)).kwonlyargs)
        assert looks | own == set(keywords), name
