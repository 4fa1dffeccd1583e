#!/usr/bin/env python3
"""Checks the English catalogue against the texts that the sources mark with QM_TR("...") or QM_TR_NOOP("...").

usage: check_catalogue.py SOURCES CATALOGUE. Each id needs one finished English text with the same placeholders; an id
that no source uses is an error as well, and so is a QM_TR whose argument is no plain string literal.
"""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

COMMENT_OR_STRING = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<tag>[^()\\ ]*)\((?:.*?)\)(?P=tag)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.DOTALL)
MARK = re.compile(r"\bQM_TR(?:_NOOP)?\s*\(")
LITERALS = re.compile(r'\s*((?:"(?:\\.|[^"\\\n])*"\s*)+)\)')
ONE_LITERAL = re.compile(r'"((?:\\.|[^"\\\n])*)"')
ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\", "'": "'"}
PLACEHOLDER = re.compile(r"%%|%(?:(\d{1,2})\$)?[@d]")


def without_comments(source):
    """The same length and lines, comments blanked, strings kept."""
    def blank(match):
        text = match.group(0)
        return re.sub(r"[^\n]", " ", text) if text.startswith(("//", "/*")) else text
    return COMMENT_OR_STRING.sub(blank, source)


def string_spans(source):
    return [m.span() for m in COMMENT_OR_STRING.finditer(source)]


def unescaped(literal):
    return re.sub(r"\\(.)", lambda m: ESCAPES.get(m.group(1), m.group(0)), literal)


def ids_of(source):
    """(line, id or None) for each QM_TR; None where the argument is no literal."""
    source = without_comments(source)
    spans = string_spans(source)
    for mark in MARK.finditer(source):
        line = source.count("\n", 0, mark.start()) + 1
        start = source.rfind("\n", 0, mark.start()) + 1
        if source[start:mark.start()].lstrip().startswith("#define"):
            continue
        if any(begin <= mark.start() < end for begin, end in spans):
            continue
        match = LITERALS.match(source, mark.end())
        yield line, "".join(unescaped(p) for p in ONE_LITERAL.findall(match.group(1))) if match else None


def placeholders(text):
    """What the text takes, e.g. {"in order": 1, "2$": 1}; percent signs are free."""
    counts = collections.Counter()
    for match in PLACEHOLDER.finditer(text):
        if match.group(0) != "%%":
            counts[match.group(1) + "$" if match.group(1) else "in order"] += 1
    return counts


def arguments_of(text):
    """How many arguments the text wants: a translation may number what the id takes in order."""
    counts = placeholders(text)
    numbers = [int(key[:-1]) for key in counts if key.endswith("$")]
    return max(numbers + [counts["in order"]]), sum(counts.values())


def catalogue_of(path):
    """(texts by id, problems)"""
    texts, problems = {}, []
    for message in ElementTree.parse(path).getroot().iter("message"):
        key = message.get("id")
        translation = message.find("translation")
        if not key:
            problems.append("a message has no id")
        elif key in texts:
            problems.append(f"{key!r} stands twice")
        else:
            texts[key] = (translation.text or "") if translation is not None else ""
            if not texts[key].strip():
                problems.append(f"{key!r} has no English text")
            elif translation.get("type"):
                problems.append(f"{key!r} is {translation.get('type')}")
    return texts, problems


def main():
    root, catalogue = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    texts, problems = catalogue_of(catalogue)
    used = set()
    for file in sorted(p for p in root.rglob("*") if p.suffix in (".h", ".cpp")):
        for line, key in ids_of(file.read_text(encoding="utf-8")):
            place = f"{file.relative_to(root)}:{line}"
            if key is None:
                problems.append(f"{place}: QM_TR takes one plain string literal")
                continue
            if key not in texts and key not in used:
                problems.append(f"{place}: {key!r} is missing in {catalogue.name}")
            used.add(key)
    for key, text in texts.items():
        if key not in used:
            problems.append(f"{key!r} is used by no source")
        elif text.strip() and arguments_of(key) != arguments_of(text):
            problems.append(f"{key!r} and {text!r} take different placeholders")
    for problem in problems:
        print(problem)
    print(f"{len(used)} texts used, {len(texts)} in the catalogue, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
