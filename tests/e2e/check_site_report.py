#!/usr/bin/env python3
"""The documents of `qvroofload site` as a user gets them: every --json output
is valid against docs/site-report.schema.json (and documents that break it are
refused), and --html is a well-formed page with the tables of the report and
an inline SVG drawing of the zones of each direction."""

import copy
import html.parser
import json
import os
import subprocess
import sys
import tempfile
import unittest

import jsonschema

CLI = os.environ["QVRL_CLI"]
SCHEMA_FILE = os.environ["QVRL_SITE_SCHEMA"]

# One site per kind of result: published values, member rules with notes,
# every roof form, with and without a plan.
SITES = {
    "german annex, gabled, plan": "--norm 50 --snow-zone 2 --wind-zone 2 --category 2 --altitude 400 --height 10 "
                                  "--roof gabled --pitch 35 --width 12 --depth 10",
    "german annex, inland profile, hipped": "--norm 50 --snow-zone 2a --wind-zone 3 --profile inland --altitude 0 "
                                            "--height 8 --roof hipped --pitch 10 --width 20 --depth 12",
    "eurocode central west, flat": "--norm 54 --region 6 --snow-zone 2 --vb 25 --category 2 --altitude 400 "
                                   "--height 12 --roof flat --ce 0.8 --ct 0.9",
    "uk, pent": "--norm 53 --snow-zone 1 --vb 22 --category 0 --altitude 100 --height 6 --roof pent --pitch 15 "
                "--width 8 --depth 6",
    "din 1055, wall": "--norm 3 --snow-zone 2 --wind-zone 2 --category 6 --altitude 300 --height 10 --roof wall "
                      "--h-d 0.5",
    "austria, component rule": "--norm 51 --snow-zone 2 --qb 0.5 --category 2 --altitude 600 --height 9 "
                               "--roof gabled --pitch 20",
    "din 1975": "--norm 1 --snow-zone 2 --altitude 300 --height 10 --roof gabled --pitch 30",
}


def run(args, check=True):
    p = subprocess.run([CLI] + args, capture_output=True, text=True, timeout=60)
    if check and p.returncode != 0:
        raise AssertionError(f"{args}: exit {p.returncode}\n{p.stderr}")
    return p


class Page(html.parser.HTMLParser):
    VOID = {"meta", "br", "hr", "img", "input", "link", "col", "area", "base", "wbr", "source", "track"}
    SVG_EMPTY = {"polygon", "line", "path", "rect", "circle"}

    def __init__(self):
        super().__init__()
        self.stack, self.errors = [], []
        self.tables, self.svgs, self.polygons, self.captions = 0, 0, [], []
        self.text_of = None

    def handle_starttag(self, tag, attrs):
        a = dict(attrs)
        if tag == "table":
            self.tables += 1
        if tag == "svg":
            self.svgs += 1
        if tag == "polygon" and a.get("class") == "zone":
            self.polygons.append(a.get("data-zone"))
        if tag == "script":
            self.errors.append("script in a printable page")
        if tag in ("img", "link") or (tag == "image"):
            self.errors.append(f"external resource <{tag}>")
        if tag not in self.VOID:
            self.stack.append(tag)

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)
        if tag not in self.VOID:
            self.stack.pop()

    def handle_endtag(self, tag):
        if tag in self.VOID:
            return
        if not self.stack or self.stack[-1] != tag:
            self.errors.append(f"</{tag}> closes <{self.stack[-1] if self.stack else None}>")
            return
        self.stack.pop()


class SiteDocuments(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(SCHEMA_FILE, encoding="utf-8") as f:
            cls.schema = json.load(f)
        jsonschema.Draft202012Validator.check_schema(cls.schema)
        cls.validator = jsonschema.Draft202012Validator(cls.schema)
        cls.docs = {name: json.loads(run(["--lang", "eng", "site"] + args.split() + ["--json"]).stdout)
                    for name, args in SITES.items()}

    def test_every_document_is_valid(self):
        for name, doc in self.docs.items():
            errors = [e.message for e in self.validator.iter_errors(doc)]
            self.assertEqual(errors, [], name)

    def test_documents_that_break_the_schema_are_refused(self):
        good = self.docs["german annex, gabled, plan"]
        self.assertTrue(good["coefficients"]["directions"], "the case must have coefficients")

        def broken(edit):
            d = copy.deepcopy(good)
            edit(d)
            return d

        def first_value(d):
            return d["coefficients"]["directions"][0]["sets"][0]["values"][0]

        cases = {
            "a value without its unit": lambda d: d["snow"]["ground_snow_load"].pop("unit"),
            "a computed value without its source": lambda d: d["wind"]["peak_velocity_pressure"].pop("source"),
            "a pressure in the wrong unit": lambda d: d["wind"]["peak_velocity_pressure"].update(unit="kN/m²"),
            "a bare number instead of a quantity": lambda d: first_value(d).update(c_pe_10=-1.3),
            "a camelCase key": lambda d: d["input"].update(snowZone=2),
            "a text where a number belongs": lambda d: d["input"]["altitude"].update(value="400"),
            "another schema version": lambda d: d.update(schema_version=2),
            "an unknown arrangement": lambda d: d["snow"]["arrangements"][0].update(name="drifted"),
        }
        for name, edit in cases.items():
            self.assertFalse(self.validator.is_valid(broken(edit)), name)

    def test_missing_values_are_null_and_never_zero(self):
        old = self.docs["din 1975"]
        self.assertIsNone(old["snow"]["mu1"])  # the 1975 edition has no roof rule here
        self.assertEqual(old["snow"]["arrangements"], [])
        wall = self.docs["din 1055, wall"]
        self.assertIsNone(wall["snow"]["mu1"])
        no_plan = self.docs["eurocode central west, flat"]
        for d in no_plan["coefficients"]["directions"]:
            self.assertIsNone(d["e"])  # no plan given: no geometry, not e = 0
            self.assertEqual(d["zone_shapes"], [])

    def test_html_page_has_the_tables_and_the_zone_drawing(self):
        with tempfile.TemporaryDirectory() as folder:
            page_file = os.path.join(folder, "site.html")
            args = ["--lang", "deu", "site"] + SITES["german annex, gabled, plan"].split()
            run(args + ["--html", page_file])
            self.assertEqual(os.listdir(folder), ["site.html"], "no temporary file left beside the page")
            with open(page_file, encoding="utf-8") as f:
                text = f.read()
            page = Page()
            page.feed(text)
            page.close()
            self.assertEqual(page.errors, [])
            self.assertEqual(page.stack, [], "every element closed")
            self.assertIn('<html lang="de">', text)
            self.assertIn("Lastanordnungen", text)
            doc = self.docs["german annex, gabled, plan"]
            directions = doc["coefficients"]["directions"]
            sets = sum(len(d["sets"]) for d in directions)
            # inputs, snow, arrangements, wind, and one table per coefficient set
            self.assertEqual(page.tables, 4 + sets)
            self.assertEqual(page.svgs, len(directions))
            shapes = [z["zone"] for d in directions for z in d["zone_shapes"]]
            self.assertTrue(shapes)
            self.assertEqual(page.polygons, shapes)
            self.assertIn(doc["snow"]["ground_snow_load"]["source"], text)

    def test_html_that_cannot_be_written_leaves_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            target = os.path.join(folder, "missing", "site.html")
            p = run(["site"] + SITES["uk, pent"].split() + ["--html", target], check=False)
            self.assertEqual(p.returncode, 1, p.stderr)
            self.assertIn("--html", p.stderr)
            self.assertEqual(p.stdout, "")
            self.assertEqual(os.listdir(folder), [])


if __name__ == "__main__":
    unittest.main(verbosity=1)
