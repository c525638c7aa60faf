// The catalogue grid: styles by flags, rows that refuse the cursor, and the
// row heights a long text asks for.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ErrorOf.h"
#include "controls/Form.h"
#include "controls/QVGridX.h"

using namespace qvrl;

namespace {

TEST(QVGridX, StylesAndSelectionByFlags) {
    struct Case {
        int32_t flags;
        std::vector<std::string> styles;
        bool selectable;
    };
    const Case cases[] = {
        {0, {"_default"}, true},
        {gridflag::SepTop, {"_SepTop"}, true},
        {gridflag::Heading, {"_SepKat", "_KatHighlight", "_RowDisabled"}, false},
        {gridflag::RowDisabled, {"_RowDisabled"}, false},
        {gridflag::SepKat | gridflag::SepTop | gridflag::KatHighlight, {"_SepKat", "_SepTop", "_KatHighlight"}, true},
    };
    QVGridX g("gridSel");
    int32_t clicks = 0;
    g.ItemClick = [&](int32_t) { ++clicks; };
    g.AddGridRow({"start"}, 0);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        g.AddGridRow({"row"}, c.flags);
        const int32_t row = g.RowCount() - 1;
        EXPECT_EQ(g.RowStyles(row), c.styles);
        g.SelectedRow(0);
        const int32_t before = clicks;
        g.SelectedRow(row);
        EXPECT_EQ(g.SelectedRow(), c.selectable ? row : 0);
        EXPECT_EQ(clicks - before, c.selectable ? 1 : 0);
    }
    // Outside the rows it is the list's error, disabled or not.
    EXPECT_EQ(test::ErrorOf([&] { g.SelectedRow(g.RowCount()); }), err::InvalidPropertyValue);
    EXPECT_EQ(test::ErrorOf([&] { g.RowFlags(-1); }), err::InvalidPropertyArrayIndex);
    // Clear drops the flags with the rows.
    g.Clear();
    g.AddRow({"plain"});
    EXPECT_EQ(g.RowFlags(0), 0);
    EXPECT_TRUE(g.RowSelectable(0));
}

// A text up to one line width keeps the default height; each started line
// beyond it adds LineHeight, the first line counted too.
TEST(QVGridX, RowHeightByTextWidth) {
    struct Case {
        int32_t twips;
        int32_t lines, height;
    };
    const Case cases[] = {{0, 1, 0}, {4399, 1, 0}, {4400, 2, 30}, {8799, 2, 30}, {8800, 3, 45}};
    QVGridX g("gridSel");
    g.AddGridRow({"x"}, 0);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.twips);
        EXPECT_EQ(QVGridX::LinesOf(c.twips), c.lines);
        g.FitRowHeight(0, c.twips);
        EXPECT_EQ(g.RowHeight(0), c.height);
    }
}

}  // namespace
