#!/usr/bin/env python3
"""The forms of all JSON that the program prints, as JSON Schemas, and whether it keeps to them.

  tools/json_schemas.py check PROGRAM     runs every command of the table against demos and validates what it prints
  tools/json_schemas.py write PROGRAM     writes docs/json anew from what the commands print at these places

A number or text that a demo always knows may be unknown in the world: all but a few names of ALWAYS_KNOWN may be null.
`check` is skipped (77) without Python's jsonschema.
"""
import json
import os
import re
import subprocess
import sys

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs", "json")
SETUP = [["places", "add", "59.91,10.75", "--name", "Oslo"], ["places", "select", "Oslo"],
         ["rules", "add", "--title", "Frost", "--type", "temperature", "--operator", "below", "--threshold", "0"]]

# The demo's account takes any application and token.
LINK = ["station", "link", "--id", "demo", "--token"]
INPUT = "demo\ndemo\n"

# name: what it is, and command lines that print it. A line of JSON each is "lines".
COMMANDS = {
    "forecast": ("The forecast for a place", [["forecast", p] for p in ("Oslo", "Tokyo", "39.74,-104.99", "-77.8,166.7")] +
                 [["forecast", "Oslo", "--confidence", "--outlook"]]),
    "alerts": ("Warnings and alerts for a place, the most severe first", [["alerts", p] for p in ("Oslo", "Denver", "Lagos")]),
    "alerts-coverage": ("The same with how the official ones were checked and where they hold",
                        [["alerts", p, "--coverage", "--geometry"] for p in ("Oslo", "Denver", "Lagos", "Lima")]),
    "coverage": ("The state of official warnings for a place", [["coverage", p] for p in ("Oslo", "Denver", "Lagos", "0,-30")]),
    "nowcast": ("What falls within the next two hours", [["nowcast", p] for p in ("Oslo", "Berlin", "Nairobi")]),
    "air": ("Air, pollen and ultraviolet light", [["air", p] for p in ("Oslo", "Denver", "Tokyo")]),
    "fires": ("Fires near a place", [["fires", p] for p in ("Oslo", "Denver")]),
    "storms": ("Tropical storms", [["storms", p] for p in ("Oslo", "Miami")]),
    "lightning": ("Lightning near a place", [["lightning", p] for p in ("Oslo", "Denver")]),
    "advisories": ("Travel advisories for a place's country", [["advisories", p] for p in ("Oslo", "Lima")]),
    "quakes": ("Earthquakes of the last 24 hours", [["quakes"], ["quakes", "--near", "Oslo"]]),
    "kp": ("Geomagnetic activity", [["kp"]]),
    "brief": ("The weather in a few sentences", [["brief", p] for p in ("Oslo", "Tokyo")]),
    "advice": ("Good hours for activities", [["advice", p] for p in ("Oslo", "Tokyo")]),
    "climate": ("How a day compares with what is usual", [["climate", p] for p in ("Oslo", "Denver")]),
    "doctor": ("Services, folders and the desktop's services", [["doctor"]]),
    "doctor-sources": ("Who warns for each of the saved places", [["doctor", "--sources", "--check"]]),
    "places": ("The saved places", [["places", "list"]]),
    "rules": ("The user's own rules", [["rules", "list"]]),
    "satellites": ("Known satellites", [["satellites", "list"]]),
    "notify": ("What a check would send", [["notify", "--dry-run"]]),
    "station": ("What a weather station measures", [["station", "show"], LINK, ["station", "show"]]),
    "stations": ("The stations of the linked account", [["station", "list"]]),
}

ALWAYS_KNOWN = {"id", "state", "source", "service", "kind", "name", "title", "severity", "from", "to", "latitude", "longitude"}


# One in which all is well, one with places and warnings all over the world, and one in which much fails; each at its moment.
DEMOS = {
    "2026-11-21T09:20:00Z": [],
    "2026-07-04T15:00:00Z": ["--scene", "world"],
    "2026-02-01T00:05:00Z": [word for service in ("meteoAlarm", "nws", "wmo", "fpas", "usgs", "swpc", "yrNo", "airQuality", "nhc",
                                                  "openMeteoArchive") for word in ("--fail", service + "=500")],
}


def documents(program):
    """Name and document of everything that the commands print in the demo around this process."""
    for line in SETUP:
        subprocess.run([program, *line], capture_output=True, check=False)
    for name, (_, lines) in COMMANDS.items():
        for line in lines:
            done = subprocess.run([program, *line, "--json"], input=INPUT, capture_output=True, text=True, check=False)
            if done.returncode in (0, 1) and done.stdout.strip():
                yield name, line, json.loads(done.stdout)
            else:
                yield name, line, None


def kind(value):
    names = {bool: "boolean", int: "number", float: "number", str: "string", type(None): "null"}
    return names[type(value)]


def merged(schema, value):
    """The schema of what it described before and of this value."""
    schema = schema or {}
    if isinstance(value, dict):
        old = schema.get("properties")
        properties = {key: merged((old or {}).get(key), member) for key, member in value.items()}
        required = [key for key in properties if old is None or key in schema.get("required", [])]
        properties |= {key: member for key, member in (old or {}).items() if key not in properties}
        schema |= {"properties": properties, "required": [key for key in required if key in value]}
        name = "object"
    elif isinstance(value, list):
        items = schema.get("items")
        for item in value:
            items = merged(items, item)
        schema |= {"items": items} if items else {}
        name = "array"
    else:
        name = kind(value)
    types = schema.get("type", [])
    types = [types] if isinstance(types, str) else types
    types = types if name in types else [*types, name]
    return {"type": types[0] if len(types) == 1 else sorted(types)} | {k: v for k, v in schema.items() if k != "type"}


def loosened(schema, key=""):
    """With null among the types of what may be unknown, and any type where only null was seen."""
    if schema.get("type") in ("number", "string") and key not in ALWAYS_KNOWN:
        schema["type"] = [schema["type"], "null"]
    if schema.get("type") == "null":
        del schema["type"]
    for name, member in schema.get("properties", {}).items():
        loosened(member, name)
    if "items" in schema:
        loosened(schema["items"], key)
    return schema


def compact(text):
    """What fits on a line stands on one."""
    for opening, inside, closing in ((r"\[", r"[^{}\[\]]", r"\]"), (r"\{", r"[^{}]", r"\}")):
        text = re.sub(opening + r"\n\s*(" + inside + r"{0,90}?)\n\s*" + closing,
                      lambda found: found[0][0] + re.sub(r"\n\s*", " ", found[1]) + found[0][-1], text)
    return text


def write(printed):
    schemas = {}
    for name, line, document in printed:
        if document is not None:
            schemas[name] = merged(schemas.get(name), document)
    for name in COMMANDS.keys() - schemas.keys():
        print(f"nothing was printed for {name}", file=sys.stderr)
    os.makedirs(FOLDER, exist_ok=True)
    for name, schema in schemas.items():
        head = {"$schema": "https://json-schema.org/draft/2020-12/schema",
                "title": f"nimbara {COMMANDS[name][1][0][0]} --json", "description": COMMANDS[name][0]}
        text = json.dumps(head | loosened(schema), indent=1, ensure_ascii=False)
        with open(os.path.join(FOLDER, name + ".json"), "w", encoding="utf-8") as file:
            file.write(compact(text) + "\n")
    return 0 if COMMANDS.keys() == schemas.keys() else 1


def check(printed):
    import jsonschema
    complaints = [f"nothing was printed for {name}"
                  for name in COMMANDS if not any(name == other and document is not None for other, _, document in printed)]
    for name, line, document in printed:
        if document is None:
            continue
        with open(os.path.join(FOLDER, name + ".json"), encoding="utf-8") as file:
            validator = jsonschema.Draft202012Validator(json.load(file))
        complaints += [f"{' '.join(line)}: {fault.json_path}: {fault.message[:200]}"
                       for fault in list(validator.iter_errors(document))[:3]]
    print("\n".join(complaints))
    return 1 if complaints else 0


def main():
    task, program = sys.argv[1], os.path.abspath(sys.argv[2])
    if task == "inside":
        json.dump(list(documents(program)), sys.stdout)
        return 0
    if task == "check":
        try:
            import jsonschema  # noqa: F401
        except ImportError:
            return 77
    printed = []
    for now, options in DEMOS.items():
        done = subprocess.run([program, "demo", *options, "--", sys.executable, os.path.abspath(__file__), "inside", program],
                              capture_output=True, text=True, check=True,
                              env=os.environ | {"NIMBARA_NOW": now, "LC_ALL": "C.UTF-8", "TZ": "UTC"})
        printed += json.loads(done.stdout)
    return write(printed) if task == "write" else check(printed)


if __name__ == "__main__":
    sys.exit(main())
