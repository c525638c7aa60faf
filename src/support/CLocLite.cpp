#include "support/CLocLite.h"

#include <fstream>

#include "support/CTrace.h"
#include "support/Kalvo_Reg.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"

namespace qvrl {

namespace {
constexpr size_t kMaxTextChars = 255;

// Cuts a UTF-8 text after max characters.
std::string CutChars(const std::string& s, size_t max) {
    size_t chars = 0;
    for (size_t i = 0; i < s.size(); ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80) {
            if (chars == max) return s.substr(0, i);
            ++chars;
        }
    }
    return s;
}

std::string Unescape(const std::string& s) {
    std::string r;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 1 < s.size()) {
            const char n = s[i + 1];
            if (n == 'n') { r += '\n'; ++i; continue; }
            if (n == 't') { r += '\t'; ++i; continue; }
            if (n == '\\') { r += '\\'; ++i; continue; }
        }
        r += s[i];
    }
    return r;
}
}  // namespace

CLocLite::CLocLite() : fileName_(ProgramFolder() + "/deu/qvb6_deu.scr") {}

void CLocLite::FileName(const std::string& name) {
    if (name == fileName_) return;
    fileName_ = name;
    WriteTrace("CLocLite.FileName", Variant(name), {}, false);
    if (handle_ > 0) Free();
    Load();
    WriteTrace("hRes", Variant(handle_), {}, true);
}

void CLocLite::Free() {
    texts_.clear();
    handle_ = 0;
}

void CLocLite::Load() {
    texts_.clear();
    handle_ = 0;
    if (fileName_.empty()) return;
    std::ifstream in(fileName_, std::ios::binary);
    if (!in) return;
    ++loads_;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() >= 3 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
        const std::string t = LTrim(line);
        if (t.empty() || t[0] == '#') continue;
        const size_t eq = t.find('=');
        if (eq == std::string::npos) continue;
        const std::string key = Trim(t.substr(0, eq));
        if (key.empty() || key.find_first_not_of("0123456789") != std::string::npos || key.size() > 9) continue;
        texts_[std::stoi(key)] = CutChars(Unescape(t.substr(eq + 1)), kMaxTextChars);
    }
    handle_ = State().nextLanguageHandle++;
}

std::string CLocLite::LoadText(int32_t number) {
    if (handle_ == 0) Load();
    const auto it = texts_.find(number);
    if (it == texts_.end()) return {};
    std::string s = it->second;
    const size_t nul = s.find('\0');
    if (nul != std::string::npos) s.resize(nul);
    return RTrim(s);
}

void InitLanguageObjects() {
    ModuleState& st = State();
    const std::string german = ProgramFolder() + "/deu/" + ProgramName() + "_deu.scr";
    if (!st.locActive) {
        st.locActive = std::make_unique<CLocLite>();
        st.locActive->FileName(german);
    }
    if (!st.locFallback) {
        st.locFallback = std::make_unique<CLocLite>();
        st.locFallback->FileName(german);
    }
    SelectLanguage();
}

std::string LoadResStr(const Variant& Number) {
    ModuleState& st = State();
    if (!st.locActive || st.locActive->FileName().empty()) return {};
    const int32_t n = CLng(Number);
    std::string text = st.locActive->LoadText(n);
    if (Trim(text).empty() && st.locFallback) text = st.locFallback->LoadText(n);
    return text;
}

void SelectLanguage() {
    ModuleState& st = State();
    if (!st.locActive) return;
    Variant lang;
    RegReadValue("HKCU", "SOFTWARE\\Norvane GmbH\\Globals\\Settings", "LanguageShell", "D", Variant(int32_t{0}),
                 lang);
    const std::string number = lang.toString();

    std::ifstream in(ProgramFolder() + "/language.ini", std::ios::binary);
    if (!in) return;  // the language stays as it is
    std::string line, shortName;
    bool found = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string up = UCase(line);
        if (up.find(".ID=") == std::string::npos || up.find(number) == std::string::npos) continue;
        std::string next;
        if (std::getline(in, next)) {
            if (!next.empty() && next.back() == '\r') next.pop_back();
            const size_t k = UCase(next).find(".SHORT=");
            if (k != std::string::npos) {
                shortName = next.substr(k + 7);
                found = true;
            }
        }
        break;
    }
    if (found && !shortName.empty())
        st.locActive->FileName(ProgramFolder() + "/" + shortName + "/" + ProgramName() + "_" + shortName + ".scr");
}

}  // namespace qvrl
