#!/usr/bin/env python3
"""Groups sources that can be compiled as one, because none declares at file scope what another of them declares.

  tools/batches.py SIZE SOURCE...     a line for each group of at most SIZE, its sources separated by semicolons
"""
import re
import sys

# What stands at the beginning of a line belongs to no function and to no class: the format sees to that.
DECLARED = re.compile(r"^(?:template <[^>]*> )?(?:struct|class|enum(?: class)?|union|using)\s+(\w+)"
                      r"|^#define\s+(\w+)"
                      r"|^[A-Za-z][^()={}]*?(?<![:\w])(\w+)\s*(?:\[[^\]]*\])*\s*(?:[({=;]|$)", re.M)
# Stand there in many sources and collide with nothing: the test macros make names of their arguments.
HARMLESS = {"nimbara", "std", "test", "testing", "namespace", "TEST", "TEST_F", "TEST_P", "INSTANTIATE_TEST_SUITE_P"}
# Brings in names that only the enumeration's header tells: such sources join those that bring in the same.
BRINGS_MORE = re.compile(r"^using enum (.*);", re.M)
# May be said again, if it says the same.
SHORTER = re.compile(r"^using (\w+ = .*);", re.M)


def groups(sources, size):
    made = []  # of sources, what each name that they declare stands for, and the enumerations that they bring in
    for source in sources:
        with open(source, encoding="utf-8") as file:
            text = file.read()
        names = {name: source for found in DECLARED.finditer(text) for name in found.groups() if name}
        for name in HARMLESS | {"enum"}:
            names.pop(name, None)
        names.update({line.split(" ")[0]: line for line in SHORTER.findall(text)})
        brought = set(BRINGS_MORE.findall(text))
        for group, declared, enumerations in made:
            if enumerations == brought and len(group) < size and all(declared.get(n, names[n]) == names[n] for n in names):
                group.append(source)
                declared |= names
                break
        else:
            made.append(([source], names, brought))
    return [group for group, _, _ in made]


if __name__ == "__main__":
    for group in groups(sys.argv[2:], int(sys.argv[1])):
        print(";".join(group))
