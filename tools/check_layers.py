#!/usr/bin/env python3
"""Checks who includes whom: the folders of src/ against the table of allowed arrows.

Each project include is written from src/ in quotes. A folder may include itself, the folders named for it, and what these
may include. Third-party headers that must not leak (Qt, D-Bus, JSON, SQL) are held to the folders that own them.
"""
import pathlib
import re
import sys

# folder -> folders it may include directly ("*/model" folders hold values that anybody above base may include)
ALLOWED = {
    "base": [],
    "platform": ["base"],
    "platform/linux": ["platform", "base"],
    "platform/qt": ["platform", "base"],
    "platform/fake": ["platform", "base"],
    "preferences": ["platform", "base"],
    "access/model": ["base"],
    "access": ["access/model", "preferences", "platform", "base"],
    "agents/model": ["access/model", "base"],
    "agents/adapters": ["agents/model", "access/model", "platform", "base"],
    "agents": ["agents/model", "access/model", "platform", "base"],
    "metrics": ["core/model", "platform", "base"],
    "screentime/model": ["base"],
    "screentime": ["screentime/model", "preferences", "platform", "base"],
    "quickstatus/model": ["base"],
    "quickstatus": ["quickstatus/model", "preferences", "platform", "base"],
    "update/model": ["base"],
    "update": ["update/model", "preferences", "platform", "base"],
    "core/model": ["agents/model", "base"],
    "core": ["core/model", "metrics", "agents", "agents/model", "access", "access/model", "preferences", "platform", "base"],
    "ctl": ["core", "core/model", "metrics", "agents", "agents/adapters", "agents/model", "access", "access/model",
            "preferences", "screentime", "screentime/model", "quickstatus", "quickstatus/model", "update", "update/model",
            "platform", "platform/linux", "platform/qt", "base"],
    "menubar/model": ["preferences", "base"],
    "menubar": ["menubar/model", "core", "core/model", "agents/model", "quickstatus/model", "preferences", "base"],
    "ui": ["menubar", "menubar/model", "core", "core/model", "agents/model", "access", "access/model", "preferences", "screentime",
           "screentime/model", "quickstatus", "quickstatus/model", "update", "update/model", "platform", "base"],
    # All services over a described machine, for tests and screenshots; no part of the product.
    "demo": ["ui", "menubar", "menubar/model", "core", "core/model", "metrics", "agents", "agents/model", "access", "access/model",
             "preferences", "screentime", "screentime/model", "quickstatus", "quickstatus/model", "update", "update/model",
             "platform", "platform/fake", "platform/qt", "base"],
    "app": ["ui", "menubar", "menubar/model", "core", "core/model", "metrics", "agents", "agents/adapters", "agents/model",
            "access", "access/model", "preferences", "screentime", "screentime/model", "quickstatus", "quickstatus/model", "update",
            "update/model", "platform", "platform/linux", "platform/qt", "base"],
}
# third-party include pattern -> (what it is, folders that may have it)
THIRD_PARTY = [
    (re.compile(r"^(Q[A-Z]\w+|Qt\w+/.*)$"), "Qt", ("platform/qt", "platform/linux", "ctl", "menubar", "ui", "demo", "app")),
    (re.compile(r"^Q(Widget|Application|Painter|Pixmap|Image|Icon|Gui)\w*$"), "Qt Gui or Widgets", ("menubar", "ui", "demo", "app")),
    (re.compile(r"^simdjson\.h$"), "simdjson", ("agents", "agents/adapters")),
    (re.compile(r"^sqlite3\.h$"), "SQLite", ("agents/adapters",)),
    (re.compile(r"^zstd\.h$"), "zstd", ("agents/adapters",)),
    (re.compile(r"^systemd/"), "sd-bus", ("platform/linux",)),
]
HEADERLESS = {"simdjson", "SQLite", "zstd", "sd-bus"}  # third parties that must stay in .cpp files
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def folder_of(relative):
    parts = pathlib.PurePosixPath(relative).parts
    for length in (2, 1):
        name = "/".join(parts[:length])
        if len(parts) > length and name in ALLOWED:
            return name
    return None


def problems_of(path, source):
    own = folder_of(path)
    if own is None:
        yield 0, "stands in no folder of the table"
        return
    for number, line in enumerate(source.splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        quoted, angled = match.groups()
        if quoted:
            target = folder_of(quoted)
            if target is None:
                yield number, f'"{quoted}" is no path from src/'
            elif target != own and target not in ALLOWED[own]:
                yield number, f'{own} may not include {target} ("{quoted}")'
        else:
            for pattern, what, owners in THIRD_PARTY:
                if not pattern.match(angled):
                    continue
                if own not in owners:
                    yield number, f"{own} may not include {what} (<{angled}>)"
                if what in HEADERLESS and path.endswith(".h"):
                    yield number, f"{what} stays in .cpp files (<{angled}>)"


def main():
    root = pathlib.Path(sys.argv[1])
    files = sorted(p for p in root.rglob("*") if p.suffix in (".h", ".cpp", ".c"))
    if not files:
        print(f"no sources below {root}")
        return 1
    count = 0
    for file in files:
        relative = file.relative_to(root).as_posix()
        for number, text in problems_of(relative, file.read_text(encoding="utf-8")):
            print(f"src/{relative}:{number}: {text}")
            count += 1
    print(f"{len(files)} files, {count} wrong includes")
    return 1 if count else 0


if __name__ == "__main__":
    sys.exit(main())
