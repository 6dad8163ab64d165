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

# Folders that "..." is looked up in besides the including file's own.
ROOTS = {"framework": ["framework/src"], "phone": ["phone", "cmake/include"]}

bad = []
for folder, allowed in MAY_SEE.items():
    root = pathlib.Path(folder)
    for path in (p for p in root.rglob("*") if p.suffix in (".h", ".cpp")):
        looked_up = [path.parent, *map(pathlib.Path, ROOTS.get(folder, []))]
        for how, name in re.findall(r'^\s*#\s*include\s*(["<])([^">]+)', path.read_text(), re.M):
            own = any((at / name).exists() and ".." not in name for at in looked_up)
            if not (own if how == '"' else re.fullmatch(allowed, name)):
                bad.append(f"{path} includes {name}")
sys.exit("\n".join(bad) or 0)
