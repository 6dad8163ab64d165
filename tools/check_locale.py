#!/usr/bin/env python3
"""Fails when the catalogues and the sources do not fit together, or a text breaks docs/texts.md.

Every key that the sources name stands in every catalogue, and every key of the catalogues is
named somewhere; all catalogues hold the same keys under the same headings in the same order, each
with the same parameters and the same kind of ending; msgfmt accepts them; texts fit their place.
"""
import pathlib
import re
import subprocess
import sys
import unicodedata

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ("src", "phone", "framework/include", "framework/src", "face")
SUFFIXES = (".h", ".cpp", ".js", ".html")

# A key is named where it becomes a text, or looks like one: its first word is the first
# word of a key ("delete.group.prompt"), and it is no file name.
TRANSLATED = re.compile(r'\b(?:TranslationInfo|translate)\s*[({]\s*"([^"\\]+)"')
DOTTED = re.compile(r'"([A-Za-z][A-Za-z0-9]*(?:\.[A-Za-z0-9]+)+)"')
QUOTED = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
FILE_NAME = re.compile(r"\.(?:toml|po|mo|vcf|png|jpg|svg|html|css|js|json|sqlite|db|log|so|txt|wav)$")
COMMENT = re.compile(r"^\s*//.*$", re.M)

# How many characters a text may have where it is shown, parameters not counted.
ROUND_KEY, SOFT_KEY, TAB, PAGE_KEY, ANSWER, ROW, NOTICE = 3, 12, 18, 16, 18, 28, 84
LIMITS = {
    "phone.ok": ROUND_KEY,
    "dial phone.menu phone.back phone.save phone.select phone.phonebook": SOFT_KEY,
    "office ldap PBX.Phonebook": TAB,
    "phone.home phone.clear phone.dialpad phone.hook phone.hangup": PAGE_KEY,
    "cancel delete delete.all delete.all.entries dialler.dial dialler.redial do.not.save edit.number"
    " refresh.directory save": ANSWER,
}
LIMIT_OF_KEY = {key: limit for keys, limit in LIMITS.items() for key in keys.split()}
LIMIT_OF_HEADING = {
    "Tabs, lists and titles": ROW,
    "Commands in menus, forms and popups": ROW,
    "Fields and their choices": ROW,
    "Questions": NOTICE,
    "Work in progress": NOTICE,
    "Done": NOTICE,
    "Notices and errors": NOTICE,
}

# Commands that stand side by side: whoever reads their first word only must not take one for the other.
ALTERNATIVES = (("save", "do.not.save"), ("save.exit", "exit.no.save"), ("delete", "cancel"),
                ("delete.all.entries", "cancel"), ("delete.all", "cancel"))

NO_TYPOGRAPHY = {
    r"['\"`]": "a straight quotation mark or apostrophe",
    r"\.\.": "dots in place of an ellipsis",
    r"!": "an exclamation mark",
    r"^\s|\s$|\s\s": "a blank too many",
}
FRENCH_BLANK = re.compile(r"(?<!\u00A0)[:;?!]")
QUESTION_MARKS = {"el": ";"}


class Catalogue:
    """One .po file: its texts by key, its headings and keys in their order, and what is wrong with it."""

    STRING = r'(?:"(?:[^"\\]|\\.)*"\s*)+'
    ENTRY = re.compile(rf"^# (?P<heading>.+)$|^msgid (?P<key>{STRING})^msgstr (?P<text>{STRING})", re.M)

    def __init__(self, path):
        self.path = path
        self.language = path.stem
        self.texts, self.headings, self.order, self.bad = {}, {}, [], []
        source = path.read_text(encoding="utf-8")
        heading = ""
        for entry in self.ENTRY.finditer(source):
            if entry["heading"]:
                heading = entry["heading"]
                self.order.append(heading)
            elif key := unquote(entry["key"]):
                self.add(key, unquote(entry["text"]), heading)
        if re.search(r"^#[,~|]", source, re.M):
            self.bad.append(f"{path.name}: has a fuzzy or obsolete entry")
        checked = subprocess.run(["msgfmt", "--check", "-o", "/dev/null", str(path)],
                                 capture_output=True, text=True)
        if checked.returncode or checked.stderr:
            self.bad.append(checked.stderr.strip())

    def add(self, key, text, heading):
        if key in self.texts:
            self.complain(key, "stands there twice")
        self.texts[key] = text
        self.headings[key] = heading
        self.order.append(key)

    def complain(self, key, what):
        self.bad.append(f"{self.path.name}: {key}: {what}")

    def compare(self, english):
        for key in english.texts.keys() - self.texts.keys():
            self.complain(key, "missing")
        for key in self.texts.keys() - english.texts.keys():
            self.complain(key, "not in en.po")
        differing = [mine for mine, theirs in zip(self.order, english.order) if mine != theirs]
        if differing and not self.bad:
            self.complain(differing[0], "its heading or place is another than in en.po")
        for key in self.texts.keys() & english.texts.keys():
            self.compare_text(key, english)

    def compare_text(self, key, english):
        text, original = self.texts[key], english.texts[key]
        if parameters(text) != parameters(original):
            self.complain(key, "parameters differ from en.po")
        # On keys, abbreviations may end in a full stop.
        if text.strip() and key not in LIMIT_OF_KEY and ending(text, self.language) != ending(original, "en"):
            self.complain(key, "ends in another punctuation mark than in en.po")

    def check_texts(self):
        for key, text in self.texts.items():
            if not text.strip():
                self.complain(key, "empty")
            for pattern, what in NO_TYPOGRAPHY.items():
                if re.search(pattern, text):
                    self.complain(key, f"has {what}")
            if self.language == "fr" and FRENCH_BLANK.search(text):
                self.complain(key, "has no no-break blank before a punctuation mark")
            if text != unicodedata.normalize("NFC", text):
                self.complain(key, "is not composed (NFC)")
            limit = LIMIT_OF_KEY.get(key) or LIMIT_OF_HEADING.get(self.headings[key])
            length = len(re.sub(r"\{\d+\}", "", text).strip())
            if limit and length > limit:
                self.complain(key, f"has {length} characters, {limit} fit")
        for first, second in ALTERNATIVES:
            if first_word(self.texts.get(first)) == first_word(self.texts.get(second)):
                self.complain(second, f"begins as {first} does")


def unquote(text):
    joined = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text))
    return re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t"}.get(m[1], m[1]), joined)


def parameters(text):
    return sorted(re.findall(r"\{(\d+)[^}]*\}", text))


def first_word(text):
    return (text or "").split(" ")[0].casefold()


def ending(text, language):
    last = text[-1]
    if last == QUESTION_MARKS.get(language, "?"):
        return "?"
    return last if last in ".…:;?" else ""


def sources():
    """Each source file with its text, comments left out."""
    for folder in SOURCES:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in SUFFIXES:
                yield path.relative_to(ROOT), COMMENT.sub("", path.read_text(encoding="utf-8"))


def keys_without_text(known):
    first_words = {key.split(".")[0] for key in known if "." in key}
    for path, source in sources():
        named = set(TRANSLATED.findall(source))
        named |= {key for key in DOTTED.findall(source)
                  if key.split(".")[0] in first_words and not FILE_NAME.search(key)}
        yield from (f"{path}: {key}: in no catalogue" for key in sorted(named - known))


def texts_without_key(known):
    named = {text for _, source in sources() for text in QUOTED.findall(source)}
    yield from (f"{key}: named in no source" for key in sorted(known - named))


def texts_that_the_page_lacks():
    """The server sends the page its texts; it must know them all."""
    sent = set(DOTTED.findall((ROOT / "phone/web/WebServer.cpp").read_text(encoding="utf-8")))
    for path, source in sources():
        if path.parts[0] == "face":
            asked = {key for key in DOTTED.findall(source) if key.startswith("phone.")}
            yield from (f"{path}: {key}: not sent by phone/web/WebServer.cpp"
                        for key in sorted(asked - sent) if not FILE_NAME.search(key))


def main():
    catalogues = [Catalogue(path) for path in sorted((ROOT / "locale").glob("*.po"))]
    english = next((catalogue for catalogue in catalogues if catalogue.language == "en"), None)
    if not english:
        sys.exit("locale/en.po is missing")

    bad = []
    for catalogue in catalogues:
        catalogue.compare(english)
        catalogue.check_texts()
        bad += sorted(catalogue.bad)
    known = english.texts.keys()
    bad += keys_without_text(known)
    bad += texts_without_key(known)
    bad += texts_that_the_page_lacks()
    sys.exit("\n".join(bad) or 0)


if __name__ == "__main__":
    main()
