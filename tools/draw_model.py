#!/usr/bin/env python3
"""Draws a model: mirvane-stage model show MODEL.prm | draw_model.py > picture.svg

Reads the text of a model as the program writes it, and draws the meshes of all scene objects where
they stand, cameras and lights by emblems, and a line from each object to the one it hangs below.
"""

import base64
import itertools
import math
import struct
import sys
import xml.etree.ElementTree as ET

WIDTH, HEIGHT, MARGIN = 560, 400, 40
TURN, TILT = math.radians(-35), math.radians(24)  # of the view, from the front
LIGHT = (-0.45, 0.85, -0.28)  # where it comes from, for the shades of faces
COLORS = [(0.30, 0.52, 0.78), (0.87, 0.55, 0.24), (0.42, 0.66, 0.40)]  # one tool after the other


def matrix(node):
    values = struct.unpack("<16d", base64.b64decode(node.findtext("transform")))
    return [values[row * 4:row * 4 + 4] for row in range(4)]


def place(point, rows):
    """A point, given as x, y, z, times a matrix that has the translation in its last row."""
    return tuple(sum(point[i] * rows[i][j] for i in range(3)) + rows[3][j] for j in range(3))


def chunk(data, at=0):
    """One chunk: its name, its payload, its children by name, and where it ends."""
    size, count, length = struct.unpack_from("<3i", data, at)
    at += 12
    name, payload = data[at:at + length].decode(), data[at + length:at + length + size]
    at += length + size
    children = {}
    for _ in range(count):
        child, inner, _, at = chunk(data, at)
        children[child] = inner
    return name, payload, children, at


def triangles(node):
    """The faces of a node's mesh, as three corners each."""
    if not node.findtext("CMesh"):
        return []
    _, _, parts, _ = chunk(base64.b64decode(node.findtext("CMesh")))
    vertices = list(struct.iter_unpack("<3d", parts["vertex"]))
    return [[vertices[i] for i in face] for face in struct.iter_unpack("<3i", parts["face"])]


def cut(face, longest):
    """Pieces of a face that are small enough to be sorted by depth."""
    waiting = [face]
    while waiting:
        a, b, c = max(((p, q, r) for p, q, r in (waiting[-1], waiting[-1][1:] + waiting[-1][:1],
                                                 waiting[-1][2:] + waiting[-1][:2])),
                      key=lambda corners: math.dist(corners[0], corners[1]))
        waiting.pop()
        if math.dist(a, b) <= longest:
            yield [a, b, c]
        else:
            middle = tuple((p + q) / 2 for p, q in zip(a, b))
            waiting += [[a, middle, c], [middle, b, c]]


def shade(face, color):
    a, b, c = face
    u, v = [b[i] - a[i] for i in range(3)], [c[i] - a[i] for i in range(3)]
    normal = (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])
    length = sum(n * n for n in normal) ** 0.5 or 1.0
    bright = 0.8 + 0.3 * sum(n * l for n, l in zip(normal, LIGHT)) / length
    return "#" + "".join(f"{int(255 * min(1, part * bright)):02x}" for part in color)


def emblem(kind, size):
    """Lines that stand for an object without a mesh, in its own space; a camera looks along -z."""
    if kind == "camera":
        corners = [(x * size, y * size, -1.5 * size) for x, y in ((-1, -.6), (1, -.6), (1, .6), (-1, .6))]
        return [[(0, 0, 0), corner] for corner in corners] + [corners + corners[:1]]
    if kind == "light":
        rays = [(1, 0, 0), (0, 1, 0), (0, 0, 1), (.6, .6, .6), (.6, -.6, .6), (.6, .6, -.6), (-.6, .6, .6)]
        return [[tuple(-size * .6 * part for part in ray), tuple(size * .6 * part for part in ray)]
                for ray in rays]
    return []


def objects(model):
    """Of each scene object: the tool's name, its node, the tool's number and kind."""
    for number, tool in enumerate(model.iter("MVR_Plugin")):
        is_camera = tool.findtext("type") == "Free Camera"
        kind = tool.findtext("customdata/kind") or ("camera" if is_camera else "object")
        for node in tool.iterfind("nodeinfo/node"):
            yield tool.findtext("name"), node, number, kind


def view(point):
    """Right, down and away from the eye, which looks at the front from above."""
    x, y, z = -point[0], point[1], -point[2]
    x, z = x * math.cos(TURN) - z * math.sin(TURN), x * math.sin(TURN) + z * math.cos(TURN)
    y, z = y * math.cos(TILT) - z * math.sin(TILT), y * math.sin(TILT) + z * math.cos(TILT)
    return x, -y, -z


def shapes(model):
    """What to draw: (kind, points in view, color or text), from back to front."""
    found = list(objects(model))
    places = {(tool, node.get("name")): matrix(node)[3][:3] for tool, node, _, _ in found}
    reach = max((abs(part) for _, node, _, _ in found for face in triangles(node)
                 for corner in face for part in place(corner, matrix(node))), default=0.4)
    faces, lines, texts = [], [], []
    for tool, node, number, kind in found:
        rows = matrix(node)
        for face in triangles(node):
            corners = [place(corner, rows) for corner in face]
            (ax, ay, _), (bx, by, _), (cx, cy, _) = map(view, corners)
            if (bx - ax) * (cy - ay) < (cx - ax) * (by - ay):  # it faces the eye
                color = shade(corners, COLORS[number % len(COLORS)])
                faces += [("face", [view(corner) for corner in piece], color)
                          for piece in cut(corners, reach * 0.3)]
        drawn = [[view(place(point, rows)) for point in line] for line in emblem(kind, reach * .16)]
        lines += [("line", line, "#202020") for line in drawn]
        parent = node.find("parent")
        if parent is not None and parent.text:
            above = places[parent.get("external", tool), parent.text]
            lines.append(("link", [view(rows[3][:3]), view(above)], "#b03030"))
        texts.append(("text", [view(rows[3][:3])], tool))
    faces.sort(key=lambda face: -sum(point[2] for point in face[1]))
    return faces + lines + texts


def to_svg(drawn):
    flat = [point for _, points, _ in drawn for point in points]
    left, right = min(p[0] for p in flat), max(p[0] for p in flat)
    top, bottom = min(p[1] for p in flat), max(p[1] for p in flat)
    scale = min((WIDTH - 2 * MARGIN) / (right - left), (HEIGHT - 2 * MARGIN) / (bottom - top))

    def at(point):
        return (WIDTH / 2 + (point[0] - (left + right) / 2) * scale,
                HEIGHT / 2 + (point[1] - (top + bottom) / 2) * scale)

    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
           'font-family="sans-serif" font-size="13">')
    yield f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>'
    for (kind, said), alike in itertools.groupby(drawn, lambda shape: (shape[0], shape[2])):
        if kind == "text":
            x, y = at(next(alike)[1][0])
            yield f'<text x="{x + 14:.0f}" y="{y - 10:.0f}">{said}</text>'
            continue
        end = "Z" if kind == "face" else ""
        way = "".join("M" + " ".join("{:.1f},{:.1f}".format(*at(point)) for point in points) + end
                      for _, points, _ in alike)
        fill = said if kind == "face" else "none"
        dashes = ' stroke-dasharray="5 4"' if kind == "link" else ""
        yield f'<path d="{way}" fill="{fill}" stroke="{said}"{dashes}/>'
    yield "</svg>"


if __name__ == "__main__":
    print("\n".join(to_svg(shapes(ET.fromstring(sys.stdin.read())))))
