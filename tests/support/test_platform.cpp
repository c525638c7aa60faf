#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "support/DesktopPlatform.h"
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

namespace {

// Sets or clears an environment variable for one scope.
class EnvVar {
public:
    EnvVar(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value) ::setenv(name, value, 1);
        else ::unsetenv(name);
    }
    EnvVar(const EnvVar&) = delete;
    EnvVar& operator=(const EnvVar&) = delete;
    ~EnvVar() {
        if (old_) ::setenv(name_, old_->c_str(), 1);
        else ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

}  // namespace

// A host's dialogs come up on a screen only where there is one and where the
// host chose no platform itself; until something is shown, Qt stays unloaded.
TEST(DesktopPlatform, OfferedOnlyWithADisplayAndNoChoice) {
    struct Case {
        const char* display;
        const char* wayland;
        bool chosen;
        bool offered;
    };
    const Case cases[] = {
        {nullptr, nullptr, false, false}, {"", "", false, false},    {":0", nullptr, false, true},
        {nullptr, "wayland-0", false, true}, {":0", nullptr, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.display ? c.display : "-") + "/" + (c.wayland ? c.wayland : "-") +
                     (c.chosen ? " chosen" : ""));
        ResetModuleState();
        EnvVar display("DISPLAY", c.display), wayland("WAYLAND_DISPLAY", c.wayland);
        auto mine = std::make_shared<HeadlessPlatform>();
        if (c.chosen) SetPlatform(mine);
        Platform* before = &CurrentPlatform();
        OfferDesktopPlatform();
        Platform* after = &CurrentPlatform();
        EXPECT_EQ(after != before, c.offered);
        EXPECT_EQ(dynamic_cast<HeadlessPlatform*>(after) == nullptr, c.offered);
        if (c.offered) {
            // Measuring and idle events need no window: the stand-in stays.
            after->DoEvents();
            EXPECT_GT(after->TextWidth("abc"), 0);
            EXPECT_EQ(&CurrentPlatform(), after);
            OfferDesktopPlatform();  // a second offer changes nothing
            EXPECT_EQ(&CurrentPlatform(), after);
        }
    }
    ResetModuleState();
}
