#pragma once
// The grid of the catalogue dialogs: a list of rows whose flags give each
// row its style. A disabled row cannot be selected, so a heading between the
// groups never becomes the user's choice.

#include <cstdint>
#include <string>
#include <vector>

#include "controls/Control.h"

namespace qvrl {

namespace gridflag {
inline constexpr int32_t SepKat = 1;        // "_SepKat": separates categories
inline constexpr int32_t SepTop = 2;        // "_SepTop": a line above the row
inline constexpr int32_t KatHighlight = 4;  // "_KatHighlight"
inline constexpr int32_t RowDisabled = 8;   // "_RowDisabled": not selectable
// A category heading: a highlighted, disabled separator.
inline constexpr int32_t Heading = SepKat | KatHighlight | RowDisabled;
}  // namespace gridflag

class QVGridX : public ListView {
public:
    using ListView::ListView;

    // Twips of one line of text in a row: a wider text takes more lines.
    static constexpr int32_t LineWidth = 4400;
    // Height units a line, once a row has more than one.
    static constexpr int32_t LineHeight = 15;

    void AddGridRow(std::vector<std::string> cells, int32_t flags);
    void Clear();
    int32_t RowFlags(int32_t row) const;
    // The style names of the row's flags in flag order; "_default" for none.
    std::vector<std::string> RowStyles(int32_t row) const;
    bool RowSelectable(int32_t row) const override { return (RowFlags(row) & gridflag::RowDisabled) == 0; }

    // Lines a text of that width in twips takes.
    static int32_t LinesOf(int32_t textWidthTwips) { return textWidthTwips / LineWidth + 1; }
    // Sizes the row for a text of that width: 0 keeps the default height,
    // more than one line gives LineHeight a line.
    void FitRowHeight(int32_t row, int32_t textWidthTwips);
    int32_t RowHeight(int32_t row) const;

private:
    std::vector<int32_t> flags_;
    std::vector<int32_t> heights_;
};

}  // namespace qvrl
