#pragma once
// The roof load dialog sessions of CRoofLoad: block file in, dialog, block
// file out. A session hands over to the one whose dialog shows the standards
// of the file or the one the user chose; the hand-overs nest.

#include <string>

namespace qvrl {

class CRoofLoad;

// The Eurocode road. onOk is the object's OnOk, which a nested session sets.
void RunRoofLoadDlg_EN(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);

}  // namespace qvrl
