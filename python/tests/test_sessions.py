"""A dialog session as a Python host drives it with a script instead of a
screen: the same road as the C++ and C hosts, and the same file."""

import os
import shutil
import tempfile
import unittest

from qvroofload import _qvroofload as native

FIXTURES = os.path.join(os.path.dirname(__file__), "..", "..", "tests", "dialogs", "fixtures")
FORM = "frmRoofLoadEN"


def read(path):
    with open(path, "rb") as f:
        return f.read()


class RoofLoadENSession(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp()
        self.file = os.path.join(self.dir, "roof.asc")
        shutil.copy(os.path.join(FIXTURES, "en54.asc"), self.file)

    def tearDown(self):
        shutil.rmtree(self.dir)

    def test_height_and_ok_write_the_file_the_other_hosts_get(self):
        run = native.run_session(
            "CRoofLoad.ShowRoofLoadDlg_EN",
            [self.file],
            [
                {"form": FORM, "action": "type", "control": "txtWind(0)", "text": "12"},
                {"form": FORM, "action": "ok"},
            ],
        )
        self.assertEqual(run["forms"], [FORM])
        self.assertIs(run["on_ok"], True)
        self.assertEqual(read(self.file), read(os.path.join(FIXTURES, "en54_height12.asc")))

    def test_cancel_leaves_every_byte_and_a_wrong_step_is_an_error(self):
        before = read(self.file)
        run = native.run_session("CRoofLoad.ShowRoofLoadDlg_EN", [self.file], [{"form": FORM, "action": "cancel"}])
        self.assertIs(run["on_ok"], False)
        self.assertEqual(read(self.file), before)
        with self.assertRaises(ValueError):
            native.run_session("CRoofLoad.ShowRoofLoadDlg_EN", [self.file], [{"form": "frmOther", "action": "ok"}])
        self.assertEqual(read(self.file), before)


if __name__ == "__main__":
    unittest.main()
