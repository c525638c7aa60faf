#pragma once
// Runs a public member under a platform of the caller's choice: the scripted
// one below (qvroofload session, and the tests of every dialog), or the Qt
// one (qvroofload show). A script names, step by step, the form it expects
// in front and what the user does there; message boxes take queued answers.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "automation/Dispatch.h"
#include "support/Platform.h"
#include "support/vb.h"

namespace qvrl {

class Form;

struct SessionStep {
    std::string form;
    // type, key, click, choose, select_row, map, ok, cancel
    std::string action;
    std::string control;
    std::optional<std::string> text;  // type: the new text; choose, select_row: an item's text
    std::string key;                  // Enter, Escape, Tab, Up, Down
    std::optional<std::string> tag;   // choose: an item's tag
    std::optional<int32_t> index;     // choose: an item's position
    std::optional<int32_t> row;       // select_row
    std::optional<int32_t> layer;     // map
    bool click = false;               // map: click as well as move over

    // "step 2 (frmX type txtWind(0))" for messages.
    std::string Describe(size_t number) const;
};

struct SessionScript {
    std::vector<SessionStep> steps;
    // Message box answers in order; the default button once they run out.
    std::vector<int32_t> answers;
};

// A step that does not fit the dialogs in front, or a script that ends while
// a form is open. Not a run-time error of the member: nothing of the
// member's own error handling catches it as one.
class ScriptError : public std::runtime_error {
public:
    ScriptError(size_t step, const std::string& message) : std::runtime_error(message), step_(step) {}
    // 1-based; 0 when the script ran out.
    size_t step() const { return step_; }

private:
    size_t step_;
};

class ScriptedPlatform : public Platform, public std::enable_shared_from_this<ScriptedPlatform> {
public:
    struct ShownForm {
        std::string name;
        std::string caption;
        bool modal;
    };
    struct Message {
        std::string text;
        int32_t flags;
        std::string title;
        int32_t answer;
    };

    explicit ScriptedPlatform(SessionScript script) : script_(std::move(script)) {}

    // Installs this platform for the call and restores the one before; a
    // step the call left unused is an error.
    void Run(const std::function<void()>& body);

    int32_t MsgBox(const std::string& text, int32_t flags, const std::string& title) override;
    // Runs steps until the form is hidden.
    void ShowModal(FormBase& form) override;
    void ShowModeless(FormBase& form) override;
    void DoEvents() override {}
    void FocusNextControl(FormBase&) override {}
    // The headless pitch: 7 pixels a character.
    int32_t TextWidth(const std::string& text) override;

    const std::vector<ShownForm>& Forms() const { return forms_; }
    const std::vector<Message>& Messages() const { return messages_; }
    size_t StepsDone() const { return next_; }

private:
    void RunStep(Form& form, const SessionStep& step, size_t number);
    SessionScript script_;
    size_t next_ = 0;
    size_t answered_ = 0;
    std::vector<FormBase*> modal_;
    std::vector<ShownForm> forms_;
    std::vector<Message> messages_;
};

// What a member run leaves for its caller.
struct MemberRun {
    Variant result;
    // By-reference arguments after the call, by parameter name.
    std::vector<std::pair<std::string, Variant>> out;
    // OnOk of the object, where it has one.
    std::optional<bool> onOk;
    // Lines the run added to rlTrace.log.
    std::vector<std::string> trace;
    // The block file the member took (a parameter named ...FileName), and
    // its lines after the run; none when the file is not there.
    std::string fileName;
    std::optional<std::vector<std::string>> fileLines;
};

// The block file a call takes: its first text argument whose parameter
// name holds "FileName" ("AsciiFileName"); "" when there is none.
std::string FileArgument(const MemberInfo& member, const std::vector<Variant>& args);

// Creates the object of "Class.Member", calls the member with the platform
// installed for the call, and collects what it left. Run-time errors of the
// member propagate as RuntimeError; a malformed target is error 5, an
// unknown class 91, an unknown member 438.
MemberRun RunMemberUnder(const std::shared_ptr<Platform>& platform, const std::string& target,
                         std::vector<Variant> args);

// What is wrong with the request itself, known without making an object (so
// no trace is written): no Class.Member (5), no such class (429), no such
// member (438), the wrong number of arguments (450). Empty when it may run.
std::optional<RuntimeError> RequestFault(const std::string& target, size_t argumentCount);

}  // namespace qvrl
