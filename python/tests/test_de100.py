"""The hand-over from the Eurocode dialog to the DIN 1055-100 dialog as a
Python host drives it: the same road and the same file as the C++, C and
shell hosts get."""

import os
import shutil
import tempfile
import unittest

from qvroofload import _qvroofload as native

FIXTURES = os.path.join(os.path.dirname(__file__), "..", "..", "tests", "dialogs", "fixtures")


def read(path):
    with open(path, "rb") as f:
        return f.read()


class RoofLoadHandOver(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp()
        self.file = os.path.join(self.dir, "roof.asc")
        shutil.copy(os.path.join(FIXTURES, "en54.asc"), self.file)

    def tearDown(self):
        shutil.rmtree(self.dir)

    def run_road(self, last):
        return native.run_session(
            "CRoofLoad.ShowRoofLoadDlg_EN",
            [self.file],
            [
                {"form": "frmRoofLoadEN", "action": "choose", "control": "cbNormI", "tag": "3"},
                {"form": "frmRoofLoad100", "action": last},
            ],
        )

    def test_ok_in_the_nested_dialog_writes_the_file_the_other_hosts_get(self):
        run = self.run_road("ok")
        self.assertEqual(run["forms"], ["frmRoofLoadEN", "frmRoofLoad100"])
        self.assertIs(run["on_ok"], True)
        self.assertEqual(read(self.file), read(os.path.join(FIXTURES, "din3_ok.asc")))

    def test_cancel_in_the_nested_dialog_keeps_the_first_write(self):
        run = self.run_road("cancel")
        self.assertIs(run["on_ok"], False)
        self.assertEqual(read(self.file), read(os.path.join(FIXTURES, "en54_to3.asc")))


if __name__ == "__main__":
    unittest.main()
