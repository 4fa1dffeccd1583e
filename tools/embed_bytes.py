#!/usr/bin/env python3
"""Writes a C++ source that holds the bytes of a file: embed_bytes.py INPUT OUTPUT HEADER SYMBOL

HEADER declares `extern const unsigned char SYMBOL[]` and `extern const std::size_t SYMBOLBytes` in namespace quillmeter.
"""
import pathlib
import sys

source, output, header, symbol = sys.argv[1:]
data = pathlib.Path(source).read_bytes()
rows = "".join("    " + "".join(f"{byte}," for byte in data[i : i + 32]) + "\n" for i in range(0, len(data), 32))
pathlib.Path(output).write_text(
    f'#include "{header}"\n\n'
    "namespace quillmeter {\n\n"
    f"const unsigned char {symbol}[] = {{\n{rows}}};\n"
    f"const std::size_t {symbol}Bytes = {len(data)};\n\n"
    "}  // namespace quillmeter\n",
    encoding="utf-8",
)
