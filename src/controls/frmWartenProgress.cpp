#include "controls/frmWartenProgress.h"

#include <cmath>
#include <cstdio>

#include "rules/modMath.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl {

std::string SingleToText(float v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.7G", static_cast<double>(v));
    return buf;
}

frmWartenProgress::frmWartenProgress() {
    Caption("processing...");
    info_ = &Add<Label>("Info");
    info_->Caption("Bitte warten Sie ...");
    info2_ = &Add<Label>("Info2");
    info2_->Caption("Info Zeile");
    bar1_ = &Add<ProgressBar>("ProgressBar1");
    lblProgress1_ = &Add<Label>("lblProgress1");
    lblPosProg1_ = &Add<Label>("lblPosProg1");
    bar2_ = &Add<ProgressBar>("ProgressBar2");
    lblProgress2_ = &Add<Label>("lblProgress2");
    lblPosProg2_ = &Add<Label>("lblPosProg2");
    Add<Image>("Image");
}

void frmWartenProgress::Localize() {
    Caption(LoadResStr(Variant(int32_t{9602})));
    info_->Caption(LoadResStr(Variant(int32_t{9603})));
    info2_->Caption(LoadResStr(Variant(int32_t{9604})));
    platform().DoEvents();
}

void frmWartenProgress::MaxValueSub(float v) {
    maxSub_ = v;
    bar2_->Max(v);
}

void frmWartenProgress::MaxValueMain(float v) {
    maxMain_ = v;
    bar1_->Max(v);
}

void frmWartenProgress::ValueSub(float v) {
    valueSub_ = v;
    Progress(v, maxSub_, *bar2_, *lblProgress2_, *lblPosProg2_);
}

void frmWartenProgress::ValueMain(float v) {
    valueMain_ = v;
    Progress(v, maxMain_, *bar1_, *lblProgress1_, *lblPosProg1_);
}

void frmWartenProgress::Progress(float v, float storedMax, ProgressBar& bar, Label& percent, Label& position) {
    if (!(v > bar.Max())) bar.Value(v);
    if (DetailProgressInfo) {
        // Single precision throughout, as the stored values are.
        const float share = 100.0f * v / storedMax;
        if (!std::isfinite(share)) Raise(v == 0.0f ? err::Overflow : err::DivisionByZero, FormName());
        int16_t width = 0, decimals = 0;
        percent.Caption(NumberToFixedText(Variant(static_cast<double>(share)), width, decimals) + " %");
        position.Caption(SingleToText(v) + " / " + SingleToText(storedMax));
    } else {
        percent.Caption(" ");
        position.Caption(" ");
    }
    platform().DoEvents();
}

}  // namespace qvrl
