#pragma once
// The roof load dialog sessions of CRoofLoad: block file in, dialog, block
// file out. A session hands over to the one whose dialog shows the standards
// of the file or the one the user chose; the hand-overs nest, and OnOk is
// what the session that ended last left.

#include <string>

namespace qvrl {

class CRoofLoad;

// onOk is the object's OnOk, which a nested session sets.
// DIN 1055-4:1986 and DIN 1055-5:1975 (Norm 1): frmRoofLoad.
void RunRoofLoadDlg(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);
// DIN 1055-100 (Norm 3, 31): frmRoofLoad100.
void RunRoofLoadDlg_1(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);
// Eurocode (Norm 50 to 54): frmRoofLoadEN.
void RunRoofLoadDlg_EN(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);

}  // namespace qvrl
