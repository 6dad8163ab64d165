#!/usr/bin/env python3
"""Writes the page's files as a C++ table: embed_assets.py FOLDER OUTPUT FILE..."""
import pathlib
import sys

MIME = {
    ".css": "text/css; charset=utf-8",
    ".html": "text/html; charset=utf-8",
    ".js": "text/javascript; charset=utf-8",
    ".svg": "image/svg+xml",
}


def literal(data: bytes) -> str:
    """The bytes as string literals, a source line each; octal, as hex escapes have no end."""
    plain = {byte: chr(byte) for byte in range(0x20, 0x7F) if chr(byte) not in '"\\?'}
    lines = data.splitlines(keepends=True) or [b""]
    return "\n".join('    "' + "".join(plain.get(b, f"\\{b:03o}") for b in line) + '"' for line in lines)


def main() -> None:
    folder, output, *files = sys.argv[1:]
    out = ['#include "face_assets.h"', "", "namespace {", ""]
    rows = []
    for number, name in enumerate(sorted(files)):
        data = (pathlib.Path(folder) / name).read_bytes()
        out += [f"constexpr char FILE_{number}[] =", literal(data) + ";"]
        mime = MIME[pathlib.Path(name).suffix]
        rows.append(f'    {{"{name}", "{mime}", {{FILE_{number}, {len(data)}}}}},')
    out += ["", f"constexpr std::array<FaceAsset, {len(rows)}> ASSETS{{{{", *rows, "}};", ""]
    out += ["} // namespace", "", "std::span<const FaceAsset> faceAssets()", "{", "    return ASSETS;", "}", ""]
    out.insert(1, "\n#include <array>")
    pathlib.Path(output).write_text("\n".join(out))


main()
