#pragma once
// The live load dialog sessions of CRoofLoad: block file in, frmLiveLoad_1,
// block file out. ShowLiveLoadDlg keeps the old standard (1) and hands the
// others over to ShowLiveLoadDlg_1, which hands 1 back.

#include <string>

namespace qvrl {

class CRoofLoad;

// onOk is the object's OnOk, which a nested session sets.
void RunLiveLoadDlg(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);
void RunLiveLoadDlg_1(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk);

}  // namespace qvrl
