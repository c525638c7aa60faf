"""The live load session as a Python host drives it: the old standard's
member hands a Norm 3 file to the catalogue dialog, a basic and an
additional load are taken from the shipped catalogue, and OK writes them."""

import os
import shutil
import tempfile
import unittest

from qvroofload import _qvroofload as native

FIXTURES = os.path.join(os.path.dirname(__file__), "..", "..", "tests", "dialogs", "fixtures")
LIVE, BASIC, ADD = "frmLiveLoad_1", "frmLiveLoadSelect_1", "frmLiveLoadSelectAdd_1"


class LiveLoadSession(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp()
        self.file = os.path.join(self.dir, "live.asc")
        shutil.copy(os.path.join(FIXTURES, "live3.asc"), self.file)

    def tearDown(self):
        shutil.rmtree(self.dir)

    def test_catalogue_rows_reach_the_file(self):
        run = native.run_session(
            "CRoofLoad.ShowLiveLoadDlg",
            [self.file],
            [
                {"form": LIVE, "action": "click", "control": "cmdp"},
                {"form": BASIC, "action": "select_row", "control": "gridSel", "text": "A2"},
                {"form": BASIC, "action": "ok"},
                {"form": LIVE, "action": "click", "control": "cmdpPlus"},
                {"form": ADD, "action": "select_row", "control": "gridSel", "text": "TW3"},
                {"form": ADD, "action": "ok"},
                {"form": LIVE, "action": "ok"},
            ],
        )
        self.assertEqual(run["forms"], [LIVE, BASIC, ADD])
        self.assertIs(run["on_ok"], True)
        with open(self.file, "rb") as f:
            lines = f.read().decode("utf-8").split("\r\n")
        self.assertIn("SELECTCODES '_1_3_'", lines)
        live = [l for l in lines if l.startswith("LIVELOAD ")]
        self.assertEqual(len(live), 1)
        # DIN 1055-3 A2 is 1.5 kN/m2, the partition allowance TW3 0.8: the
        # design value 2.3, in kN/cm2 in the file; the allowance unscaled.
        fields = live[0].split()
        self.assertEqual(fields[1:4], ["3", "0.000230", "0.000150"])
        self.assertEqual(fields[5], "'A2'")
        self.assertIn(" 0.8000 'TW3' 'Trennwandzuschlag' ", live[0])
        # Without EditDeadLoad the live writer keeps no dead load line.
        self.assertFalse(any(l.startswith("DEADLOAD") for l in lines))


if __name__ == "__main__":
    unittest.main()
