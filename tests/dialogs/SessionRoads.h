#pragma once
// What the roads of the roof load sessions share: script steps, the block
// file fixtures (CRLF lines) and the comparison line by line.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TestEnv.h"
#include "automation/Session.h"
#include "location/test_modAGSMdb_fixture.h"
#include "maintenance/StoreImports.h"

namespace qvrl::test {

inline SessionStep Step(const std::string& form, const std::string& action, const std::string& control = {}) {
    SessionStep s;
    s.form = form;
    s.action = action;
    s.control = control;
    return s;
}
inline SessionStep Type(const std::string& form, const std::string& control, const std::string& text) {
    SessionStep s = Step(form, "type", control);
    s.text = text;
    return s;
}
inline SessionStep Key(const std::string& form, const std::string& control, const std::string& key) {
    SessionStep s = Step(form, "key", control);
    s.key = key;
    return s;
}
inline SessionStep Choose(const std::string& form, const std::string& control, const std::string& tag) {
    SessionStep s = Step(form, "choose", control);
    s.tag = tag;
    return s;
}

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find("\r\n", start);
        if (end == std::string::npos) end = text.size();
        out.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    return out;
}

inline std::string Fixture(const std::string& name) {
    const std::string text = ReadFile(std::string(QVRL_SOURCE_DIR) + "/tests/dialogs/fixtures/" + name);
    if (text.empty()) ADD_FAILURE() << "missing fixture " << name;
    return text;
}

inline void ExpectFileLines(const std::string& file, const std::string& expected) {
    const std::vector<std::string> want = Lines(Fixture(expected));
    const std::vector<std::string> got = Lines(ReadFile(file));
    ASSERT_EQ(got.size(), want.size()) << ReadFile(file);
    for (size_t i = 0; i < want.size(); ++i) EXPECT_EQ(got[i], want[i]) << expected << " line " << i + 1;
}

// The forms a run showed, in order.
inline std::vector<std::string> FormsOf(const ScriptedPlatform& p) {
    std::vector<std::string> forms;
    for (const auto& f : p.Forms()) forms.push_back(f.name);
    return forms;
}

// A program folder whose qvrl.mdb holds the small town and zone fixtures,
// for the roads through the town selection; file is the block file.
class TownSessionTest : public TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        const std::string db = (program_ / "qvrl.mdb").string();
        const std::string fixtures = std::string(QVRL_SOURCE_DIR) + "/tests/maintenance/fixtures/";
        imports::Gv100ad(fixtures + "gv100ad_small.asc", db);
        imports::Zones(fixtures + "zones_small.csv", db, 50);
        file = (FreshFolder("blocks") / "roof.asc").string();
    }
    std::string file;
};

}  // namespace qvrl::test
