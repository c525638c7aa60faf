#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "automation/SiteReport.h"
#include "cp/modWindCpMdb.h"
#include "e2e/BadStoreFiles.h"
#include "e2e/CliRunner.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliSite : public test::IsolatedTest {};

const std::string kDin =
    "site --norm 3 --snow-zone 2a --wind-zone 3 --category 6 --altitude 437 --height 12 --roof gabled --pitch 35";

bool Has(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

TEST_F(CliSite, ReportInBothLanguagesShowsTheJsonNumbers) {
    const auto js = test::RunCli(kDin + " --json");
    ASSERT_EQ(js.status, 0) << js.out;
    const json j = json::parse(js.out);
    const double sk = j["snow"]["ground_snow_load"]["value"], qp = j["wind"]["peak_velocity_pressure"]["value"];
    const json& f = j["coefficients"]["directions"][1]["sets"][0]["values"][0];  // θ 90°, zone F
    ASSERT_EQ(f["zone"], "F");

    // The tool prints what the library computes, to the last bit.
    SiteInput in;
    in.Norm = 3, in.SnowZone = 21, in.WindZone = 3, in.BuildingCategory = 6;
    in.TerrainHeightInM = 437.0, in.BuildingHeightInM = 12.0, in.Alpha = 35.0;
    const SiteResult r = ComputeSite(in);
    EXPECT_EQ(sk, *r.groundSnow.value);
    EXPECT_EQ(qp, *r.peakPressure.value);
    EXPECT_EQ(j["snow"]["arrangements"][1]["parts"][0]["load"]["value"].get<double>(), *r.arrangements[1].parts[0].s);
    EXPECT_EQ(f["w_e_1"]["value"].get<double>(), *r.publishedCp[1].we[0][0].we1);
    EXPECT_EQ(j["input"]["snow_zone"]["text"], "2a");

    const struct {
        const char* lang;
        std::vector<std::string> lines;
    } cases[] = {
        {"deu",
         {"Norm: DIN 1055-4:2005, DIN 1055-5:2005 (Norm 3)", "Schneelastzone: 2a",
          "Charakteristische Schneelast am Boden s_k: " + Format(sk, "0.000") + " kN/m²",
          "Böengeschwindigkeitsdruck q_p: " + Format(qp, "0.000") + " kN/m²", "Außendruckbeiwerte, Satteldach",
          "Anströmrichtung θ = 90°", "Geländekategorie: Mischkategorie Binnenland", "mit Verwehung, links vermindert",
          "Umgebungskoeffizient C_e: 1.00"}},
        {"eng",
         {"Standard: DIN 1055-4:2005, DIN 1055-5:2005 (Norm 3)", "Snow load zone: 2a",
          "Characteristic ground snow load s_k: " + Format(sk, "0.000") + " kN/m²",
          "Peak velocity pressure q_p: " + Format(qp, "0.000") + " kN/m²",
          "External pressure coefficients, gabled roof", "Wind direction θ = 0°", "drifted, right side reduced",
          "Thermal coefficient C_t: 1.00"}},
    };
    for (const auto& c : cases) {
        const auto rep = test::RunCli(std::string("--lang ") + c.lang + " " + kDin);
        ASSERT_EQ(rep.status, 0) << rep.out;
        for (const std::string& l : c.lines) EXPECT_TRUE(Has(rep.out, l)) << c.lang << ": " << l << "\n" << rep.out;
        // Zone F at 90°: its coefficient and its pressure on one line.
        const std::string at90 = rep.out.substr(rep.out.find("θ = 90°"));
        const size_t at = at90.find("\n    F ");
        ASSERT_NE(at, std::string::npos) << rep.out;
        const std::string row = at90.substr(at + 1, at90.find('\n', at + 1) - at - 1);
        EXPECT_TRUE(Has(row, Format(f["c_pe_10"]["value"].get<double>(), "0.00"))) << row;
        EXPECT_TRUE(Has(row, Format(f["w_e_10"]["value"].get<double>(), "0.000"))) << row;
    }
}

// A store without rows for the standard takes nothing from the report: the
// published tables stand, and the notes say that the member route has none.
TEST_F(CliSite, AnEmptyStoreLeavesThePublishedCoefficientsAndIsNamedInTheNotes) {
    namespace fs = std::filesystem;
    const auto program = test::FreshFolder("program");
    const fs::path built = ProgramFolder();
    fs::copy(built / "deu", program / "deu", fs::copy_options::recursive);
    fs::copy(built / "eng", program / "eng", fs::copy_options::recursive);
    fs::copy_file(built / "language.ini", program / "language.ini");
    // The only coefficient row is another standard's.
    std::string line;
    for (int i = 0; i < kCpeTextFields; ++i) line += i == 1 ? "3;" : i == 2 ? "4;" : i == 4 ? "'x';" : "0;";
    test::WriteFile(program / "qvrlcpe.txt", line + "\n");
    setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);

    const std::string en =
        "site --norm 54 --region 6 --snow-zone 2 --vb 25 --category 2 --altitude 400 --height 12 "
        "--roof hipped --pitch 20";
    const auto rep = test::RunCli("--lang eng " + en);
    ASSERT_EQ(rep.status, 0) << rep.out;
    EXPECT_TRUE(Has(rep.out, "cpe,10")) << rep.out;
    const json j = json::parse(test::RunCli(en + " --json").out);
    ASSERT_FALSE(j["coefficients"]["directions"].empty());
    bool named = false;
    for (const json& n : j["notes"])
        named = named || (n["topic"] == "cpe_10" && n["member_value"]["value"].is_null());
    EXPECT_TRUE(named) << j["notes"].dump(2);
}

// The coefficients of the store route from a file that cannot be opened are
// an error naming it, not "no coefficients for this standard".
TEST_F(CliSite, ACoefficientStoreThatCannotBeOpenedIsAnError) {
    namespace fs = std::filesystem;
    const auto program = test::FreshFolder("program");
    const fs::path built = ProgramFolder();
    fs::copy(built / "deu", program / "deu", fs::copy_options::recursive);
    fs::copy_file(built / "language.ini", program / "language.ini");
    setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);
    const std::string file = (program / "qvrl.mdb").string();
    const std::string en =
        "site --norm 54 --region 6 --snow-zone 2 --vb 25 --category 2 --altitude 400 --height 12 --roof flat";
    for (const test::BadFile& b : test::kBadFiles) {
        SCOPED_TRACE(b.what);
        test::OwnTempFolder tmp(b.what);
        test::PlaceBadFile(b, program / "qvrl.mdb");
        auto r = test::RunCli(en, true);
        EXPECT_EQ(r.status, 1);
        EXPECT_TRUE(Has(r.out, "qvroofload site: error " + std::to_string(b.number) + ": " + file)) << r.out;
        EXPECT_FALSE(Has(r.out, "Lasten am Standort")) << r.out;
        r = test::RunCli(en + " --json");
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(json::parse(r.out)["error"]["number"], b.number) << r.out;
    }
    // The built-in route of Norm 3 does not need the file.
    EXPECT_EQ(test::RunCli(kDin).status, 0);
}

TEST_F(CliSite, BadInputNamesTheOptionAndPrintsNothingElse) {
    const struct {
        std::string args;
        const char* option;
    } cases[] = {
        {"--norm 2 --snow-zone 1 --altitude 0 --height 5 --roof flat", "--norm"},
        {"--norm 3 --snow-zone 4 --wind-zone 1 --category 2 --altitude 0 --height 5 --roof flat", "--snow-zone"},
        {"--norm 3 --snow-zone 1 --wind-zone 1 --category 2 --altitude 0 --height 5 --pitch 95", "--pitch"},
        {"--norm 54 --snow-zone 2 --vb 25 --category 2 --altitude 0 --height 5 --roof flat", "--region"},
        {"--norm 3 --town 12AB --snow-zone 1 --wind-zone 1 --category 2 --altitude 0 --height 5 --roof flat", "--town"},
    };
    for (const auto& c : cases) {
        const auto quiet = test::RunCli("site " + c.args);
        EXPECT_EQ(quiet.status, 2) << c.args;
        EXPECT_EQ(quiet.out, "") << c.args;
        const auto loud = test::RunCli("site " + c.args, true);
        EXPECT_TRUE(Has(loud.out, std::string(c.option) + ":")) << c.args << "\n" << loud.out;
    }
    const auto unparsable = test::RunCli("site --norm 3 --height ten", true);
    EXPECT_NE(unparsable.status, 0);
    EXPECT_TRUE(Has(unparsable.out, "--height")) << unparsable.out;
    EXPECT_FALSE(Has(unparsable.out, "Lasten am Standort"));

    const auto help = test::RunCli("site --help");
    EXPECT_EQ(help.status, 0);
    for (const char* opt : {"--town", "--snow-zone", "--dist-shore", "--json"}) EXPECT_TRUE(Has(help.out, opt)) << opt;
}

}  // namespace
