#!/usr/bin/env python3
"""Gives the catalogue checker sources and catalogues with one fault each: check_catalogue_test.py CHECKER"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = sys.argv.pop(1)


def message(key, translation, attributes=""):
    return f'<message id="{key}"><source/><translation{attributes}>{translation}</translation></message>'


def check(source, *messages):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "src").mkdir()
        (root / "src" / "a.cpp").write_text(source, encoding="utf-8")
        (root / "en.ts").write_text(f'<TS version="2.1"><context><name/>{"".join(messages)}</context></TS>', encoding="utf-8")
        result = subprocess.run([sys.executable, CHECKER, root / "src", root / "en.ts"], capture_output=True, text=True)
        return result.returncode, result.stdout


class CheckCatalogue(unittest.TestCase):
    def test_complete_catalogues_pass(self):
        sources = [
            'f(QM_TR("刚刚"), QM_TR ( "刚刚" ));',
            'f(QM_TR("刚"\n   "刚"));',
            'Row row{QM_TR_NOOP("刚刚")};',
            'f(QM_TR("刚刚")); // QM_TR("旧的") and QM_TR(variable)',
            'f(QM_TR("刚刚")); /* QM_TR("旧的") */ auto s = "QM_TR(x)"; char q = \'"\';',
            '#define QM_TR(id) (string(id))\nf(QM_TR("刚刚"));',
            'f("http://x", QM_TR("刚刚"), R"(QM_TR("旧的"))");',
        ]
        for source in sources:
            code, output = check(source, message("刚刚", "just now"))
            self.assertEqual(code, 0, source + output)

    def test_placeholders_may_be_numbered_but_not_lost(self):
        same = [("%@前", "%@ ago"), ("%@ 和 %@", "%2$@ and %1$@"), ("%d%%", "%d %%"), ("一半", "100%")]
        other = [("%@前", "ago"), ("前", "%@ ago"), ("%@ 和 %@", "%1$@ and %1$@"), ("%@ 和 %@", "%@"), ("%1$@", "%2$@")]
        for key, text in same:
            self.assertEqual(check(f'QM_TR("{key}")', message(key, text))[0], 0, (key, text))
        for key, text in other:
            code, output = check(f'QM_TR("{key}")', message(key, text))
            self.assertEqual((code, "different placeholders" in output), (1, True), (key, text))

    def test_each_fault_is_named(self):
        good = message("刚刚", "just now")
        faults = [
            ('QM_TR("刚刚") QM_TR("昨天")', [good], "a.cpp:1: '昨天' is missing"),
            ('QM_TR("刚刚")\nQM_TR(variable)', [good], "a.cpp:2: QM_TR takes one plain string literal"),
            ('QM_TR("刚刚") QM_TR("a" + b)', [good], "QM_TR takes one plain string literal"),
            ('QM_TR("刚刚")', [good, message("昨天", "yesterday")], "'昨天' is used by no source"),
            ('QM_TR("刚刚")', [good, good], "'刚刚' stands twice"),
            ('QM_TR("刚刚")', [message("刚刚", " ")], "'刚刚' has no English text"),
            ('QM_TR("刚刚")', [message("刚刚", "just now", ' type="unfinished"')], "'刚刚' is unfinished"),
            ('QM_TR("刚刚")', ["<message><translation>x</translation></message>", good], "a message has no id"),
        ]
        for source, messages, text in faults:
            code, output = check(source, *messages)
            self.assertEqual(code, 1, source)
            self.assertIn(text, output)


unittest.main()
