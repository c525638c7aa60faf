#include "maps/MapForms.h"

#include "rules/modWind.h"
#include "support/CLocLite.h"
#include "support/errors.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

struct RegionMap {
    int16_t region;
    const char* suffix;
    int32_t text;
    double west, south, east, north;
};
// The window of each region's map, around the countries the region names.
constexpr RegionMap kRegionMaps[] = {
    {1, "alpine", 540, 4.5, 43.0, 17.5, 49.0},          {2, "centraleast", 541, 9.0, 44.0, 30.0, 56.0},
    {3, "greece", 540, 19.0, 34.5, 29.0, 42.0},         {4, "iberian", 545, -10.0, 35.5, 4.5, 44.0},
    {5, "mediterranean", 547, -10.0, 34.5, 29.0, 47.0}, {6, "centralwest", 542, -6.0, 42.0, 16.0, 56.0},
    {7, "swedenfinland", 550, 10.0, 54.5, 32.0, 70.5},  {8, "uk", 551, -11.0, 49.5, 2.5, 61.0},
    {9, "norway", 548, 4.0, 57.5, 31.5, 71.5},          {10, "iceland", 546, -25.0, 63.0, -13.0, 67.0},
    {11, "czech", 543, 12.0, 48.5, 19.0, 51.2},         {12, "poland", 549, 14.0, 49.0, 24.5, 55.0},
};

const RegionMap& RegionMapOf(int16_t region) {
    for (const RegionMap& r : kRegionMaps)
        if (r.region == region) return r;
    return kRegionMaps[0];
}

MapPicture Germany(MapPicture::TownZone zone) {
    MapPicture p;
    p.base = MapPicture::Base::Germany;
    p.townZone = zone;
    p.west = 5.8;
    p.south = 47.2;
    p.east = 15.1;
    p.north = 55.1;
    return p;
}

ZoneMapForm::Design EnSnowDesign(int16_t region) {
    const RegionMap& r = RegionMapOf(region);
    const std::string s = r.suffix;
    ZoneMapForm::Design d;
    d.formName = "frmEN_SZ_" + s;
    d.designCaption = "Schneezonen nach EN 1991-1-3";
    d.captionText = 538;
    d.regionText = r.text;
    d.listName = "cbSZ";
    d.mapControl = "ucIM_ENsz_" + s;
    d.mapName = d.mapControl + "1";
    d.labels = {{"lblSZ", 539}};
    d.order = {"QVButtons1", "lblSZ", "cbSZ", d.mapName};
    const int16_t code = r.region;
    d.list = [code] { return static_cast<CodeList>(SnowZoneList(-1, code)); };
    d.picture.west = r.west;
    d.picture.south = r.south;
    d.picture.east = r.east;
    d.picture.north = r.north;
    d.bringToFront = true;
    return d;
}

}  // namespace

ZoneMapForm::ZoneMapForm(Design d) : design_(std::move(d)) {
    Caption(design_.designCaption);
    for (const std::string& name : design_.order) {
        if (name == "QVButtons1") {
            buttons_ = &Add<QVButtons>(name);
        } else if (name == design_.listName) {
            list_ = &Add<ComboBox>(name);
        } else if (name == design_.mapName) {
            map_ = &Add<ucImageMap>(name, -1, design_.mapControl, design_.list, design_.picture);
        } else {
            Label& l = Add<Label>(name);
            if (name == "lblqref") lblqref_ = &l;
        }
    }
    buttons_->OnOk = [this] {
        UpdateData(true);
        onOk_ = true;
        Hide();
    };
    buttons_->OnCancel = [this] { Cancel(); };
    map_->Click = [this] {
        const int16_t v = CInt(map_->SelectedValue());
        if (v > 0) {
            value_ = v;
            UpdateData(false);
        }
    };
    if (design_.windReference)
        list_->Click = [this] {
            if (inUpdate_) return;
            UpdateData(true);
            UpdateData(false);
        };
    EnterTabsEscapeCancels([this] { Cancel(); });
}

void ZoneMapForm::Cancel() {
    onOk_ = false;
    Hide();
}

void ZoneMapForm::Form_Load() {
    const CodeList l = design_.list();
    for (int16_t i = 1; i <= l.Count(); ++i) list_->AddItem(l.sName[static_cast<size_t>(i)], l.Index[static_cast<size_t>(i)]);
    map_->InitMe();
}

void ZoneMapForm::Form_Activate() {
    Localize();
    if (design_.bringToFront && !activated_) {
        activated_ = true;
        Caption(Caption());
        frmNull lift;
        lift.Show();
        lift.Unload();
    }
}

void ZoneMapForm::UpdateData(bool save, const std::string&) {
    const bool was = inUpdate_;
    inUpdate_ = true;
    struct Restore {
        bool& flag;
        bool value;
        ~Restore() { flag = value; }
    } restore{inUpdate_, was};
    if (save) {
        value_ = static_cast<int16_t>(list_->ItemData(list_->ListIndex()));
    } else {
        int32_t found = -1;
        for (int32_t i = 0; i < list_->ListCount() && found < 0; ++i)
            if (list_->ItemData(i) == value_) found = i;
        if (found < 0) {
            found = 0;
            value_ = 1;
        }
        list_->ListIndex(found);
        if (lblqref_) {
            double qref = 0.0, vref = 0.0;
            WindReference(value_, qref, vref);
            lblqref_->Caption(T(287) + Trim(Format(qref, "#0.00")) + " kN/m\xC2\xB2");
        }
    }
}

void ZoneMapForm::Localize() {
    try {
        std::string c = T(design_.captionText);
        if (design_.regionText) c += ": " + T(design_.regionText);
        Caption(c);
        for (const auto& [name, number] : design_.labels) Get<Label>(name).Caption(T(number));
        buttons_->Localize();
        map_->Localize();
    } catch (const RuntimeError&) {
        // A missing text leaves the designed one.
    }
}

frmSLZ::frmSLZ()
    : ZoneMapForm({"frmSLZ", "Schneelastzonenkarte nach DIN 1055-5: 1975", 272, 0, "cbSLZ", "ucIMSLZ1", "ucIMSLZ",
                   {{"lblSLZ", 273}}, {"QVButtons1", "cbSLZ", "lblSLZ", "ucIMSLZ1"}, SnowZoneList1975,
                   // The town table holds no zones of 1975.
                   Germany(MapPicture::TownZone::None), false, false}) {}

frmSLZ_1::frmSLZ_1()
    : ZoneMapForm({"frmSLZ_1", "Schneelastzonenkarte nach DIN 1055-5: 2005", 285, 0, "cbSLZ", "ucIMSLZ_11",
                   "ucIMSLZ_1", {{"lblSLZ", 286}}, {"QVButtons1", "ucIMSLZ_11", "cbSLZ", "lblSLZ"}, SnowZoneList2005,
                   Germany(MapPicture::TownZone::Snow), false, false}) {}

frmWZ_1::frmWZ_1()
    : ZoneMapForm({"frmWZ_1", "Windzonenkarte nach DIN 1055-4: 2003", 288, 0, "cbWZ", "ucIMWZ_11", "ucIMWZ_1",
                   {{"lblqref", 289}, {"lblWZ", 290}}, {"ucIMWZ_11", "cbWZ", "lblqref", "lblWZ", "QVButtons1"},
                   WindZoneList2005, Germany(MapPicture::TownZone::Wind), false, true}) {}

frmWZ_2::frmWZ_2()
    : ZoneMapForm({"frmWZ_2", "Windzonenkarte nach DIN 1055-4: 2005 mit T 2963", 409, 0, "cbWZ", "ucIMWZ_21",
                   "ucIMWZ_2", {{"lblqref", 289}, {"lblWZ", 290}},
                   {"ucIMWZ_21", "cbWZ", "lblqref", "lblWZ", "QVButtons1"}, WindZoneList2005_T2963,
                   Germany(MapPicture::TownZone::Wind), false, true}) {}

frmClimaEN::frmClimaEN()
    : ZoneMapForm({"frmClimaEN", "Klimazonen nach EN 1991-1-3", 518, 0, "cbCR", "ucIM_ENcr1", "ucIM_ENcr", {},
                   {"QVButtons1", "ucIM_ENcr1", "cbCR"}, [] { return SnowRegionList(-1); }, MapPicture{}, true,
                   false}) {}

frmEN_SZ::frmEN_SZ(int16_t CtrlRegion) : ZoneMapForm(EnSnowDesign(CtrlRegion)), region_(RegionMapOf(CtrlRegion).region) {}

// --- terrain categories ---

WindCategoryForm::WindCategoryForm(Design d) : design_(std::move(d)) {
    Caption(design_.designCaption);
    auto& strip = Add<QVButtons>("QVButtons1");
    for (int16_t i = 0; i < design_.options; ++i) {
        OptionButton& o = Add<OptionButton>("optWCat", i);
        o.Group = "optWCat";
        options_.push_back(&o);
    }
    for (int16_t i = 0; i < design_.labels; ++i) labels_.push_back(&Add<Label>("lblWCat", i));
    strip.OnOk = [this] {
        UpdateData(true);
        onOk_ = true;
        Hide();
    };
    auto cancel = [this] {
        onOk_ = false;
        Hide();
    };
    strip.OnCancel = cancel;
    EnterTabsEscapeCancels(cancel);
}

bool WindCategoryForm::WCat_Enabled(int16_t index) const {
    if (index < 0 || index >= OptionCount()) return false;
    return Option(index).Enabled();
}

void WindCategoryForm::WCat_Enabled(int16_t index, bool v) {
    if (index < 0 || index >= OptionCount()) return;
    Option(index).Enabled(v);
}

void WindCategoryForm::UpdateData(bool save, const std::string&) {
    const int16_t offset = design_.valueIsIndex ? 0 : 1;
    if (save) {
        for (int16_t i = 0; i < OptionCount(); ++i)
            if (Option(i).Value()) value_ = static_cast<int16_t>(i + offset);
    } else {
        const int32_t index = static_cast<int32_t>(value_) - offset;
        if (index >= 0 && index < OptionCount()) Option(static_cast<int16_t>(index)).Value(true);
    }
}

void WindCategoryForm::Localize() {
    try {
        Caption(T(design_.captionText) + design_.captionSuffix);
        for (int16_t i = 0; i < OptionCount(); ++i) {
            const std::string text = T(design_.firstOptionText + i);
            Option(i).Caption(design_.englishWords.empty()
                                  ? text
                                  : design_.englishWords[static_cast<size_t>(i)] + "\n(" + text + ")");
        }
        for (size_t i = 0; i < labels_.size(); ++i)
            labels_[i]->Caption(T(design_.firstLabelText + static_cast<int32_t>(i)));
        Get<QVButtons>("QVButtons1").Localize();
    } catch (const RuntimeError&) {
        // A missing text leaves the designed one.
    }
}

frmWindCategory100::frmWindCategory100()
    : WindCategoryForm({"frmWindCategory100", "Gel\xC3\xA4ndekategorien nach DIN 1055-4, Anh. B", 291, "", 6, 292, 298,
                        4, false, {}}) {}

frmWindCategory100_WithoutGrf::frmWindCategory100_WithoutGrf()
    : WindCategoryForm({"frmWindCategory100_WithoutGrf", "Gel\xC3\xA4ndekategorien nach DIN 1055-4, Anh. B", 274, "",
                        6, 275, 281, 4, false, {}}) {}

frmWindCategoryEN::frmWindCategoryEN()
    : WindCategoryForm({"frmWindCategoryEN", "Gel\xC3\xA4ndekategorien nach EN 1991-1-4", 500, "", 5, 501, 506, 5,
                        true, {}}) {}

frmWindCategoryEN_BS::frmWindCategoryEN_BS()
    : WindCategoryForm({"frmWindCategoryEN_BS", "Gel\xC3\xA4ndekategorien nach EN 1991-1-4", 608,
                        " BS to EN 1991-1-4:2005", 5, 501, 506, 5, true,
                        {"sea", "country", "country", "town", "town"}}) {}

// --- orography ---

frmOrographic::frmOrographic() {
    Caption("Orografischer Faktor");
    Add<Image>("ucOrographic1");
    auto& strip = Add<QVButtons>("QVButtons1");
    phi_ = &Add<QVTextBox>("txtOro", 0);
    s_ = &Add<QVTextBox>("txtOro", 1);
    strip.OnOk = [this] {
        UpdateData(true);
        onOk_ = true;
        Hide();
    };
    auto cancel = [this] {
        onOk_ = false;
        Hide();
    };
    strip.OnCancel = cancel;
    EnterTabsEscapeCancels(cancel);
}

void frmOrographic::UpdateData(bool save, const std::string&) {
    if (save) {
        gPhi = phi_->Text().toDouble();
        sFac = s_->Text().toDouble();
    } else {
        phi_->Text(Variant(gPhi));
        s_->Text(Variant(sFac));
    }
}

void frmOrographic::Localize() {
    try {
        Caption(T(580));
        for (int16_t i = 0; i < 2; ++i) {
            QVTextBox& box = txtOro(i);
            box.Caption(T(569 + 3 * i));
            box.Dimension(T(570 + 3 * i));
            box.Remark(T(571 + 3 * i));
        }
        Get<QVButtons>("QVButtons1").Localize();
    } catch (const RuntimeError&) {
        // A missing text leaves the designed one.
    }
}

}  // namespace qvrl
