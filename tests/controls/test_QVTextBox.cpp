#include <gtest/gtest.h>

#include <memory>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "controls/Form.h"
#include "controls/QVTextBox.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/Platform.h"

using namespace qvrl;

namespace {

class QVTextBoxTest : public test::IsolatedTest {
protected:
    // Texts come from the language files, as in a session of CRoofLoad.
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
    }
    HeadlessPlatform& headless() { return static_cast<HeadlessPlatform&>(CurrentPlatform()); }
};

std::unique_ptr<QVTextBox> Box(int16_t style, const std::string& text) {
    auto b = std::make_unique<QVTextBox>("txt");
    b->Style(style);
    b->EditText(text);
    return b;
}

TEST_F(QVTextBoxTest, StyleSetsItsFormat) {
    const std::pair<int16_t, const char*> rows[] = {
        {0, "&"}, {1, "&"}, {2, "0"}, {3, "0.00"}, {4, "dd.mm.yyyy"}, {5, "&"}, {6, "."}, {9, "&"}};
    for (const auto& [style, format] : rows) {
        QVTextBox b("t");
        b.FormatString("#");
        b.Style(style);
        EXPECT_EQ(b.FormatString(), format) << style;
    }
    EXPECT_EQ(QVTextBox("t").FormatString(), "0.00");  // Style 3 by default
}

TEST_F(QVTextBoxTest, DimFacScalesBetweenStoredAndShown) {
    QVTextBox b("t");
    b.DimFac = 100;
    b.Text(Variant(1.5));
    EXPECT_EQ(b.EditText(), "150.00");
    EXPECT_EQ(b.Text(), Variant(1.5));  // 150 * (1/100), multiplied as written
    EXPECT_EQ(b.ReadValue(3), Variant(150.0));
    EXPECT_EQ(b.ReadValue(1), Variant("150.00"));
    EXPECT_EQ(b.ReadValue(0), Variant("15000.00"));
    b.DimFac = 0;
    EXPECT_EQ(test::ErrorOf([&] { b.Text(); }), 11);
}

TEST_F(QVTextBoxTest, OnlyTheFirstCommaOrDecimalCharacterIsThePoint) {
    struct Row {
        char decimal;
        const char* text;
        double value;
        const char* normal;
    };
    const Row rows[] = {
        {'.', "1,5", 1.5, "1.50"},   {'.', "1.5", 1.5, "1.50"},     {',', "1,5", 1.5, "1,50"},
        {',', "1.5", 1.5, "1,50"},   {'.', "1,5,7", 1.5, "1.50"},   {'.', "abc", 0.0, "0.00"},
        {'.', "-2,25x", -2.25, "-2.25"}, {'.', "1e999", 0.0, "0.00"}};
    for (const auto& r : rows) {
        auto bp = Box(3, r.text);
        QVTextBox& b = *bp;
        b.DecimalChar(r.decimal);
        EXPECT_EQ(b.ReadValue(2), Variant(r.value)) << r.text;
        EXPECT_EQ(b.ReadValue(1), Variant(r.normal)) << r.text;
    }
    State().DecimalChar = ',';
    EXPECT_EQ(QVTextBox("t").DecimalChar(), ',');
}

TEST_F(QVTextBoxTest, WholeNumbersRoundAndOverflowOnce) {
    auto bp = Box(2, "2,5");
        QVTextBox& b = *bp;
    EXPECT_EQ(b.ReadValue(2), Variant(int32_t{2}));  // half to even
    b.EditText("99999999999");
    EXPECT_EQ(b.ReadValue(2), Variant(int32_t{2147483647}));
    EXPECT_TRUE(b.Validate());
    EXPECT_EQ(b.EditText(), "2147483647");
    EXPECT_TRUE(b.Validate());
    ASSERT_EQ(headless().Messages().size(), 1u);
    EXPECT_EQ(headless().Messages()[0].text, "Maximaler darstellbarer Wert < 2147483647 > überschritten !");
    b.EditText("-99999999999");  // the sign is lost
    EXPECT_EQ(b.ReadValue(2), Variant(int32_t{2147483647}));
}

TEST_F(QVTextBoxTest, ValidateEnforcesLimits) {
    struct Row {
        int16_t style;
        bool minCheck, maxCheck;
        double min, max;
        const char* text;
        bool result;
        const char* after;
    };
    const Row rows[] = {
        {3, true, false, 1, 9999, "0", false, "1.00"},
        {3, true, false, 1, 9999, "1", true, "1.00"},
        {3, false, true, 0, 10, "10,01", false, "10.00"},
        {3, false, true, 0, 10, "10", true, "10.00"},
        {2, true, true, -5, 5, "-6", false, "-5"},
        {1, false, true, 0, 3, "abcd", false, "abc"},
        {1, false, true, 0, 3, "abc", true, "abc"},
        {1, false, true, 0, -1, "ab", false, ""},
        {1, false, true, 0, 2, "äöü", false, "äö"},  // characters, not bytes
        {6, true, false, 2, 9, "a", false, "a"},
        {1, false, false, 0, 3, "abcd", true, "abcd"},
    };
    for (const auto& r : rows) {
        auto bp = Box(r.style, r.text);
        QVTextBox& b = *bp;
        b.MinCheck = r.minCheck;
        b.MaxCheck = r.maxCheck;
        b.Min = r.min;
        b.Max = r.max;
        EXPECT_EQ(b.Validate(), r.result) << r.text;
        EXPECT_EQ(b.EditText(), r.after) << r.text;
        EXPECT_EQ(State().QVTextBoxError, !r.result) << r.text;
    }
}

TEST_F(QVTextBoxTest, ChangedFollowsTheCommitAndTheBadValue) {
    QVTextBox b("txtA");
    b.Text(Variant(2.0));
    EXPECT_FALSE(b.Changed());
    b.EditText("3");
    EXPECT_TRUE(b.Changed());
    bool inEvent = false;
    std::string noted;
    b.ValidateEvent = [&](bool&) {
        inEvent = b.Changed();
        noted = State().QVTextBoxValidateName;
    };
    EXPECT_TRUE(b.Validate());
    EXPECT_TRUE(inEvent);
    EXPECT_EQ(noted, "txtA");
    EXPECT_FALSE(b.Changed());
    EXPECT_EQ(State().QVTextBoxValidateName, "");
    // The host refuses: the commit is not taken, the change stays.
    b.EditText("4");
    b.ValidateEvent = [](bool& ok) { ok = false; };
    EXPECT_FALSE(b.Validate());
    EXPECT_TRUE(b.Changed());
    EXPECT_EQ(State().QVTextBoxValidateName, "txtA");
    // A text that shows the bad value counts as changed even when committed.
    b.ValidateEvent = std::function<void(bool&)>();
    EXPECT_EQ(b.Properties("BadValue"), Variant(999.0));
    b.Properties("badvalue", Variant(4.0));
    EXPECT_TRUE(b.Validate());
    EXPECT_EQ(b.EditText(), "4.00");
    EXPECT_TRUE(b.Changed());
    b.Properties("BadValue", Variant(999.0));
    EXPECT_FALSE(b.Changed());
}

TEST_F(QVTextBoxTest, OneValidationAtATimeForAllBoxes) {
    QVTextBox a("a"), b("b");
    b.MinCheck = true;
    b.Min = 5;
    bool nested = false;
    a.ValidateEvent = [&](bool&) { nested = b.Validate(); };
    b.EditText("1");
    EXPECT_TRUE(a.Validate());
    EXPECT_TRUE(nested);
    EXPECT_EQ(b.EditText(), "1");  // the nested call did nothing
    EXPECT_FALSE(State().QVTextBoxValidating);
    EXPECT_FALSE(b.Validate());
}

TEST_F(QVTextBoxTest, KeyRules) {
    struct Row {
        int16_t style;
        bool maxCheck;
        const char* start;
        const char* typed;
        const char* result;
    };
    const Row rows[] = {
        // Style 1 with MaxCheck: the eleventh key of Max 10 is refused.
        {1, true, "", "abcdefghijk", "abcdefghij"},
        {1, false, "", "abcdefghijkl", "abcdefghijkl"},
        // Numbers: digits, "," "." "-" and backspace only; one "-" in a whole number.
        {3, false, "", "1a2.b5", "12.5"},
        {2, false, "", "-1-2", "-12"},
        {3, false, "", "-1-2", "-1-2"},
        // Ten characters at most by typing, backspace included.
        {3, false, "", "123456789012", "1234567890"},
        {3, false, "1234567890", "\b", "1234567890"},
        {3, false, "123", "\b\b9", "19"},
        {0, false, "", "12345678901", "1234567890"},
        {6, false, "", "12345678901", "12345678901"},
    };
    for (const auto& r : rows) {
        auto bp = Box(r.style, r.start);
        QVTextBox& b = *bp;
        b.MaxCheck = r.maxCheck;
        b.Max = 10;
        b.EditWidth(100000);
        b.TypeText(r.typed);
        EXPECT_EQ(b.EditText(), r.result) << r.typed;
    }
}

TEST_F(QVTextBoxTest, KeyDroppedWhenItWouldNotFitTheEdit) {
    // The headless font is 105 twips a character: two new ones and the text
    // must fit the 855 twips of the edit.
    QVTextBox b("t");
    b.TypeText("123456789");
    EXPECT_EQ(b.EditText(), "1234567");
    b.SelectAll();  // a selection skips the width test
    b.TypeText("9");
    EXPECT_EQ(b.EditText(), "9");
}

TEST_F(QVTextBoxTest, TypingRaisesKeyDownPressChangeUpAndReturnRaisesReturnKey) {
    QVTextBox b("t");
    std::vector<std::string> events;
    b.KeyPress = [&](int16_t& k) {
        events.push_back("key " + std::to_string(k));
        if (k == '5') k = 0;
    };
    b.Change = [&] { events.push_back("change " + b.EditText()); };
    b.KeyDown = [&](int16_t& k, int16_t) { events.push_back("down " + std::to_string(k)); };
    b.KeyUp = [&](int16_t& k, int16_t) { events.push_back("up " + std::to_string(k)); };
    b.QVReturnKey = [&] { events.push_back("return"); };
    b.TypeText("45\r");
    EXPECT_EQ(events, (std::vector<std::string>{"down 52", "key 52", "change 4", "up 52", "down 53", "key 53", "up 53",
                                                "down 13", "return", "up 13"}));
}

TEST_F(QVTextBoxTest, ArrowKeysStepWithinTheLimits) {
    struct Row {
        int16_t style;
        double increment;
        bool maxCheck;
        const char* start;
        int16_t key;
        const char* after;
    };
    const Row rows[] = {
        {3, 0.5, false, "1", key::Up, "1.50"},   {3, 0.5, false, "1", key::Down, "0.50"},
        {3, 0.5, true, "9.75", key::Up, "9.75"},  {3, 0.5, true, "9.5", key::Up, "10.00"},
        {2, 1, false, "7", key::Down, "6"},        {3, 0, false, "1", key::Up, "1"},
        {1, 1, false, "1", key::Up, "1"},
    };
    for (const auto& r : rows) {
        auto bp = Box(r.style, r.start);
        QVTextBox& b = *bp;
        b.Increment = r.increment;
        b.MaxCheck = r.maxCheck;
        b.Max = 10;
        int validated = 0;
        b.ValidateEvent = [&](bool&) { ++validated; };
        b.SendKey(r.key);
        EXPECT_EQ(b.EditText(), r.after) << r.start;
    }
    auto bp = Box(3, "0.5");
        QVTextBox& b = *bp;
    b.MinCheck = true;
    EXPECT_FALSE(b.CanDecrement());
    EXPECT_TRUE(b.CanIncrement());
}

TEST_F(QVTextBoxTest, AutomaticValueWarnsInTheDimensionLabel) {
    QVTextBox b("t");
    b.Dimension("kN/m²");
    b.AutoUpdateEnabled = true;
    b.Text(Variant(2.0));  // a number is less than a text: the warning shows
    EXPECT_EQ(b.AutoUpdateValue, Variant(2.0));
    EXPECT_TRUE(b.AutoUpdateWarning());
    EXPECT_EQ(b.DimensionShown(), "!");
    EXPECT_TRUE(b.DimensionBold());
    EXPECT_EQ(b.DimensionColour(), 255u);
    b.AutoUpdateWarning(false);
    EXPECT_EQ(b.DimensionShown(), "kN/m²");
    EXPECT_FALSE(b.DimensionBold());
    EXPECT_EQ(b.DimensionColour(), 0x80000012u);
    b.ChooseMenu("mnuAutomaticOn");
    EXPECT_TRUE(b.AutoUpdateActive());
    b.Text(Variant(3.0));  // in force: the automatic value is left alone
    EXPECT_EQ(b.AutoUpdateValue, Variant(2.0));
    const auto menu = b.ContextMenu();
    ASSERT_EQ(menu.size(), 2u);
    EXPECT_EQ(menu[0].caption, "Automatischer Wert");
    EXPECT_TRUE(menu[0].checked);
    EXPECT_EQ(test::ErrorOf([&] { b.ChooseMenu("mnuOther"); }), 5);
    EXPECT_TRUE(VariantLess(Variant("a"), Variant("b")));
    EXPECT_FALSE(VariantLess(Variant("1"), Variant(2.0)));
}

TEST_F(QVTextBoxTest, DatesAndTexts) {
    QVTextBox d("d");
    d.Style(4);
    d.Text(Variant(DateFromParts(2024, 2, 29)));
    EXPECT_EQ(d.EditText(), "29.02.2024");
    EXPECT_EQ(d.Text(), Variant(DateFromParts(2024, 2, 29)));
    d.EditText("kein Datum");
    EXPECT_EQ(d.Text(), Variant("kein Datum"));
    QVTextBox t("t");
    t.Style(1);
    t.DimFac = 0;  // a text needs no factor, but the reader takes it first
    t.Text(Variant("frei, Text"));
    EXPECT_EQ(t.EditText(), "frei, Text");
    t.Text(Variant("12"));
    EXPECT_EQ(t.EditText(), "12");
    t.Style(6);  // "." formats a text that is a number, and leaves any other
    t.Text(Variant("12"));
    EXPECT_EQ(t.EditText(), "12.");
    t.Text(Variant("1 2a"));
    EXPECT_EQ(t.EditText(), "1 2a");
}

TEST_F(QVTextBoxTest, SchemaArrangesTheParts) {
    QVTextBox b("t");
    b.Schema(2);
    EXPECT_TRUE(b.VisibleRemark());
    EXPECT_EQ(b.WidthRemark(), 1400);
    EXPECT_EQ(b.WidthCaption(), 705);
    EXPECT_EQ(b.EditWidth(), 855);
    b.WidthRemark(2000);  // only UserDef admits it; at run time silently
    EXPECT_EQ(b.WidthRemark(), 1400);
    EXPECT_TRUE(headless().Messages().empty());
    b.UserMode = false;
    b.AutosizeCaption(true);
    EXPECT_FALSE(b.AutosizeCaption());
    ASSERT_EQ(headless().Messages().size(), 1u);
    EXPECT_EQ(headless().Messages()[0].text, "You must change the Schema to UserDef !");
    b.Schema(3);
    EXPECT_FALSE(b.VisibleRemark());
    EXPECT_TRUE(b.VisibleCaption());
    b.Schema(4);
    EXPECT_FALSE(b.VisibleCaption() || b.VisibleEq() || b.VisibleDimension());
    EXPECT_EQ(b.PropertyChanges().size(), 27u);
    b.Schema(QVTextBox::UserDef);
    b.WidthRemark(2000);
    EXPECT_EQ(b.WidthRemark(), 2000);
    b.VisibleCaption(true);
    b.Caption("-");
    EXPECT_FALSE(b.VisibleCaption());
    b.Schema(2);
    b.Remark("");
    EXPECT_TRUE(b.VisibleRemark());
}

TEST_F(QVTextBoxTest, PropertiesWrittenAndReadBack) {
    QVTextBox a("a");
    a.Schema(QVTextBox::UserDef);
    a.Style(2);
    a.FormatString("000");
    a.DimFac = 0.001;
    a.Min = -3;
    a.MaxCheck = true;
    a.WidthCaption(900);
    a.Caption("h");
    a.Dimension("m");
    a.AutoUpdateEnabled = true;
    a.BackColor(0x00FF00FF);
    a.FontName = "Arial";
    PropertyBag bag;
    a.WriteProperties(bag);
    EXPECT_FALSE(bag.Contains("Increment"));  // defaults are not kept
    QVTextBox b("b");
    b.ReadProperties(bag);
    PropertyBag again;
    b.WriteProperties(again);
    EXPECT_EQ(again.Entries(), bag.Entries());
    EXPECT_EQ(b.FormatString(), "000");
    EXPECT_EQ(b.DimFac, 0.001);
    EXPECT_EQ(b.WidthCaption(), 900);
    EXPECT_EQ(b.BackColor(), 0x00FF00FFu);
    // Nothing stored: every property takes its default.
    QVTextBox c("c");
    c.ReadProperties(PropertyBag{});
    EXPECT_EQ(c.Style(), 3);
    EXPECT_EQ(c.FormatString(), "0.00");
    EXPECT_EQ(c.Max, 9999.0);
    EXPECT_EQ(c.WidthRemark(), 1440);
    EXPECT_EQ(c.BackColor(), 0x80000005u);
}

}  // namespace
