#pragma once
// Texts by number from the language files, with German as the fallback.
// A language file is UTF-8 text: one "number=text" pair a line; blank lines
// and lines starting with "#" are ignored; "\n" in a text is a line break.

#include <cstdint>
#include <map>
#include <string>

#include "support/vb.h"

namespace qvrl {

class CLocLite {
public:
    CLocLite();
    const std::string& FileName() const { return fileName_; }
    // Loads the new file (traced); the same name again does nothing.
    void FileName(const std::string& name);
    // The text of the number, "" when the number or the file is missing.
    std::string LoadText(int32_t number);
    // Above 0 while a file is loaded.
    int32_t Handle() const { return handle_; }
    // Times a file was read (tests).
    int32_t LoadCount() const { return loads_; }

private:
    void Load();
    void Free();
    std::string fileName_;
    int32_t handle_ = 0;
    int32_t loads_ = 0;
    std::map<int32_t, std::string> texts_;
};

// Creates the two language objects if they are missing (both on the German
// file) and runs SelectLanguage.
void InitLanguageObjects();
// The text of a number in the active language, German where it is blank.
std::string LoadResStr(const Variant& Number);
// Chooses the active language from the LanguageShell setting and language.ini.
void SelectLanguage();

}  // namespace qvrl
