#include "maps/MapDialogs.h"

#include "location/modWLZMdb.h"
#include "maps/MapForms.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

// The dialog goes when the call ends, also by an error.
struct UnloadAtEnd {
    Form& form;
    ~UnloadAtEnd() { form.Unload(); }
};

template <class F>
int16_t RunZoneMap(F& form, int16_t& value) {
    UnloadAtEnd end{form};
    form.Load();
    form.Value(value);
    form.UpdateData(false);
    form.Show();
    if (!form.OnOkButton()) return -1;
    form.UpdateData(true);
    value = form.Value();
    return value;
}

template <class F>
int16_t RunCategory(F& form, int16_t& WCat) {
    UnloadAtEnd end{form};
    form.Load();
    form.WCat(WCat);
    form.UpdateData(false);
    form.Show();
    if (!form.OnOkButton()) return -1;
    WCat = form.WCat();
    return WCat;
}

}  // namespace

int16_t SnowZoneByMap1975(int16_t& zone) {
    frmSLZ f;
    return RunZoneMap(f, zone);
}

int16_t SnowZoneByMap2005(int16_t& zone) {
    frmSLZ_1 f;
    return RunZoneMap(f, zone);
}

int16_t WindZoneByMap2005(int16_t& zone) {
    SetWlzNorm(norm::DIN2005);
    frmWZ_1 f;
    return RunZoneMap(f, zone);
}

int16_t WindZoneByMap2005_T2963(int16_t& zone) {
    SetWlzNorm(norm::DIN2005_T2963);
    frmWZ_2 f;
    return RunZoneMap(f, zone);
}

int16_t WindCategoryByView2005(int16_t& WCat) {
    frmWindCategory100_WithoutGrf f;
    return RunCategory(f, WCat);
}

int16_t WindCategoryByView100(int16_t& WCat) {
    frmWindCategory100 f;
    return RunCategory(f, WCat);
}

int16_t WindCategoryByView_EN(int16_t CtrlNA, int16_t& WCat, const bool* enabled, int16_t enabledCount) {
    auto run = [&](WindCategoryForm& f) {
        f.Load();
        for (int16_t i = 0; enabled && i < enabledCount; ++i) f.WCat_Enabled(i, enabled[i]);
        return RunCategory(f, WCat);
    };
    if (CtrlNA == norm::UK) {
        frmWindCategoryEN_BS f;
        return run(f);
    }
    frmWindCategoryEN f;
    return run(f);
}

bool OrographyByView(double& gPhi, double& sFac) {
    frmOrographic f;
    UnloadAtEnd end{f};
    f.Load();
    f.gPhi = gPhi;
    f.sFac = sFac;
    f.UpdateData(false);
    f.Show();
    if (!f.OnOkButton()) return false;
    gPhi = f.gPhi;
    sFac = f.sFac;
    return true;
}

int16_t SnowZoneByMapEN(int16_t CtrlNA, int16_t CtrlRegion, int16_t& zone) {
    if (CtrlNA == norm::AT || CtrlNA == norm::UK) {
        CurrentPlatform().MsgBox(LoadResStr(Variant(int32_t{532})), 0, LoadResStr(Variant(int32_t{11})));
        return -1;
    }
    frmEN_SZ f(CtrlRegion);
    UnloadAtEnd end{f};
    f.Load();
    f.SZ(zone);
    f.UpdateData(false);
    f.Show();
    if (!f.OnOkButton()) return -1;
    f.UpdateData(true);
    zone = f.SZ();
    return zone;
}

int16_t ClimateRegionByMap(int16_t& CR) {
    frmClimaEN f;
    return RunZoneMap(f, CR);
}

}  // namespace qvrl
