#include "dialogs/RoofLoadFrame.h"

#include "interchange/modAsciiRL2.h"
#include "support/CLocLite.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl::roofframe {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

int32_t IndexOfCode(const ComboBox& cb, int32_t code) {
    for (int32_t i = 0; i < cb.ListCount(); ++i)
        if (cb.ItemData(i) == code) return i;
    return -1;
}

void Fill(ComboBox& cb, const CodeList& list) {
    cb.Clear();
    for (int16_t i = 1; i <= list.Count(); ++i) cb.AddItem(list.sName[i], list.Index[i]);
}

bool SelectOrFirst(ComboBox& cb, int32_t code) {
    if (cb.ListCount() == 0) return false;
    const int32_t i = IndexOfCode(cb, code);
    cb.ListIndex(i < 0 ? 0 : i);
    return true;
}

double Number(QVTextBox& box) { return box.ReadValue(2).toDouble(); }

void ValueBox(QVTextBox& box, const char* format) {
    box.Style(QVTextBox::StyleReal);
    box.FormatString(format);
    box.Schema(2);
}

void FillNormCombos(ComboBox& cbNorm, ComboBox& cbNormI) {
    const std::string codes = State().SelectableCodesCtrl;
    WriteTrace("SelectableCodesString", Variant(codes), "InitCbNorm", true);
    cbNorm.Clear();
    cbNormI.Clear();
    for (const NormRow& row : SelectableNormRows(codes)) {
        cbNorm.AddItem(row.text, row.code);
        cbNormI.AddItem(row.text, row.code, std::to_string(row.code));
        WriteTrace("AddItem", Variant(row.code), "InitCbNorm", true);
    }
    cbNormI.Enabled(cbNormI.ListCount() > 1);
}

void SelectNorm(ComboBox& cbNorm, ComboBox& cbNormI, int16_t norm, const std::function<void(int16_t)>& takeNorm) {
    if (cbNorm.ListCount() > 0) {
        const int32_t i = IndexOfCode(cbNorm, norm);
        if (i >= 0) {
            cbNorm.ListIndex(i);
        } else {
            cbNorm.ListIndex(0);
            norm = static_cast<int16_t>(cbNorm.ItemData(0));
            takeNorm(norm);
        }
    }
    if (cbNormI.Enabled() && cbNormI.ListCount() > 0) {
        int32_t found = -1;
        for (int32_t i = 0; i < cbNormI.ListCount() && found < 0; ++i)
            if (cbNormI.Item(i).tag == std::to_string(norm)) found = i;
        if (found >= 0) {
            cbNormI.ListIndex(found);
        } else {
            cbNormI.ListIndex(0);
            takeNorm(static_cast<int16_t>(Val(cbNormI.Item(0).tag)));
        }
    }
}

int16_t ChosenNorm(const ComboBox& cbNormI) {
    return static_cast<int16_t>(Val(cbNormI.Item(cbNormI.ListIndex()).tag));
}

void ShowNachNorm(CheckBox& chkNorm, bool nachNorm, std::initializer_list<QVTextBox*> designValues) {
    chkNorm.Value(nachNorm ? 1 : 0);
    for (QVTextBox* box : designValues) box->Locked(nachNorm);
    for (QVTextBox* box : designValues) box->LabelLike(nachNorm);
}

void SetUpDeadLoadBox(QVTextBox& g, int16_t index) {
    if (index % 2 == 0) {
        // Free text: no length limit.
        g.Style(QVTextBox::StyleLength);
        g.Schema(4);
        g.EditWidth(2400);
    } else {
        ValueBox(g, "0.00");
        g.Caption("g");
    }
}

void ReadDeadLoad(const DeadLoadBoxes& boxes, int k, std::string& remark, double& value) {
    remark = boxes[static_cast<size_t>(2 * k)]->ReadValue(2).toString();
    value = Number(*boxes[static_cast<size_t>(2 * k + 1)]);
}

void ShowDeadLoads(QVFrame& frame, const DeadLoadBoxes& boxes, bool mitG, const std::array<double, 3>& values) {
    frame.Visible(mitG);
    for (QVTextBox* box : boxes) box->Visible(mitG);
    if (!mitG) return;
    const std::string remarks[] = {T(30), T(31), T(32)};
    for (size_t k = 0; k < 3; ++k) {
        QVTextBox& remark = *boxes[2 * k];
        remark.Text(Variant(remarks[k]));
        remark.Locked(true);
        remark.LabelLike(true);
        boxes[2 * k + 1]->Text(Variant(values[k]));
    }
}

void LocalizeDeadLoads(const DeadLoadBoxes& boxes) {
    for (size_t i = 1; i < 6; i += 2) boxes[i]->Dimension(T(51));
}

void StoreDefaults(const DefaultValues& v, const TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, bool nachNorm) {
    wind.Norm = v.norm;
    wind.q0 = v.wq;
    wind.h = v.hGeb;
    wind.hNN = v.hNN;
    wind.cat = v.cat;
    wind.qb = v.qb;
    snow.Norm = v.norm;
    snow.s0 = v.s0;
    snow.h = v.hNN;
    snow.sz = v.slz;
    SaveDefaults(town, wind, snow, nachNorm ? 1 : 0, "");
}

void LocalizeFrame(Form& form, Label& lbNorm, CheckBox& chkNorm, CommandButton& cmdDefault, QVButtons& buttons) {
    form.Caption(T(3));
    cmdDefault.Caption(T(472));
    chkNorm.Caption(T(40));
    buttons.Localize();
    buttons.ToolTipText(T(12));
    lbNorm.Caption(T(21));
}

}  // namespace qvrl::roofframe
