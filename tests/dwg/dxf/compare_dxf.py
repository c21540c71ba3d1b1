"""Reads a DXF file with ezdxf and GDAL and compares it, entity by entity, with the records of the drawing that it was
made from: lines of JSON as "zenro dwg dump --json" has them, jumps followed, erased records left out. A line of "zenro
dwg info --json" among them has the tables, which are compared too.

usage: compare_dxf.py [--utf8] FILE.dxf RECORDS.jsonl [FILE.dxf RECORDS.jsonl ...]

Prints the differences; exit status 1 where there are any, 77 where a reader is missing.
"""
import json
import math
import sys

try:
    import ezdxf
    from osgeo import gdal, ogr
except ImportError as missing:
    print(missing)
    sys.exit(77)

KINDS = {"3DLINE": "LINE"}
PARTS = ("VERTEX", "ATTRIB", "SEQEND")
NOT_IN_R12 = ("BLOCK", "ENDBLK", "VIEWPORT")
# Kinds that GDAL makes features of, with their points as they are.
GDAL_POINTS = ("LINE", "POINT", "TEXT", "INSERT")
DEGREES = {"rotation": "rotation", "start": "start_angle", "end": "end_angle", "oblique": "oblique"}
PLAIN = {"radius": "radius", "height": "height", "width": "width", "scale_x": "xscale", "scale_y": "yscale",
         "scale_z": "zscale", "columns": "column_count", "rows": "row_count", "column_gap": "column_spacing",
         "row_gap": "row_spacing", "bulge": "bulge", "start_width": "start_width", "end_width": "end_width",
         "generation": "text_generation_flag", "horizontal": "halign", "vertical": "valign", "tag": "tag",
         "prompt": "prompt", "attribute_flags": "flags", "vertex_flags": "flags", "dimension_type": "dimtype"}
# Where ezdxf has other names for a kind.
OTHER = {("SHAPE", "scale"): "size", ("SHAPE", "rotation"): "rotation", ("SHAPE", "width"): "xscale",
         ("VERTEX", "start_width"): "start_width", ("POLYLINE", "start_width"): "default_start_width",
         ("POLYLINE", "end_width"): "default_end_width", ("POLYLINE", "closed"): "flags",
         ("POLYLINE", "curve"): "smooth_type", ("3DFACE", "invisible"): "invisible_edges",
         ("DIMENSION", "rotation"): "angle"}


class Differences:
    def __init__(self):
        self.count = 0

    def expect(self, where, what, wanted, found, near=0.0):
        same = wanted == found
        if not same and isinstance(wanted, (int, float)) and isinstance(found, (int, float)):
            same = abs(wanted - found) <= near * max(1.0, abs(wanted))
        if not same:
            self.count += 1
            if self.count <= 40:
                print(f"{where}: {what} is {found!r}, not {wanted!r}")


def points_of(entity):
    kind = entity.dxftype()
    dxf = entity.dxf
    if kind == "LINE":
        return [dxf.start, dxf.end]
    if kind == "POINT" or kind == "VERTEX":
        return [dxf.location]
    if kind in ("CIRCLE", "ARC"):
        return [dxf.center]
    if kind in ("TRACE", "SOLID", "3DFACE"):
        return [dxf.vtx0, dxf.vtx1, dxf.vtx2, dxf.vtx3]
    if kind == "DIMENSION":
        return [dxf.defpoint]
    return [dxf.insert] if dxf.hasattr("insert") else []


def compare(seen, where, record, entity):
    kind = KINDS.get(record["kind"], record["kind"])
    if kind != entity.dxftype():
        seen.expect(where, "the kind", kind, entity.dxftype())
        return
    dxf = entity.dxf
    seen.expect(where, "the layer", record["layer"] or dxf.layer, dxf.layer)
    seen.expect(where, "the colour", record.get("color", 256), dxf.color)
    if "linetype" in record:
        seen.expect(where, "the linetype", record["linetype"].upper(), dxf.linetype.upper())
    if dxf.is_supported("thickness"):
        seen.expect(where, "the thickness", record.get("thickness", 0.0), dxf.get("thickness", 0.0))
    if "handle" in record:
        seen.expect(where, "the handle", int(record["handle"], 16), int(dxf.handle, 16))
    if kind not in ("POLYLINE", "SEQEND"):
        wanted, found = record.get("points", []), points_of(entity)
        seen.expect(where, "the number of points", len(wanted), len(found))
        for a, b in zip(wanted, found):
            for i in range(3):
                seen.expect(where, "a coordinate", a[i], b[i])
    if kind == "POLYLINE":
        seen.expect(where, "the elevation", record.get("elevation", 0.0), dxf.elevation[2])
    if "text" in record and kind != "DIMENSION" and "\ufffd" not in record["text"]:
        seen.expect(where, "the text", record["text"], dxf.text)
    for field, value in record.items():
        name = OTHER.get((kind, field)) or PLAIN.get(field) or DEGREES.get(field)
        if name is None or not dxf.is_supported(name):
            continue
        if field not in DEGREES:
            seen.expect(where, field, value, dxf.get(name))
        else:
            found = dxf.get(name)
            seen.expect(where, field, math.degrees(value), found, 1e-14)
    if "align_x" in record and kind in ("TEXT", "ATTRIB", "ATTDEF"):
        seen.expect(where, "the alignment point", (record["align_x"], record["align_y"]), tuple(dxf.align_point)[:2])
    if "name" in record and not record["name"].startswith("*"):
        # A name that differs from another by its case alone has a number behind it.
        found = dxf.get("name") or dxf.get("geometry")
        seen.expect(where, "the block", record["name"], found[:len(record["name"])])


def with_parts(layout):
    """The entities of a layout, vertices and attributes behind their owners."""
    for entity in layout:
        yield entity
        if entity.dxftype() == "POLYLINE":
            yield from entity.vertices
            yield entity.seqend
        elif entity.dxftype() == "INSERT" and entity.attribs:
            yield from entity.attribs
            yield entity.seqend


def compare_layout(seen, name, records, layout):
    entities = list(with_parts(layout))
    records = [r for r in records if r["kind"] not in NOT_IN_R12]
    seen.expect(name, "the number of entities", len(records), len(entities))
    for i, (record, entity) in enumerate(zip(records, entities)):
        compare(seen, f"{name} {i}", record, entity)
    return records, entities


def points_for_gdal(record, entity):
    """The points that a feature of GDAL has; None where it makes others, of arcs, meshes and other planes."""
    if "ext_x" in record:
        return None
    if record["kind"] in GDAL_POINTS:
        return record["points"]
    closed, curved_or_mesh = 1, 2 | 4 | 16 | 64
    if entity.dxf.flags & curved_or_mesh or any(v.dxf.bulge for v in entity.vertices):
        return None
    points = [v.dxf.location for v in entity.vertices]
    return points + points[:1] if entity.dxf.flags & closed else points


def compare_with_gdal(seen, path, records, entities, utf8):
    """Features in the order of the entities, with their points."""
    gdal.UseExceptions()
    gdal.SetConfigOption("DXF_ENCODING", "UTF-8" if utf8 else None)  # it knows code pages of the file by number alone
    gdal.SetConfigOption("DXF_INLINE_BLOCKS", "FALSE")
    source = ogr.Open(path)  # the layer does not live longer
    layer = source.GetLayerByName("entities")
    wanted = {}
    for record, entity in zip(records, entities):
        if record["kind"] in GDAL_POINTS or record["kind"] == "POLYLINE":
            wanted[entity.dxf.handle.upper()] = (record, entity)
    order, compared = list(wanted), 0
    for feature in layer:
        handle = (feature.GetField("EntityHandle") or "").upper()
        if handle not in wanted:
            continue
        record, entity = wanted[handle]
        seen.expect("GDAL", "the next handle", order[compared], handle)
        compared += 1
        seen.expect(f"GDAL {handle}", "the layer", record["layer"] or feature.GetField("Layer"), feature.GetField("Layer"))
        if record["kind"] == "TEXT" and "\ufffd" not in record["text"]:
            seen.expect(f"GDAL {handle}", "the text", record["text"], feature.GetField("Text"))
        geometry = feature.GetGeometryRef()
        found = geometry.GetPoints() if geometry is not None and geometry.GetPointCount() else []
        wanted_points = points_for_gdal(record, entity)
        if wanted_points is not None:
            seen.expect(f"GDAL {handle}", "the number of points", len(wanted_points), len(found))
            for a, b in zip(wanted_points, found):
                seen.expect(f"GDAL {handle}", "x", a[0], b[0])
                seen.expect(f"GDAL {handle}", "y", a[1], b[1])
    seen.expect("GDAL", "the number of features", len(wanted), compared)
    return compared


def compare_tables(seen, info, document):
    """Layers, linetypes and styles in their order; names that a table has twice or not at all are others in a DXF."""
    def named(entries):
        names = [e["name"].upper() for e in entries]
        return [(i, e) for i, e in enumerate(entries) if e["name"] and names.count(e["name"].upper()) == 1]

    layers = list(document.layers)
    for i, wanted in named(info["layers"]):
        layer = document.layers.get(wanted["name"])
        where = f"layer {wanted['name']}"
        seen.expect(where, "its place", layers.index(layer), i)
        seen.expect(where, "the colour", wanted["color"], layer.dxf.color)
        seen.expect(where, "being frozen", wanted["flag"] & 1, layer.dxf.flags & 1)
        seen.expect(where, "the linetype", wanted["linetype"].upper(), layer.dxf.linetype.upper())
    for _, wanted in named(info["linetypes"]):
        linetype = document.linetypes.get(wanted["name"])
        where = f"linetype {wanted['name']}"
        tags = linetype.pattern_tags.tags
        seen.expect(where, "the description", wanted["description"], linetype.dxf.description)
        seen.expect(where, "the length", [wanted["length"]], [t.value for t in tags if t.code == 40])
        dashes = wanted["dashes"][:wanted["elements"]]
        seen.expect(where, "the dashes", dashes, [t.value for t in tags if t.code == 49])
    for _, wanted in named(info["styles"]):
        dxf = document.styles.get(wanted["name"]).dxf
        where = f"style {wanted['name']}"
        seen.expect(where, "the font", (wanted["font"], wanted["big_font"]), (dxf.font, dxf.bigfont))
        seen.expect(where, "the height", wanted["height"], dxf.height)
        seen.expect(where, "the width", wanted["width"], dxf.width)
        seen.expect(where, "the slant", math.degrees(wanted["oblique"]), dxf.oblique, 1e-14)


def compare_files(seen, path, lines, utf8):
    with open(lines, encoding="utf-8") as file:
        records = [json.loads(line) for line in file if line.strip()]
    tables = [r for r in records if "layers" in r]
    records = [r for r in records if "layers" not in r]
    names = {}  # of blocks, in their order
    for record in records:
        if record.get("section") == "blocks" and "block_index" not in record:
            record["block_index"] = names.setdefault(record["block_name"], len(names))
    document = ezdxf.readfile(path, encoding="utf-8") if utf8 else ezdxf.readfile(path)
    for info in tables:
        compare_tables(seen, info, document)
    in_model = [r for r in records if "block_index" not in r]
    model, entities = compare_layout(seen, "entity", in_model, document.modelspace())
    blocks = {}
    for record in records:
        if "block_index" in record:
            blocks.setdefault(record["block_index"], []).append(record)
    of_file = [b for b in document.blocks if not b.name.upper().startswith(("*MODEL", "*PAPER", "$MODEL", "$PAPER"))]
    seen.expect("blocks", "their number", len(blocks), len(of_file))
    for index, block in zip(sorted(blocks), of_file):
        compare_layout(seen, f"block {index}", blocks[index], block)
    in_gdal = compare_with_gdal(seen, path, model, entities, utf8)
    return len(records), in_gdal


def main():
    files = [a for a in sys.argv[1:] if a != "--utf8"]
    bad = 0
    for path, lines in zip(files[::2], files[1::2]):
        seen = Differences()
        count, in_gdal = compare_files(seen, path, lines, "--utf8" in sys.argv)
        print(f"{path}: {count} records, {in_gdal} of them with GDAL, {seen.count} differences")
        bad += seen.count
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
