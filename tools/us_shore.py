#!/usr/bin/env python3
"""Writes src/feeds/us_shore.inc from nation-10m.json of the npm package us-atlas 3.0.1: the shores of the
United States and their territories, Great Lakes and bays included, in hundredths of a degree. A ring is its
number of points and then latitude and longitude of each. Run by hand when a newer edition is wanted.

    npm pack us-atlas@3.0.1 && tar xzf us-atlas-3.0.1.tgz
    tools/us_shore.py package/nation-10m.json > src/feeds/us_shore.inc
"""
import json
import sys

SMALLEST_KM2 = 2


def decoded(topology):
    """Arcs of the topology in degrees."""
    scale, shift = topology["transform"]["scale"], topology["transform"]["translate"]
    for arc in topology["arcs"]:
        x = y = 0
        points = []
        for dx, dy in arc:
            x, y = x + dx, y + dy
            points.append((x * scale[0] + shift[0], y * scale[1] + shift[1]))
        yield points


def rings(topology):
    arcs = list(decoded(topology))
    for geometry in topology["objects"]["nation"]["geometries"]:
        polygons = geometry["arcs"] if geometry["type"] == "MultiPolygon" else [geometry["arcs"]]
        for ring in (ring for polygon in polygons for ring in polygon):
            points = []
            for index in ring:
                arc = arcs[index] if index >= 0 else arcs[~index][::-1]
                points += arc[1:] if points else arc
            yield points


def rounded(ring):
    points = []
    for longitude, latitude in ring:
        point = (round(latitude * 100), round(longitude * 100))
        if not points or points[-1] != point:
            points.append(point)
    return points[:-1] if points[0] == points[-1] else points


def area_km2(points):
    """Roughly, on a plane at forty degrees."""
    pairs = zip(points, points[1:] + points[:1])
    return abs(sum(a[1] * b[0] - b[1] * a[0] for a, b in pairs)) / 2 * 1.11 * 1.11 * 0.77


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        topology = json.load(file)
    numbers = []
    for ring in map(rounded, rings(topology)):
        if len(ring) < 3 or area_km2(ring) < SMALLEST_KM2:
            continue
        numbers.append(len(ring))
        numbers += [value for point in ring for value in point]
    line = ""
    for number in numbers:
        word = f"{number},"
        if len(line) + len(word) > 110:
            print(line)
            line = ""
        line += word
    print(line)


main()
