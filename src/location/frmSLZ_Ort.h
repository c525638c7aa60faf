#pragma once
// The snow load zone of a municipality, found by state, county and name:
// frmSLZ_Ort_1 in the DIBt list, frmSLZ_Ort in that of T 3093.

#include "location/ZoneTownForm.h"

namespace qvrl {

class frmSLZ_Ort_1 : public ZoneTownForm {
public:
    frmSLZ_Ort_1();
    std::string FormName() const override { return "frmSLZ_Ort_1"; }
    int16_t SLZ() const { return code_; }
    void SLZ(int16_t v) { code_ = v; }
    const std::string& GemeindeSZ() const { return GemeindeZone(); }
};

class frmSLZ_Ort : public ZoneTownForm {
public:
    frmSLZ_Ort();
    std::string FormName() const override { return "frmSLZ_Ort"; }
    int16_t SLZ() const { return code_; }
    void SLZ(int16_t v) { code_ = v; }
    const std::string& GemeindeSZ() const { return GemeindeZone(); }
};

}  // namespace qvrl
