"""The Python module as a user calls it: classes built from the member tables,
results, in/out arguments, properties and errors."""

import builtins
import datetime
import inspect
import math
import unittest

import qvroofload
from qvroofload import _qvroofload as native


class Classes(unittest.TestCase):
    def test_every_public_class_is_a_class_with_every_member(self):
        infos = qvroofload.classes()
        self.assertIn("CWindSnow", [c["name"] for c in infos])
        for info in infos:
            cls = getattr(qvroofload, info["name"])
            self.assertIn(info["name"], qvroofload.__all__)
            self.assertEqual(cls.CLSID, info["class_id"])
            for m in info["members"]:
                with self.subTest(cls=info["name"], member=m["name"], kind=m["kind"]):
                    attr = cls.__dict__[m["name"]]
                    if m["kind"] == "Method":
                        self.assertTrue(callable(attr))
                        names = list(inspect.signature(attr).parameters)[1:]
                        self.assertEqual(names, [p["name"] for p in m["params"]])
                    else:
                        self.assertIsInstance(attr, property)
                    self.assertIn(m["doc"], attr.__doc__)

    def test_identity_of_the_type_library_and_the_class(self):
        self.assertEqual(qvroofload.TYPELIB_NAME, "QVRoofLoad")
        self.assertEqual(qvroofload.TYPELIB_ID, "{7E752417-1663-4EDF-8CEB-89BAE2967475}")
        self.assertEqual(qvroofload.TYPELIB_VERSION, (1, 10))
        self.assertEqual(qvroofload.TYPELIB_DOC, "Q+V Dach- und Verkehrslasten")
        self.assertEqual(qvroofload.CWindSnow.CLSID, "{1AA2E2A7-689E-49A2-9E6F-FC98CFFE3FEA}")
        self.assertEqual(qvroofload.CWindSnow.IID, "{86FE08A8-9A35-496C-B21B-5F6D95029675}")

    def test_docstrings_carry_units(self):
        doc = qvroofload.CWindSnow.WindPressure_DIN1055_4_2005.__doc__
        self.assertIn("kN/m2", doc)
        self.assertIn("WindZone As Integer", doc)


class WindSnowResults(unittest.TestCase):
    def setUp(self):
        self.ws = qvroofload.CWindSnow()

    def test_figures_fixed_by_the_rules(self):
        # Exact: the module hands over the rule's double unchanged.
        cases = [
            ("WindReferencePressure_DIN1055_4_2005", (5,), 0.66),
            ("WindReferencePressure_DIN1055_4_2005", (2,), 0.39),
            ("WindReferencePressure_DIN1055_4_2005", (9,), 0.0),
            ("WindReferencePressure_DIN1055_4_2005", ("2",), 0.39),  # a text converts
            ("WindReferencePressure_DIN1055_4_2005", (2.5,), 0.39),  # half to even
            ("WindReferencePressure_DIN1055_4_2005", (True,), 0.0),  # True is -1
            ("WindPressure_DIN1055_4_1986", (8.0,), 0.5),
            ("WindPressure_DIN1055_4_1986", (8.1,), 0.8),
            ("SnowBagMue1", (), 0.8),
            ("StandardSnowLoad_EN_1991_1_3", (54, 1, 2.0, 728.0), 2.586),
        ]
        for member, args, want in cases:
            with self.subTest(member=member, args=args):
                got = getattr(self.ws, member)(*args)
                self.assertIsInstance(got, float)
                self.assertEqual(got, want)

    def test_keywords_bind_by_parameter_name(self):
        by_position = self.ws.WindPressure_DIN1055_4_2005(2, 2, 10.0, 0.0)
        by_name = self.ws.WindPressure_DIN1055_4_2005(TerrainHeightInM=0.0, z_BuildingInM=10.0, WindZone=2,
                                                      BuildingCategory=2)
        self.assertEqual(by_name, by_position)
        with self.assertRaises(TypeError):
            self.ws.WindPressure_DIN1055_4_2005(2, 2, 10.0, Height=0.0)

    def test_dates_pass_as_their_serial_number(self):
        # Day and time of day apart, also before the epoch: 1899-12-29 06:00 is -1.25.
        cases = [
            (datetime.datetime(1900, 1, 1, 12, 0), 2.5),
            (datetime.date(1900, 1, 7), 8.0),
            (datetime.datetime(1899, 12, 29, 6, 0), -1.25),
            (datetime.datetime(1899, 12, 30), 0.0),
        ]
        for when, serial in cases:
            with self.subTest(when=when):
                self.assertEqual(self.ws.SnowOverhang(when), self.ws.SnowOverhang(serial))


class InOutArguments(unittest.TestCase):
    def setUp(self):
        self.ws = qvroofload.CWindSnow()

    def test_result_first_then_the_new_values(self):
        self.assertEqual(self.ws.SnowBag_EN_1991_1_3(53, 1.0, 4.0, 0.0, 0.0, 0.0), (None, 5.0, 5.0, 20.0))
        # Left out at the end, they start empty; by name too.
        self.assertEqual(self.ws.SnowBag_EN_1991_1_3(53, 1.0, 4.0), (None, 5.0, 5.0, 20.0))
        self.assertEqual(self.ws.SnowBag_EN_1991_1_3(CtrlNA=53, sk=1.0, hInM=4.0), (None, 5.0, 5.0, 20.0))

    def test_lists_come_back_as_lists(self):
        result, names, index = self.ws.SnowZoneNames2005([], [9])
        self.assertIsNone(result)
        self.assertEqual(names, ["", "1", "1a", "2", "2a", "3"])
        self.assertEqual(index, [0, 1, 11, 2, 21, 3])
        self.assertEqual(self.ws.SnowZoneNames2005(), (None, names, index))

    def test_a_failed_call_hands_nothing_back(self):
        mue1 = 7.0
        with self.assertRaises(qvroofload.RuntimeError):
            self.ws.SnowBag_EN_1991_1_3(54, 0.0, 1.0, mue1, 7.0, 7.0)
        self.assertEqual(mue1, 7.0)


class Errors(unittest.TestCase):
    def setUp(self):
        self.ws = qvroofload.CWindSnow()

    def number_of(self, fn, *args):
        with self.assertRaises(qvroofload.RuntimeError) as caught:
            fn(*args)
        return caught.exception.number

    def test_numbers_of_the_run_time_errors(self):
        ws = self.ws
        cases = [
            ("division by zero", ws.SnowBagMue2, (100, 0), 11),
            ("text that is no number", ws.SnowMue1, ("steep",), 13),
            ("too many arguments", ws.SnowMue1, (1.0, 2.0), 450),
            ("too few arguments", ws.SnowMue1, (), 450),
            ("Null", ws.SnowMue1, (qvroofload.Null,), 94),
            ("an object for a number", ws.SnowMue1, (qvroofload.CWindSnow(),), 13),
            ("Nothing for a number", ws.SnowMue1, (qvroofload.Nothing,), 13),
            ("a dictionary", ws.SnowMue1, ({},), 13),
            ("not a number", ws.SnowMue1, (math.nan,), 5),
            ("infinite", ws.SnowMue1, (math.inf,), 5),
            ("beyond 16 bits", ws.WindReferencePressure_DIN1055_4_2005, (40000,), 6),
            ("beyond 2^53, no Double holds it exactly", ws.SnowMue1, ((1 << 53) + 1,), 6),
            ("below -2^53", ws.SnowMue1, (-(1 << 53) - 1,), 6),
            ("the largest 64-bit integer", ws.SnowMue1, ((1 << 63) - 1,), 6),
            ("beyond 64 bits", ws.SnowMue1, (1 << 70,), 6),
            ("a number for a list", ws.SnowZoneNames2005, (1.0, None), 13),
            ("unknown member", native.call, (ws._obj, "NoSuchMember", []), 438),
            ("unknown class", native.create, ("CNothing",), 429),
        ]
        for what, fn, args, number in cases:
            with self.subTest(what):
                self.assertEqual(self.number_of(fn, *args), number)

    def test_the_error_carries_its_description(self):
        with self.assertRaises(qvroofload.RuntimeError) as caught:
            self.ws.SnowBagMue2(100, 0)
        e = caught.exception
        self.assertEqual((e.number, e.description), (11, "Division by zero"))
        self.assertIsInstance(e, builtins.RuntimeError)
        self.assertEqual(str(e), "Run-time error '11': Division by zero")
        self.assertIs(type(e), qvroofload.RuntimeError)

    def test_the_object_works_on_after_an_error(self):
        with self.assertRaises(qvroofload.RuntimeError):
            self.ws.SnowBagMue2(100, 0)
        self.assertEqual(self.ws.SnowBagMue1(), 0.8)


class Properties(unittest.TestCase):
    def setUp(self):
        self.ws = qvroofload.CWindSnow()

    def test_the_municipality_reference_comes_with_the_object(self):
        self.assertEqual(type(self.ws.AGS).__name__, "CAGS")
        self.ws.AGS = None  # Nothing
        self.assertIsNone(self.ws.AGS)
        self.assertIsNone(native.call(self.ws._obj, "AGS", []))  # a get as a call

    def test_only_a_reference_of_its_class_is_taken(self):
        # The library names what it got: the generated object reaches it as an object.
        cases = [("a number", 1.0, "Double"), ("a text", "09162000", "String"),
                 ("another class", qvroofload.CWindSnow(), "another class: CWindSnow")]
        for what, value, told in cases:
            with self.subTest(what):
                with self.assertRaises(qvroofload.RuntimeError) as caught:
                    self.ws.AGS = value
                self.assertEqual(caught.exception.number, 13)
                self.assertIn(told, caught.exception.description)
        self.assertEqual(type(self.ws.AGS).__name__, "CAGS")

    def test_unknown_properties(self):
        for fn, args in [(native.get, (self.ws._obj, "NoSuch")), (native.let, (self.ws._obj, "NoSuch", 1)),
                         (native.get, (self.ws._obj, "SnowBagMue1"))]:
            with self.subTest(fn=fn.__name__, args=args[1:]):
                with self.assertRaises(qvroofload.RuntimeError) as caught:
                    fn(*args)
                self.assertEqual(caught.exception.number, 438)


class Objects(unittest.TestCase):
    def test_equality_is_identity(self):
        a, b = qvroofload.CWindSnow(), qvroofload.CWindSnow()
        self.assertEqual(a, a)
        self.assertNotEqual(a, b)
        same = qvroofload.CWindSnow._from_native(a._obj)
        self.assertEqual(a, same)
        self.assertEqual(hash(a), hash(same))
        self.assertEqual(repr(a), "<qvroofload.CWindSnow object>")

    def test_objects_stand_apart(self):
        a, b = qvroofload.CWindSnow(), qvroofload.CWindSnow()
        with self.assertRaises(qvroofload.RuntimeError):
            a.SnowBagMue2(100, 0)
        self.assertEqual(b.SnowBag_EN_1991_1_3(53, 1.0, 4.0), (None, 5.0, 5.0, 20.0))


class CoefficientTable(unittest.TestCase):
    def test_properties_store_and_clone_stands_apart(self):
        t = qvroofload.CWindCpTable()
        t.Theta = 90
        t.Alpha = 22.5
        t.TrTyp = 2
        c = t.Clone()
        self.assertIsInstance(c, qvroofload.CWindCpTable)
        self.assertNotEqual(c, t)
        self.assertEqual((c.Theta, c.Alpha, c.TrTyp), (90.0, 22.5, 2))
        c.Alpha = 45.0
        self.assertEqual(t.Alpha, 22.5)

    def test_copy_writes_into_another_table(self):
        src, dst = qvroofload.CWindCpTable(), qvroofload.CWindCpTable()
        src.Area_F10 = -1.8
        src.Mue = 0.25
        src.Copy(dst)
        self.assertEqual((dst.Area_F10, dst.Mue), (-1.8, 0.25))
        with self.assertRaises(qvroofload.RuntimeError) as e:
            src.Copy(None)
        self.assertEqual(e.exception.number, 91)

    def test_whole_numbers_up_to_two_to_the_53_pass_exactly(self):
        t = qvroofload.CWindCpTable()
        for v in (1 << 31, -(1 << 31) - 1, 1 << 53, -(1 << 53)):
            with self.subTest(v):
                t.Area_F10 = v
                self.assertEqual(t.Area_F10, float(v))

    def test_a_sixteen_bit_property_overflows(self):
        t = qvroofload.CWindCpTable()
        with self.assertRaises(qvroofload.RuntimeError) as e:
            t.TrTyp = 40000
        self.assertEqual(e.exception.number, 6)


if __name__ == "__main__":
    unittest.main()


class RoofLoad(unittest.TestCase):
    def test_a_request_fills_the_table_the_host_holds(self):
        r = qvroofload.CRoofLoad()
        self.assertEqual((r.Norm, r.SelectNorm, r.OnOk, r.SelectableCodesCtrl), (3, True, False, "_1_3_"))
        t = r.WindCpTable
        t.HzuD = 1.0
        self.assertIsNone(r.GetWindCpValues_Vertical_Wall())
        self.assertLess(t.Area_A10, 0.0)
        self.assertEqual(t.HzuD, 1.0)
        with self.assertRaises(AttributeError):  # read-only to the host
            r.OnOk = True

    def test_deprecated_members_answer_zero(self):
        r = qvroofload.CRoofLoad()
        self.assertEqual(r.StandardSnowLoad_DIN1055_7_2005(2, 300.0), 0.0)

    def test_the_municipality_object_of_the_calculation_object(self):
        ags = qvroofload.CRoofLoad().WindSnow.AGS
        self.assertIsInstance(ags, qvroofload.CAGS)
        self.assertEqual(ags.Getsk("09162000"), 0.0)
        with self.assertRaises(qvroofload.RuntimeError) as e:
            ags.Getsk()
        self.assertEqual(e.exception.number, 450)


class Imports(unittest.TestCase):
    """The importers as a script calls them: a report of what changed, bad
    input as error 5 with every fault, and nothing written then."""

    def setUp(self):
        import tempfile

        self.dir = tempfile.mkdtemp()

    def write(self, name, text):
        import os

        path = os.path.join(self.dir, name)
        with open(path, "w", encoding="utf-8") as f:
            f.write(text)
        return path

    def test_a_list_lands_in_the_users_copy_and_says_so(self):
        import os

        path = self.write(
            "gemliste.csv",
            "Gemeindekennziffer;Gemeindename;Gemeindecode;Status;PLZ des Gem.Amtes;weitere Postleitzahlen\n"
            "70101;Innsbruck;70101;SR;6020;6080\n",
        )
        r = qvroofload.import_at_municipalities(path)
        self.assertEqual([t["table"] for t in r["tables"]], ["slzwlz1 (Land_ID 51)"])
        t = r["tables"][0]
        self.assertEqual(t["inserted"] + t["updated"] + t["unchanged"], 1)
        self.assertIn("qvrl.mdb slzwlz1 (Land_ID 51): ", r["text"])
        self.assertTrue(os.path.exists(os.path.join(os.environ["APPDATA"], "tarvek", "qvrl.mdb")))

    def test_bad_input_is_error_5_and_names_its_lines(self):
        path = self.write("zones.csv", "AGS;WZ\n05;1\n0533;3\n")
        with self.assertRaises(qvroofload.RuntimeError) as c:
            qvroofload.import_zones(path, land=50)
        self.assertEqual(c.exception.number, 5)
        self.assertIn("zones.csv:3: key '0533'", c.exception.description)
        with self.assertRaises(qvroofload.RuntimeError) as c:
            qvroofload.import_zones(path, land=52)
        self.assertEqual(c.exception.number, 5)
        with self.assertRaises(qvroofload.RuntimeError) as c:
            qvroofload.import_uk_figures(self.dir, db=self.dir + "/absent.mdb")
        self.assertEqual(c.exception.number, 5)  # the folder holds no grids
        self.assertIn("en_bs_fig3.csv: missing", c.exception.description)


class Site(unittest.TestCase):
    def test_the_document_of_the_tool_as_a_dict(self):
        r = qvroofload.site(norm=50, snow_zone="2", wind_zone=2, category=2, altitude=400, height=10,
                            roof="gabled", pitch=35, width=12, depth=10, ce=None)
        self.assertEqual(r["schema_version"], 1)
        # 0.25 + 1.91·((400 + 140)/760)², and 2.1·0.39 at z = 10 m: hand figures to three decimals
        self.assertAlmostEqual(r["snow"]["ground_snow_load"]["value"], 1.214, delta=0.0005)
        self.assertAlmostEqual(r["wind"]["peak_velocity_pressure"]["value"], 0.819, delta=0.0005)
        self.assertEqual(r["snow"]["c_e"]["value"], 1.0)  # None is an option not given
        self.assertEqual([a["name"] for a in r["snow"]["arrangements"]], ["undrifted", "drifted_left", "drifted_right"])
        self.assertTrue(r["coefficients"]["directions"][0]["zone_shapes"])
        self.assertEqual({n["member"] for n in r["notes"] if n["topic"] != "cpe_10"},
                         {"CWindSnow.StandardSnowLoad_EN_1991_1_3", "CWindSnow.WindPressure_EN_1991_1_4"})

    def test_bad_input_is_error_5_naming_the_option(self):
        for options, option in [
            (dict(norm=50, snow_zone="9", altitude=0, height=5, roof="flat"), "--snow-zone"),
            (dict(norm=3, colour=1), "--colour"),
            (dict(snow_zone=2), "--norm"),
            (dict(norm=50.5), "--norm"),
            (dict(norm=54, region=6, snow_zone=2, vb=25, category=2, altitude=0, height=5, roof="dome"), "--roof"),
        ]:
            with self.assertRaises(qvroofload.RuntimeError) as c:
                qvroofload.site(**options)
            self.assertEqual(c.exception.number, 5, options)
            self.assertIn(option, c.exception.description, options)

