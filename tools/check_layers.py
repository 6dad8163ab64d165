#!/usr/bin/env python3
"""Fails when a folder includes what its layer must not see."""
import pathlib
import re
import sys

STD = r"[a-z_0-9]+"
MAY_SEE = {  # what <...> may name; "..." must lie inside the folder itself
    "framework/include": rf"framework/.+|{STD}",
    "framework": rf"framework/.+|testing/.+|unicode/.+|{STD}",
    "src": rf"framework/.+|expat\.h|{STD}",
    "examples": rf"framework/.+|{STD}",
    "phone": r"(?!Phonebook|LDAPState|testing/).+",
}

# Where "..." is looked up besides the including file's own folder.
ROOTS = {"framework": ["framework/src"], "phone": ["phone"]}

bad = []
for folder, allowed in MAY_SEE.items():
    root = pathlib.Path(folder).resolve()
    for path in (p for p in root.rglob("*") if p.suffix in (".h", ".cpp")):
        looked_up = [path.parent, *(pathlib.Path(at).resolve() for at in ROOTS.get(folder, []))]
        for how, name in re.findall(r'^\s*#\s*include\s*(["<])([^">]+)', path.read_text(), re.M):
            named = (at / name for at in looked_up if (at / name).exists())
            own = any(file.resolve().is_relative_to(root) for file in named)
            if not (own if how == '"' else re.fullmatch(allowed, name)):
                bad.append(f"{path.relative_to(pathlib.Path.cwd())} includes {name}")
sys.exit("\n".join(bad) or 0)
