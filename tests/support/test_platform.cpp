#include <gtest/gtest.h>

#include "support/ModuleState.h"
#include "support/Platform.h"

using namespace qvrl;

namespace {

struct DummyForm : FormBase {
    std::string FormName() const override { return "frmDummy"; }
    bool accepted = false;
};

TEST(HeadlessPlatform, RecordsMessagesAndAnswersInOrder) {
    HeadlessPlatform p;
    EXPECT_EQ(p.MsgBox("a", mb::OKOnly, "t"), mb::OK);
    EXPECT_EQ(p.MsgBox("b", mb::YesNo | mb::Question, "t"), mb::Yes);
    EXPECT_EQ(p.MsgBox("c", mb::RetryCancel, "t"), mb::Retry);
    EXPECT_EQ(p.MsgBox("d", mb::AbortRetryIgnore | mb::Critical, "t"), mb::Abort);
    p.QueueAnswer(mb::No);
    p.QueueAnswer(mb::Cancel);
    EXPECT_EQ(p.MsgBox("e", mb::YesNo, "t1"), mb::No);
    EXPECT_EQ(p.MsgBox("f", mb::OKCancel, "t2"), mb::Cancel);
    EXPECT_EQ(p.MsgBox("g", mb::OKCancel, "t3"), mb::OK);
    ASSERT_EQ(p.Messages().size(), 7u);
    EXPECT_EQ(p.Messages()[4].text, "e");
    EXPECT_EQ(p.Messages()[4].flags, mb::YesNo);
    EXPECT_EQ(p.Messages()[5].title, "t2");
}

TEST(HeadlessPlatform, ShowsFormsThroughTheirHandler) {
    HeadlessPlatform p;
    DummyForm f;
    p.ShowModal(f);  // no handler: shown and left as it was
    EXPECT_FALSE(f.accepted);
    p.OnShow("frmDummy", [](FormBase& form) { static_cast<DummyForm&>(form).accepted = true; });
    p.ShowModal(f);
    EXPECT_TRUE(f.accepted);
    EXPECT_EQ(p.ShownForms(), (std::vector<std::string>{"frmDummy", "frmDummy"}));
    p.FocusNextControl(f);
    p.DoEvents();
    p.DoEvents();
    EXPECT_EQ(p.FocusMoves().size(), 1u);
    EXPECT_EQ(p.DoEventsCount(), 2);
    EXPECT_EQ(p.TextWidth("Größe"), 35);
    p.Clear();
    EXPECT_TRUE(p.ShownForms().empty());
}

TEST(ModuleState, ResetGivesAFreshProcess) {
    State().SelectableCodesCtrl = "_1_";
    State().FileVersion = 4;
    State().CopyToTemp = true;
    auto mine = std::make_shared<HeadlessPlatform>();
    SetPlatform(mine);
    EXPECT_EQ(&CurrentPlatform(), mine.get());
    ResetModuleState();
    EXPECT_EQ(State().SelectableCodesCtrl, "");
    EXPECT_EQ(State().FileVersion, 0);
    EXPECT_FALSE(State().CopyToTemp);
    EXPECT_NE(&CurrentPlatform(), mine.get());
    SetPlatform(nullptr);  // never null
    EXPECT_NE(dynamic_cast<HeadlessPlatform*>(&CurrentPlatform()), nullptr);
}

}  // namespace
