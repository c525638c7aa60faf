#include "automation/Session.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "automation/Dispatch.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"
#include "interchange/TextFile.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl {

namespace {

// Installs a platform for a scope and puts the one before back, also when
// the scope ends by an error.
class PlatformScope {
public:
    explicit PlatformScope(std::shared_ptr<Platform> p) : before_(State().platform) { SetPlatform(std::move(p)); }
    ~PlatformScope() { SetPlatform(before_); }
    PlatformScope(const PlatformScope&) = delete;
    PlatformScope& operator=(const PlatformScope&) = delete;

private:
    std::shared_ptr<Platform> before_;
};

int16_t KeyCode(const std::string& name) {
    const std::string k = UCase(name);
    if (k == "ENTER" || k == "RETURN") return key::Return;
    if (k == "ESCAPE" || k == "ESC") return key::Escape;
    if (k == "TAB") return key::Tab;
    if (k == "UP") return key::Up;
    if (k == "DOWN") return key::Down;
    return 0;
}

}  // namespace

std::string SessionStep::Describe(size_t number) const {
    std::string d = "step " + std::to_string(number) + " (" + form + " " + action;
    if (!control.empty()) d += " " + control;
    return d + ")";
}

void ScriptedPlatform::Run(const std::function<void()>& body) {
    {
        PlatformScope scope(shared_from_this());
        body();
    }
    if (next_ < script_.steps.size()) {
        const SessionStep& s = script_.steps[next_];
        throw ScriptError(next_ + 1, s.Describe(next_ + 1) + ": " + s.form + " is not open; the run has ended");
    }
}

int32_t ScriptedPlatform::MsgBox(const std::string& text, int32_t flags, const std::string& title) {
    const int32_t answer =
        answered_ < script_.answers.size() ? script_.answers[answered_++] : mb::DefaultAnswer(flags);
    messages_.push_back({text, flags, title, answer});
    return answer;
}

int32_t ScriptedPlatform::TextWidth(const std::string& text) {
    int32_t chars = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80) ++chars;
    return chars * 7;
}

void ScriptedPlatform::ShowModeless(FormBase& form) {
    const auto* f = dynamic_cast<const Form*>(&form);
    forms_.push_back({form.FormName(), f ? f->Caption() : std::string(), false});
}

void ScriptedPlatform::ShowModal(FormBase& form) {
    const std::string name = form.FormName();
    auto* f = dynamic_cast<Form*>(&form);
    forms_.push_back({name, f ? f->Caption() : std::string(), true});
    modal_.push_back(&form);
    struct Pop {
        std::vector<FormBase*>& v;
        ~Pop() { v.pop_back(); }
    } pop{modal_};
    ActivateForm(form);
    while (form.IsShown()) {
        if (next_ >= script_.steps.size())
            throw ScriptError(0, "the script ended while " + name + " is still open");
        const SessionStep& step = script_.steps[next_];
        const size_t number = ++next_;
        if (UCase(step.form) != UCase(name))
            throw ScriptError(number, step.Describe(number) + ": " + step.form + " is not the active form; " + name +
                                          " is");
        if (!f) throw ScriptError(number, step.Describe(number) + ": " + name + " cannot be driven by a script");
        RunStep(*f, step, number);
    }
}

void ScriptedPlatform::RunStep(Form& form, const SessionStep& step, size_t number) {
    const std::string where = step.Describe(number) + ": ";
    auto fail = [&](const std::string& why) { throw ScriptError(number, where + why); };
    auto need = [&](const std::string& key) -> Control& {
        if (key.empty()) fail("the step names no control");
        Control* c = form.Find(key);
        if (!c) fail(form.FormName() + " has no control '" + key + "'");
        if (!c->Enabled()) fail(key + " is disabled");
        if (!c->Visible()) fail(key + " is hidden");
        return *c;
    };
    // A control that takes the focus gets it first, which validates the one
    // left; when that fails the user's action does not arrive.
    auto focus = [&](Control& c) { return !c.TakesFocus() || form.SetFocus(c); };
    const std::string action = step.action;

    if (action == "type") {
        Control& c = need(step.control);
        if (!step.text) fail("a type step needs \"text\"");
        auto* q = dynamic_cast<QVTextBox*>(&c);
        auto* t = dynamic_cast<TextBox*>(&c);
        if (!q && !t) fail(step.control + " is no text box");
        if ((q && q->Locked()) || (t && t->Locked())) fail(step.control + " is locked");
        if (!focus(c)) fail("the focus stayed on " + form.ActiveControl()->Key());
        if (q) {
            q->SelectAll();
            q->TypeText(*step.text);
        } else {
            t->Text("");
            t->TypeText(*step.text);
        }
        form.SendTab();
    } else if (action == "key") {
        const int16_t code = KeyCode(step.key);
        if (!code) fail("unknown key '" + step.key + "' (Enter, Escape, Tab, Up, Down)");
        if (!step.control.empty() && !focus(need(step.control))) fail("the focus stayed on " + form.ActiveControl()->Key());
        form.PressKey(code);
    } else if (action == "click") {
        Control& c = need(step.control);
        auto* k = dynamic_cast<Clickable*>(&c);
        if (!k) fail(step.control + " cannot be clicked" + (dynamic_cast<QVButtons*>(&c) ? "; use ok or cancel" : ""));
        if (focus(c)) k->PerformClick();
    } else if (action == "choose") {
        auto* cb = dynamic_cast<ComboBox*>(&need(step.control));
        if (!cb) fail(step.control + " is no combo box");
        int32_t found = -1;
        for (int32_t i = 0; i < cb->ListCount() && found < 0; ++i) {
            const ComboItem& it = cb->Item(i);
            if ((step.tag && it.tag == *step.tag) || (step.text && it.text == *step.text) ||
                (step.index && *step.index == i))
                found = i;
        }
        if (!step.tag && !step.text && !step.index) fail("a choose step needs \"tag\", \"text\" or \"index\"");
        if (found < 0) fail(step.control + " has no such item");
        if (focus(*cb)) cb->ListIndex(found);
    } else if (action == "select_row") {
        auto* lv = dynamic_cast<ListView*>(&need(step.control));
        if (!lv) fail(step.control + " is no list or grid");
        int32_t found = -1;
        if (step.row) {
            if (*step.row >= 0 && *step.row < lv->RowCount()) found = *step.row;
        } else if (step.text) {
            for (int32_t r = 0; r < lv->RowCount() && found < 0; ++r)
                if (!lv->Row(r).empty() && lv->Row(r)[0] == *step.text) found = r;
        } else {
            fail("a select_row step needs \"row\" or \"text\"");
        }
        if (found < 0) fail(step.control + " has no such row");
        if (!lv->RowSelectable(found)) fail("row " + std::to_string(found) + " of " + step.control + " is disabled");
        if (focus(*lv)) lv->SelectedRow(found);
    } else if (action == "map") {
        Image* img = nullptr;
        if (!step.control.empty()) {
            img = dynamic_cast<Image*>(&need(step.control));
            if (!img) fail(step.control + " is no image map");
        } else {
            for (Control* c : form.Controls())
                if (auto* i = dynamic_cast<Image*>(c); i && !img && i->Visible() && i->Enabled()) img = i;
            if (!img) fail(form.FormName() + " has no image map");
        }
        if (!step.layer) fail("a map step needs \"layer\"");
        img->MoveOverLayer(*step.layer);
        if (step.click) img->ClickLayer(*step.layer);
    } else if (action == "ok" || action == "cancel") {
        QVButtons* strip = nullptr;
        for (Control* c : form.Controls())
            if (auto* b = dynamic_cast<QVButtons*>(c); b && !strip) strip = b;
        if (!strip) fail(form.FormName() + " has no OK and Cancel strip");
        if (!strip->Enabled() || !strip->Visible()) fail(strip->Key() + " is disabled or hidden");
        if (focus(*strip)) (action == "ok" ? strip->cmdOk() : strip->cmdCancel()).PerformClick();
    } else {
        fail("unknown action '" + action + "'");
    }
}

std::string FileArgument(const MemberInfo& member, const std::vector<Variant>& args) {
    for (size_t i = 0; i < member.params.size() && i < args.size(); ++i)
        if (member.params[i].type == "String" && InStrText(member.params[i].name, "FileName") &&
            args[i].type() == Variant::Type::String)
            return args[i].asString();
    return {};
}

MemberRun RunMemberUnder(const std::shared_ptr<Platform>& platform, const std::string& target,
                         std::vector<Variant> args) {
    const size_t dot = target.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == target.size())
        Raise(err::InvalidCall, {}, "the call must be Class.Member, not '" + target + "'");
    const std::string cls = target.substr(0, dot), member = target.substr(dot + 1);

    namespace fs = std::filesystem;
    const std::string traceFile = TraceFileName();
    std::error_code ec;
    const auto traceBefore = fs::exists(traceFile, ec) ? fs::file_size(traceFile, ec) : 0;

    MemberRun run;
    {
        PlatformScope scope(platform);
        auto obj = CreateObjectByName(cls);
        if (!obj) Raise(err::ObjectNotSet, cls, "unknown class '" + cls + "'");
        const MemberInfo* info = obj->FindCallable(member);
        if (!info) Raise(err::NoSuchMember, {}, obj->ClassName() + " has no member '" + member + "'");
        run.fileName = FileArgument(*info, args);
        run.result = obj->Invoke(member, args);
        for (size_t i = 0; i < info->params.size() && i < args.size(); ++i)
            if (info->params[i].byRef) run.out.emplace_back(info->params[i].name, args[i]);
        if (obj->FindMember("OnOk", MemberKind::PropertyGet)) run.onOk = obj->GetProperty("OnOk").toBoolean();
    }

    if (fs::exists(traceFile, ec)) {
        std::ifstream in(traceFile, std::ios::binary);
        in.seekg(static_cast<std::streamoff>(traceBefore));
        const std::string added((std::istreambuf_iterator<char>(in)), {});
        run.trace = DecodeText(added).lines;
    }
    if (!run.fileName.empty() && fs::is_regular_file(run.fileName, ec)) run.fileLines = ReadTextLines(run.fileName).lines;
    return run;
}

std::optional<RuntimeError> RequestFault(const std::string& target, size_t argumentCount) {
    const size_t dot = target.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == target.size())
        return RuntimeError(err::InvalidCall, "the member must be Class.Member, not '" + target + "'");
    const std::string className = target.substr(0, dot), member = target.substr(dot + 1);
    const dispatch::PublicClass* cls = dispatch::FindPublicClass(className);
    if (!cls) return RuntimeError(err::CannotCreateObject, "no public class '" + className + "'");
    const MemberInfo* found = nullptr;
    for (const MemberInfo& m : cls->members())
        if (m.kind != MemberKind::PropertyLet && UCase(m.name) == UCase(member) &&
            (!found || m.kind == MemberKind::Method))
            found = &m;
    if (!found) return RuntimeError(err::NoSuchMember, cls->name + " has no member '" + member + "'");
    if (found->params.size() != argumentCount)
        return RuntimeError(err::WrongArgumentCount, cls->name + "." + found->name + " takes " +
                                                         std::to_string(found->params.size()) + " arguments, not " +
                                                         std::to_string(argumentCount));
    return std::nullopt;
}

}  // namespace qvrl
