#pragma once
// The progress window of long database work: a main and a sub bar with
// their labels. It has no buttons; the work closes it.

#include <cstdint>
#include <string>

#include "controls/Form.h"

namespace qvrl {

class frmWartenProgress : public Form {
public:
    frmWartenProgress();
    std::string FormName() const override { return "frmWartenProgress"; }
    void Localize() override;

    // The window's caption.
    std::string LabelText() const { return Caption(); }
    void LabelText(const std::string& v) { Caption(v); }
    std::string InfoText() const { return info_->Caption(); }
    void InfoText(const std::string& v) { info_->Caption(v); }
    std::string Info2Text() const { return info2_->Caption(); }
    void Info2Text(const std::string& v) { info2_->Caption(v); }

    float MinValueSub() const { return bar2_->Min(); }
    void MinValueSub(float v) { bar2_->Min(v); }
    float MaxValueSub() const { return maxSub_; }
    void MaxValueSub(float v);
    float ValueSub() const { return valueSub_; }
    void ValueSub(float v);
    float MinValueMain() const { return bar1_->Min(); }
    void MinValueMain(float v) { bar1_->Min(v); }
    float MaxValueMain() const { return maxMain_; }
    void MaxValueMain(float v);
    float ValueMain() const { return valueMain_; }
    void ValueMain(float v);
    bool DetailProgressInfo = false;

private:
    void Progress(float v, float storedMax, ProgressBar& bar, Label& percent, Label& position);
    Label* info_;
    Label* info2_;
    ProgressBar* bar1_;
    Label* lblProgress1_;
    Label* lblPosProg1_;
    ProgressBar* bar2_;
    Label* lblProgress2_;
    Label* lblPosProg2_;
    float maxSub_ = 100.0f, maxMain_ = 100.0f;
    float valueSub_ = 0.0f, valueMain_ = 0.0f;
};

// A single-precision number as Basic writes it: up to seven significant digits.
std::string SingleToText(float v);

}  // namespace qvrl
