#pragma once
// The wind load zone of a municipality, found by state, region, county and
// name: frmWLZ_Ort_1 in the DIBt list, frmWLZ_Ort in that of T 2963.

#include "location/ZoneTownForm.h"

namespace qvrl {

class frmWLZ_Ort_1 : public ZoneTownForm {
public:
    frmWLZ_Ort_1();
    std::string FormName() const override { return "frmWLZ_Ort_1"; }
    int16_t WLZ() const { return code_; }
    void WLZ(int16_t v) { code_ = v; }
    const std::string& GemeindeWZ() const { return GemeindeZone(); }
};

class frmWLZ_Ort : public ZoneTownForm {
public:
    frmWLZ_Ort();
    std::string FormName() const override { return "frmWLZ_Ort"; }
    int16_t WLZ() const { return code_; }
    void WLZ(int16_t v) { code_ = v; }
    const std::string& GemeindeWZ() const { return GemeindeZone(); }
};

}  // namespace qvrl
