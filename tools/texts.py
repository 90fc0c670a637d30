#!/usr/bin/env python3
"""Keeps the translations in resources/texts beside the English texts.

    tools/texts.py                 checks all languages: keys, placeholders, forms, texts behind the English
    tools/texts.py todo xx         what xx lacks or what is behind, with the English text
    tools/texts.py done xx [KEY…]  says that xx (KEY, or all that it has) was made from the English of now;
                                   "all" in place of xx: every language, for a text that was changed in each
    tools/texts.py tidy xx         puts the keys of xx in the order of the English file

made-from.tsv holds for each key a short hash of the English text that the translations were made from, and behind
it the languages that were made from an older one. A new language needs no line of it.
"""
import hashlib
import json
import re
import sys
from pathlib import Path

FOLDER = Path(__file__).resolve().parent.parent / "resources/texts"
MADE_FROM = FOLDER / "made-from.tsv"
PLACEHOLDER = re.compile(r"%(?:(?P<position>[1-9]\d?)\$)?(?P<kind>\.\df|[@df%])")


def read(language):
    def unique(pairs):
        seen = dict(pairs)
        if len(seen) != len(pairs):
            keys = [key for key, _ in pairs]
            sys.exit(f"{language}: keys that stand twice: {sorted({k for k in keys if keys.count(k) > 1})}")
        return seen

    return json.loads((FOLDER / f"{language}.json").read_text("utf-8"), object_pairs_hook=unique)


def write(language, texts):
    rows = ",\n".join(f"  {json.dumps(k)}: {json.dumps(v, ensure_ascii=False)}" for k, v in texts.items())
    (FOLDER / f"{language}.json").write_text("{\n" + rows + "\n}\n", "utf-8")


def placeholders(text):
    found, position = [], 0
    for match in PLACEHOLDER.finditer(text):
        if match["kind"] == "%":
            continue
        if not match["position"]:
            position += 1
        found.append(f"{match['position'] or position}${match['kind']}")
    return sorted(found)


def stem(key):
    return key.partition("#")[0]


def expected_keys(english, texts):
    """The keys that a language with these forms must have, in the order of the English file."""
    forms = texts.get("language.forms", "").split()
    counted = {stem(key) for key in english if "#" in key}
    keys = []
    for key in english:
        if "#" not in key:
            keys += [key] + [f"{key}#{form}" for form in forms if key in counted]
    return keys


def hash_of(english, key):
    forms = "\n".join(english[k] for k in english if stem(k) == key)
    return hashlib.sha256(forms.encode()).hexdigest()[:8]


def read_made_from():
    made = {}
    for line in MADE_FROM.read_text("utf-8").splitlines() if MADE_FROM.exists() else []:
        key, made_hash, *behind = line.split("\t")
        made[key] = (made_hash, set(behind[0].split()) if behind else set())
    return made


def write_made_from(made):
    lines = ["\t".join([key, made[key][0]] + ([" ".join(sorted(made[key][1]))] if made[key][1] else [])) + "\n"
             for key in sorted(made)]
    MADE_FROM.write_text("".join(lines), "utf-8")


def is_own(key):
    """What a language says of itself is made from nothing."""
    return key.startswith("language.")


def behind(english, language):
    """The keys of which a language speaks by an older English text."""
    made = read_made_from()
    return [key for key in english if "#" not in key and not is_own(key) and
            (key not in made or made[key][0] != hash_of(english, key) or language in made[key][1])]


def faults(english, language):
    texts = read(language)
    expected = expected_keys(english, texts)
    for key in expected:
        if key not in texts:
            yield f"missing: {key}"
    for key, text in texts.items():
        if key not in expected:
            yield f"not in the English file, or a form that the language has not: {key}"
            continue
        usual = placeholders(english[stem(key)])
        missing = [p for p in usual if p not in placeholders(text)]
        if "#" in key:  # a form may leave the number out
            missing = [p for p in missing if not p.endswith("$d")]
        added = [p for p in placeholders(text) if p not in usual]
        if missing or added or len(placeholders(text)) > len(usual):
            yield f"placeholders of {key} are {placeholders(text)}, in English {usual}"
    if language != "en":
        for key in behind(english, language):
            if key in texts:
                yield f"behind the English text: {key}"


def check(english):
    failed = False
    for language in languages():
        for fault in faults(english, language):
            failed = True
            print(f"{language}: {fault}")
    for key in read_made_from():
        if key not in english:
            failed = True
            print(f"made-from.tsv: no such English text: {key}")
    if failed:
        print("tools/texts.py --help tells how to bring the translations up to date.")
    sys.exit(failed)


def todo(english, language):
    texts = read(language)
    for fault in faults(english, language):
        key = fault.rpartition(": ")[2]
        print(fault)
        if stem(key) in english:
            print(f"    en: {english[stem(key)]}\n    {language}: {texts.get(key, '')}")


def languages():
    return sorted(path.stem for path in FOLDER.glob("*.json"))


def done(english, language, keys):
    texts = read("en" if language == "all" else language)
    others = set() if language == "all" else set(languages()) - {"en", language}
    made = {key: row for key, row in read_made_from().items() if key in english}
    for key in keys or [k for k in texts if "#" not in k and not is_own(k)]:
        now = hash_of(english, key)
        before, late = made.get(key, (now, set()))
        made[key] = (now, (late if before == now else {o for o in others if key in read(o)}) & others)
    write_made_from(made)


def main():
    english = read("en")
    match sys.argv[1:]:
        case []:
            check(english)
        case ["todo", language]:
            todo(english, language)
        case ["done", language, *keys]:
            done(english, language, keys)
        case ["tidy", language]:
            texts = read(language)
            write(language, {key: texts[key] for key in expected_keys(english, texts) if key in texts})
        case _:
            sys.exit(__doc__)


main()
