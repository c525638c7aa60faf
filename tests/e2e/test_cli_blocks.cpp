#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "interchange/ExampleBlockFile.h"
#include "TestEnv.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

const std::string kExample = test::kExampleBlockFile;

class CliBlocks : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        dir_ = test::FreshFolder("cli");
    }
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    std::filesystem::path dir_;
};

TEST_F(CliBlocks, ReadPrintsRecordsAndVersionState) {
    const std::string text = kExample + "LIVELOAD 3 0.0003 0.0002 1.5 '1' 'A' 'W' 'B' 0.5 '' '' '' ''\r\n";
    test::WriteFile(Path("a.asc"), text);
    const auto r = test::RunCli("blocks read '" + Path("a.asc") + "'");
    ASSERT_EQ(r.status, 0) << r.out;
    const json j = json::parse(r.out);
    EXPECT_EQ(j["FileVersion"], 4);
    EXPECT_EQ(j["ctrlNorm"], 1);
    EXPECT_EQ(j["selectCodes"], "_1_3_");
    EXPECT_EQ(j["town"]["AGS"], "05315000");
    EXPECT_EQ(j["wind"]["q0"].get<double>(), 0.00005 * 10000);
    EXPECT_EQ(j["snow"]["s0"].get<double>(), 0.000075 * 10000);  // printed so that it reads back exactly
    EXPECT_EQ(j["live"]["Norm"], 3);
    EXPECT_EQ(j["live"]["Langtext"], "B");
    EXPECT_EQ(j["dead"]["Norm"], 0);
    EXPECT_EQ(test::ReadFile(Path("a.asc")), text);  // reading wrote nothing
}

TEST_F(CliBlocks, WriteFromJsonGivesTheExampleFile) {
    const std::string in =
        R"({"ctrlNorm":1,"selectCodes":"_1_3_","town":{"AGS":"05315000"},)"
        R"("wind":{"Norm":1,"q0":0.5,"h":10,"wz":2,"cat":1},"snow":{"Norm":1,"s0":0.75,"h":250,"sz":2}})";
    const auto r = test::RunCli("blocks write '" + Path("new.asc") + "'", true, in);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(test::ReadFile(Path("new.asc")), kExample);
}

TEST_F(CliBlocks, ReadThenWriteRoundTrips) {
    test::WriteFile(Path("a.asc"), kExample);
    const auto read = test::RunCli("blocks read --only roof '" + Path("a.asc") + "'");
    ASSERT_EQ(read.status, 0);
    test::WriteFile(Path("a.json"), read.out);
    const auto w = test::RunCli("blocks write '" + Path("a.asc") + "' < '" + Path("a.json") + "'", true);
    ASSERT_EQ(w.status, 0) << w.out;
    EXPECT_EQ(test::ReadFile(Path("a.asc")), kExample);

    // Roof, then dead, as a roof session with dead loads writes.
    const auto rd = test::RunCli("blocks write --only roof,dead '" + Path("a.asc") + "'", true,
                                 R"({"ctrlNorm":1,"town":{"AGS":"1"},"dead":{"Norm":1,"g0":1.25,"Descr0":"Ziegel"}})");
    ASSERT_EQ(rd.status, 0) << rd.out;
    const auto back = test::RunCli("blocks read --only dead '" + Path("a.asc") + "'");
    const json j = json::parse(back.out);
    EXPECT_EQ(j["dead"]["g0"].get<double>(), 0.000125 * 10000);
    EXPECT_EQ(j["dead"]["Descr0"], "Ziegel");
    EXPECT_FALSE(j.contains("wind"));
}

TEST_F(CliBlocks, BadInputIsRefusedAndTheFileStaysAsItWas) {
    struct Case {
        std::string input;
        std::string message;
        std::string options;
    } cases[] = {
        {"not json", "not valid JSON", ""},
        {R"({"wnd":{}})", "unknown key 'wnd'", ""},
        {R"({"wind":{"Norm":40000}})", "wind.Norm must be a whole number from -32768 to 32767", ""},
        {R"({"wind":{"q0":"x"}})", "wind.q0 must be a number", ""},
        {R"({"wind":{"speed":1}})", "wind: unknown field 'speed'", ""},
        {R"({"dead":{"Descr0":"a\nb"}})", "dead.Descr0 must not hold a line break", ""},
        {R"({"wind":{},"live":{}})", "choose with --only", ""},
        {R"({"wind":{}})", "--only names records that the JSON does not hold", "--only dead"},
    };
    test::WriteFile(Path("keep.asc"), kExample);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.input);
        const auto r = test::RunCli("blocks write " + c.options + " '" + Path("keep.asc") + "'", true, c.input);
        EXPECT_EQ(r.status, 2) << r.out;
        EXPECT_NE(r.out.find(c.message), std::string::npos) << r.out;
        EXPECT_NE(r.out.find("the file was not changed"), std::string::npos);
        EXPECT_EQ(test::ReadFile(Path("keep.asc")), kExample);
    }
}

TEST_F(CliBlocks, FileProblemsAreRuntimeErrors) {
    test::WriteFile(Path("empty.asc"), "");
    auto r = test::RunCli("blocks read '" + Path("empty.asc") + "'", true);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("error 62"), std::string::npos) << r.out;

    r = test::RunCli("blocks write '" + Path("no/such/folder.asc") + "'", true, R"({"wind":{}})");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("error 76"), std::string::npos) << r.out;

    // A file that is not there reads as zero records; nothing is created.
    r = test::RunCli("blocks read '" + Path("none.asc") + "'");
    ASSERT_EQ(r.status, 0);
    const json j = json::parse(r.out);
    EXPECT_EQ(j["ctrlNorm"], -99);
    EXPECT_EQ(j["wind"]["Norm"], 0);
    EXPECT_FALSE(std::filesystem::exists(Path("none.asc")));
}

}  // namespace
