#include "support/Kalvo_Reg.h"

#include <fstream>

#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {

namespace {
bool KnownRoot(const std::string& upper) {
    return upper == "HKCU" || upper == "HKLM" || upper == "HKU" || upper == "HKDD" || upper == "HKCC" ||
           upper == "HKCR";
}

// Reads the value's text from the settings file; false when key or value is missing.
bool LookUp(const std::string& section, const std::string& valueName, std::string& text) {
    std::ifstream in(RegistryFile(), std::ios::binary);
    if (!in) return false;
    std::string line;
    bool inSection = false;
    const std::string wantSection = UCase(section);
    const std::string wantName = UCase(Trim(valueName));
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string t = Trim(line);
        if (t.empty() || t[0] == ';' || t[0] == '#') continue;
        if (t.front() == '[' && t.back() == ']') {
            inSection = UCase(Trim(t.substr(1, t.size() - 2))) == wantSection;
            continue;
        }
        if (!inSection) continue;
        const size_t eq = t.find('=');
        if (eq == std::string::npos) continue;
        if (UCase(Trim(t.substr(0, eq))) == wantName) {
            text = t.substr(eq + 1);
            return true;
        }
    }
    return false;
}
}  // namespace

std::string RegistryFile() { return UserDataFolder() + "registry.ini"; }

int32_t RegReadValue(const std::string& Root, const std::string& Key, const std::string& ValueName,
                     const std::string& TypeCode, const Variant& Default, Variant& Out) {
    Out = Default;
    const std::string root = UCase(Trim(Root));
    if (!KnownRoot(root)) return kRegUnknownRoot;

    std::string text;
    const std::string type = UCase(TypeCode);
    if (type != "S" && type != "B" && type != "D") return 0;  // reads nothing
    if (!LookUp(root + "\\" + Key, ValueName, text)) return kRegNotFound;

    if (type == "S") {
        Out = text;
    } else if (type == "B") {
        const std::string u = UCase(Trim(text));
        if (u == "TRUE" || u == "1" || u == "-1") Out = true;
        else if (u == "FALSE" || u == "0") Out = false;
        else return kRegInvalidData;
    } else {
        double v = 0.0;
        try {
            if (!IsNumeric(std::string_view(text))) return kRegInvalidData;
            v = Variant(Trim(text)).toDouble();
            if (v != static_cast<double>(static_cast<int64_t>(v))) return kRegInvalidData;
            Out = CLng(v);
        } catch (const RuntimeError&) {
            return kRegInvalidData;
        }
    }
    return 0;
}

bool SplitPath(const std::string& Path, std::string& Dir, std::string& Name, std::string& Ext) {
    auto isSep = [](char c) { return c == '\\' || c == '/'; };
    std::string path = Path;
    Ext.clear();
    for (size_t i = path.size(); i-- > 0;) {
        if (isSep(path[i])) break;
        if (path[i] == '.') {
            Ext = path.substr(i + 1);
            path.resize(i);
            break;
        }
    }
    size_t nameStart = 0;
    Dir.clear();
    char sep = '\\';
    for (size_t i = path.size(); i-- > 0;) {
        if (isSep(path[i])) {
            Dir = path.substr(0, i);
            sep = path[i];
            nameStart = i + 1;
            break;
        }
    }
    if (Dir.empty() && path.size() > 1 && path[1] == ':') {
        Dir = path.substr(0, 2);
        nameStart = 2;
    }
    if (!Dir.empty()) {
        if (!isSep(Dir.back())) Dir += sep;
        Name = path.substr(nameStart);
    } else {
        Name = path;
    }
    if (!Ext.empty()) Name += "." + Ext;
    return true;
}

}  // namespace qvrl
