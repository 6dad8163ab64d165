#!/usr/bin/env python3
"""Fails when a catalogue misses a key that is used, or differs from the others.

All catalogues hold the same keys, none without a text, each with the same parameters;
msgfmt accepts them; and every key that the sources name is among them.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ("src", "phone")

# A key is named where it becomes a text, or looks like one: its first word is the first
# word of a key ("delete.group.prompt"), and it is no file name.
TRANSLATED = re.compile(r'\b(?:TranslationInfo|translate)\s*[({]\s*"([^"\\]+)"')
DOTTED = re.compile(r'"([A-Za-z][A-Za-z0-9]*(?:\.[A-Za-z0-9]+)+)"')
FILE_NAME = re.compile(r"\.(?:toml|po|mo|vcf|png|jpg|svg|html|css|js|json|sqlite|db|log|so|txt|wav)$")
COMMENT = re.compile(r"^\s*//.*$", re.M)


def unquote(text):
    joined = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text))
    return re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t"}.get(m[1], m[1]), joined)


def read_catalogue(path):
    """Key -> text, and the keys that stand in it twice."""
    texts, twice = {}, []
    entry = re.compile(r'^msgid ((?:"(?:[^"\\]|\\.)*"\s*)+)^msgstr ((?:"(?:[^"\\]|\\.)*"\s*)+)', re.M)
    for match in entry.finditer(path.read_text(encoding="utf-8")):
        key = unquote(match[1])
        if key in texts:
            twice.append(key)
        if key:
            texts[key] = unquote(match[2])
    return texts, twice


def parameters(text):
    return sorted(re.findall(r"\{(\d+)[^}]*\}", text))


def used_keys(known):
    first_words = {key.split(".")[0] for key in known if "." in key}
    for folder in SOURCES:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            source = COMMENT.sub("", path.read_text(encoding="utf-8"))
            for key in TRANSLATED.findall(source):
                yield path, key
            for key in DOTTED.findall(source):
                if key.split(".")[0] in first_words and not FILE_NAME.search(key):
                    yield path, key


def main():
    bad = []
    catalogues = {}
    for path in sorted((ROOT / "locale").glob("*.po")):
        catalogues[path.name], twice = read_catalogue(path)
        bad += [f"{path.name}: {key}: stands there twice" for key in twice]
        checked = subprocess.run(["msgfmt", "--check", "-o", "/dev/null", str(path)], capture_output=True, text=True)
        if checked.returncode or checked.stderr:
            bad.append(checked.stderr.strip())
    if "en.po" not in catalogues:
        sys.exit("locale/en.po is missing")

    english = catalogues["en.po"]
    for name, texts in catalogues.items():
        bad += [f"{name}: {key}: missing" for key in sorted(english.keys() - texts.keys())]
        bad += [f"{name}: {key}: not in en.po" for key in sorted(texts.keys() - english.keys())]
        for key, text in texts.items():
            if not text.strip():
                bad.append(f"{name}: {key}: empty")
            elif key in english and parameters(text) != parameters(english[key]):
                bad.append(f"{name}: {key}: parameters differ from en.po")
    bad += sorted({f"{path.relative_to(ROOT)}: {key}: in no catalogue"
                   for path, key in used_keys(english) if key not in english})
    sys.exit("\n".join(bad) or 0)


if __name__ == "__main__":
    main()
