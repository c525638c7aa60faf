"""Members called with their own signatures: the same values as the
late-bound road, argument errors as TypeError, and the array calls of the
pure rules."""

import math
import unittest

import numpy as np

import qvroofload
from qvroofload import _qvroofload as native

EN = (54, 2, 10.0, 0.0, 25.0, 0.0, 0.0)


class SameAsLateBound(unittest.TestCase):
    """Both roads convert with Basic's rules and call the same member, so
    results, in/out values and error numbers agree exactly."""

    def test_results_and_faults_of_a_table_of_members(self):
        ws = qvroofload.CWindSnow()
        cases = [
            ("WindPressure_EN_1991_1_4", EN),
            ("WindPressure_EN_1991_1_4", (54, 2, 1.5, 0.0, 25.0, 0.0, 0.0)),  # below zmin
            ("WindPressure_EN_1991_1_4", (50, 3, 57.3, 0.0, 22.5, 0.05, 0.3)),
            ("WindPressure_EN_1991_1_4", (53, 1, 12.0, 0.0, 24.0, 0.0, 0.0)),
            ("WindPressure_EN_1991_1_4", ("54", 2.5, 10, 0, 25, False, 0.0)),  # text, half to even, whole numbers
            ("WindPressure_DIN1055_4_2005", (2, 2, 10.0, 0.0)),
            ("WindPressure_DIN1055_4_2005", (4, 1, 18.0, 1200.0)),  # the 999 sentinel
            ("WindPressure_DIN1055_4_1986", (20.0,)),
            ("StandardSnowLoad_EN_1991_1_3", (54, 1, 2.0, 728.0)),
            ("StandardSnowLoad_DIN1055_7_2005", (2, 300.0)),
            ("SnowMue1", (True,)),  # True is -1
            ("SnowBagMue2", (100, 0)),  # error 11
            ("SnowMue1", ("steep",)),  # error 13
            ("WindReferencePressure_DIN1055_4_2005", (32768,)),  # error 6
            ("SnowMue1", (math.inf,)),  # error 5
        ]
        for member, args in cases:
            with self.subTest(member=member, args=args):
                self.assertEqual(self.outcome(lambda: getattr(ws, member)(*args)),
                                 self.outcome(lambda: native.call(ws._obj, member, args)))

    def test_in_out_values_of_a_table_of_members(self):
        ws = qvroofload.CWindSnow()
        cases = [
            ("SnowBag_EN_1991_1_3", (53, 1.0, 4.0, 0.0, 0.0, 0.0), [3, 4, 5]),
            ("SnowBag_EN_1991_1_3", (54, 0.0, 1.0, 7.0, 7.0, 7.0), [3, 4, 5]),  # faults
            ("SnowZoneNames1975", ([], []), [0, 1]),
            ("WindOpenSides_EN_1991_1_4", (None, None), [0, 1]),
        ]
        for member, args, by_ref in cases:
            with self.subTest(member=member, args=args):
                self.assertEqual(self.outcome(lambda: getattr(ws, member)(*args)),
                                 self.outcome(lambda: native.call_ref(ws._obj, member, args, by_ref)))

    @staticmethod
    def outcome(call):
        try:
            r = call()
        except qvroofload.RuntimeError as e:
            return ("error", e.number)
        # repr keeps the type and every bit of a float apart
        return ("value", repr(r))

    def test_properties_read_and_write_through_the_typed_form(self):
        t = qvroofload.CWindCpTable()
        t.Alpha = 0.1 + 0.2  # a value whose last bit shows
        t.TrTyp = 2.5  # half to even
        self.assertEqual((t.Alpha, t.TrTyp), (0.1 + 0.2, 2))
        self.assertEqual(native.get(t._obj, "Alpha"), 0.1 + 0.2)
        r = qvroofload.CRoofLoad()
        r.UseCpeDB = "True"
        self.assertIs(r.UseCpeDB, True)


class ArgumentErrors(unittest.TestCase):
    def test_count_and_type_are_type_errors_with_their_number(self):
        ws = qvroofload.CWindSnow()
        cases = [
            (ws.SnowMue1, (), 450),
            (ws.WindPressure_EN_1991_1_4, EN + (0.0,), 450),
            (ws.SnowBag_EN_1991_1_3, (53, 1.0), 450),  # in/out arguments may be left out, the others not
            (ws.SnowMue1, ("steep",), 13),
            (ws.SnowMue1, ({},), 13),
            (ws.SnowMue1, (np.array(["a"]),), 13),
            (qvroofload.CAGS().Getqb, (qvroofload.CWindSnow(),), 13),
            (ws.SnowZoneNames2005, (1.0, None), 13),
        ]
        for fn, args, number in cases:
            with self.subTest(fn=fn.__name__, args=args):
                with self.assertRaises(TypeError) as caught:
                    fn(*args)
                e = caught.exception
                self.assertIsInstance(e, qvroofload.RuntimeError)
                self.assertIs(type(e), qvroofload.ArgumentError)
                self.assertEqual(e.number, number)
                self.assertTrue(str(e).startswith("Run-time error '%d': " % number))

    def test_other_faults_stay_runtime_errors(self):
        ws = qvroofload.CWindSnow()
        for fn, args, number in [(ws.SnowBagMue2, (100, 0), 11), (ws.SnowMue1, (qvroofload.Null,), 94)]:
            with self.subTest(number=number):
                with self.assertRaises(qvroofload.RuntimeError) as caught:
                    fn(*args)
                self.assertNotIsInstance(caught.exception, TypeError)
                self.assertEqual(caught.exception.number, number)

    def test_a_member_needs_an_object_of_its_class(self):
        with self.assertRaises(TypeError):
            qvroofload.CWindSnow.SnowMue1(object(), 1.0)
        with self.assertRaises(qvroofload.RuntimeError) as caught:
            qvroofload.CWindSnow.SnowMue1(qvroofload.CAGS(), 1.0)
        self.assertEqual(caught.exception.number, 438)
        # The member still serves its own class after the other one.
        ws = qvroofload.CWindSnow()
        self.assertEqual(qvroofload.CWindSnow.SnowMue1(ws, 30.0), native.call(ws._obj, "SnowMue1", [30.0]))
        empty = qvroofload.CWindSnow.__new__(qvroofload.CWindSnow)
        with self.assertRaises(qvroofload.RuntimeError) as caught:
            empty.SnowMue1(1.0)
        self.assertEqual(caught.exception.number, 91)


class ArrayCalls(unittest.TestCase):
    def setUp(self):
        self.ws = qvroofload.CWindSnow()

    def test_each_element_is_the_scalar_call(self):
        # The same conversion and the same rule per element: equal to the last bit.
        heights = np.array([0.5, 1.0, 2.0, 3.7, 10.0, 10.000000000000002, 55.5, 199.9, 200.0])
        cases = [
            ("WindPressure_EN_1991_1_4", lambda h: (54, 2, h, 0.0, 25.0, 0.0, 0.0)),
            ("WindPressure_EN_1991_1_4", lambda h: (50, h.astype(np.int64) % 5, 10.0, 0.0, 25.0, 0.0, 0.0)),
            ("WindPressure_DIN1055_4_2005", lambda h: (2, 3, h, 0.0)),
            ("StandardSnowLoad_DIN1055_7_2005", lambda h: (np.full(h.shape, 2.5), h * 10.0)),  # zone 2.5 → 2
            ("SnowMue1", lambda h: (h * 7.0,)),
        ]
        for member, make in cases:
            with self.subTest(member=member):
                args = make(heights)
                got = getattr(self.ws, member)(*args)
                self.assertEqual(got.dtype, np.float64)
                for i in range(heights.size):
                    scalar = [float(a[i]) if isinstance(a, np.ndarray) else a for a in args]
                    self.assertEqual(repr(got[i]), repr(np.float64(getattr(self.ws, member)(*scalar))), (i, scalar))

    def test_broadcasting_shapes(self):
        z = np.array([5.0, 10.0, 20.0])
        vb = np.array([[22.5], [25.0]])
        cases = [
            ((54, 2, z, 0.0, 25.0, 0.0, 0.0), (3,)),
            ((54, 2, z, 0.0, vb, 0.0, 0.0), (2, 3)),
            ((np.array(54), 2, 10.0, 0.0, 25.0, 0.0, 0.0), ()),
            ((54, np.array([[1], [2], [3]]), z, 0.0, 25.0, 0.0, 0.0), (3, 3)),
            ((54, 2, np.empty((0,)), 0.0, 25.0, 0.0, 0.0), (0,)),
            ((54, 2, z[::-1], 0.0, 25.0, 0.0, 0.0), (3,)),  # a view with a negative stride
        ]
        for args, shape in cases:
            with self.subTest(shape=shape):
                got = self.ws.WindPressure_EN_1991_1_4(*args)
                self.assertEqual(got.shape, shape)
                for index in np.ndindex(shape):
                    b = np.broadcast_arrays(*[np.asarray(a, dtype=np.float64) for a in args])
                    scalar = [float(a[index]) for a in b]
                    self.assertEqual(got[index], self.ws.WindPressure_EN_1991_1_4(*scalar))
        with self.assertRaises(ValueError):
            self.ws.WindPressure_EN_1991_1_4(54, 2, z, 0.0, np.array([25.0, 26.0]), 0.0, 0.0)

    def test_keywords_and_arrays(self):
        z = np.array([5.0, 10.0])
        by_name = self.ws.WindPressure_EN_1991_1_4(54, 2, z_BuildingInM=z, BasicWindPressure=0.0,
                                                   BasicWindVelocity=25.0, UpwindSlope_Phi=0.0,
                                                   OrographicLocationFac_s=0.0)
        self.assertEqual(list(by_name), list(self.ws.WindPressure_EN_1991_1_4(54, 2, z, 0.0, 25.0, 0.0, 0.0)))

    def test_the_faulting_element(self):
        hc = np.array([[100.0, 100.0], [100.0, 50.0]])
        sk = np.array([[1.0, 2.0], [0.0, 0.0]])
        with self.assertRaises(qvroofload.RuntimeError) as caught:
            self.ws.SnowBagMue2(hc, sk)
        self.assertEqual((caught.exception.number, caught.exception.index), (11, (1, 0)))

        values, numbers = self.ws.SnowBagMue2(hc, sk, errors="mask")
        self.assertEqual(numbers.tolist(), [[0, 0], [11, 11]])
        self.assertEqual(values[0].tolist(), [self.ws.SnowBagMue2(100.0, 1.0), self.ws.SnowBagMue2(100.0, 2.0)])
        self.assertTrue(np.isnan(values[1]).all())

        # Not a number in an array is error 5 at its element, as in a scalar call.
        values, numbers = self.ws.SnowMue1(np.array([10.0, np.nan, np.inf]), errors="mask")
        self.assertEqual(numbers.tolist(), [0, 5, 5])
        self.assertEqual(values[0], self.ws.SnowMue1(10.0))
        # A scalar that faults faults at every element.
        values, numbers = self.ws.WindReferencePressure_DIN1055_4_2005(np.array([40000, 2]), errors="mask")
        self.assertEqual(numbers.tolist(), [6, 0])
        _, numbers = self.ws.StandardSnowLoad_DIN1055_7_2005(40000, np.array([0.0, 1.0]), errors="mask")
        self.assertEqual(numbers.tolist(), [6, 6])

    def test_what_is_no_array_of_numbers(self):
        cases = [
            (lambda: self.ws.SnowMue1(np.array([True])), 13),
            (lambda: self.ws.SnowMue1(np.array([1 << 60])), 6),
            (lambda: self.ws.SnowMue1(np.array([1.0]), errors="ignore"), None),
            (lambda: self.ws.SnowBag_EN_1991_1_3(53, np.array([1.0]), 4.0), 13),  # in/out: no array calls
        ]
        for call, number in cases:
            with self.subTest(number=number):
                with self.assertRaises((qvroofload.RuntimeError, ValueError)) as caught:
                    call()
                self.assertEqual(getattr(caught.exception, "number", None), number)


class Version(unittest.TestCase):
    def test_the_version_of_the_library(self):
        self.assertRegex(qvroofload.__version__, r"^\d+\.\d+\.\d+$")
        major, minor = qvroofload.TYPELIB_VERSION
        self.assertTrue(qvroofload.__version__.startswith("%d.%d." % (major, minor)))


if __name__ == "__main__":
    unittest.main()
