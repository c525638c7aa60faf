#include "controls/QVGridX.h"

namespace qvrl {

void QVGridX::AddGridRow(std::vector<std::string> cells, int32_t flags) {
    flags_.push_back(flags);
    heights_.push_back(0);
    AddRow(std::move(cells));
}

void QVGridX::Clear() {
    flags_.clear();
    heights_.clear();
    ListView::Clear();
}

int32_t QVGridX::RowFlags(int32_t row) const {
    Row(row);  // error 381 outside
    // A row added as a plain list row has no flags.
    return static_cast<size_t>(row) < flags_.size() ? flags_[static_cast<size_t>(row)] : 0;
}

std::vector<std::string> QVGridX::RowStyles(int32_t row) const {
    static const std::pair<int32_t, const char*> kStyles[] = {{gridflag::SepKat, "_SepKat"},
                                                               {gridflag::SepTop, "_SepTop"},
                                                               {gridflag::KatHighlight, "_KatHighlight"},
                                                               {gridflag::RowDisabled, "_RowDisabled"}};
    const int32_t f = RowFlags(row);
    std::vector<std::string> names;
    for (const auto& [flag, name] : kStyles)
        if (f & flag) names.emplace_back(name);
    if (names.empty()) names.emplace_back("_default");
    return names;
}

void QVGridX::FitRowHeight(int32_t row, int32_t textWidthTwips) {
    Row(row);
    if (static_cast<size_t>(row) >= heights_.size()) heights_.resize(static_cast<size_t>(row) + 1, 0);
    const int32_t lines = LinesOf(textWidthTwips);
    Set(heights_[static_cast<size_t>(row)], lines > 1 ? lines * LineHeight : 0);
}

int32_t QVGridX::RowHeight(int32_t row) const {
    Row(row);
    return static_cast<size_t>(row) < heights_.size() ? heights_[static_cast<size_t>(row)] : 0;
}

}  // namespace qvrl
