#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "TestEnv.h"
#include "e2e/BadStoreFiles.h"
#include "automation/Dispatch.h"
#include "cp/CWindCpTable.h"
#include "cp/modWindCp.h"
#include "cp/modWindCpConv.h"
#include "cp/modWindCpMdb.h"
#include "e2e/CliRunner.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

using namespace qvrl;
// Ordered, so that the order of the printed properties can be checked.
using json = nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace {

class CliCp : public test::IsolatedTest {};

bool Has(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

// The 71 properties of a table as the tool should print them, read through the
// same interface a host reads.
json Expected(const CpWindRecord& rec) {
    auto t = std::make_shared<CWindCpTable>();
    CpRecordToTable(rec, *t);
    const auto d = dispatch::WrapTarget(dispatch::TypeKey<CWindCpTable>(), t);
    json j = json::object();
    for (const MemberInfo& m : d->Members())
        if (m.kind == MemberKind::PropertyGet) j[m.name] = CDbl(d->GetProperty(m.name));
    return j;
}

// Exact: the tool only carries the library's doubles through JSON text. The
// names must come in the order of the interface.
void ExpectSame(const json& got, const json& want) {
    ASSERT_EQ(got.size(), 71u) << got.dump();
    auto g = got.begin();
    for (const auto& [name, v] : want.items()) {
        EXPECT_EQ(g.key(), name);
        EXPECT_EQ((g++).value().get<double>(), v.get<double>()) << name;
    }
}

CpWindRecord Gabled(double theta, double alpha) {
    CpWindRecord rec;
    Get_Wind_Cp_Satteldach(theta, alpha, rec);
    return rec;
}

TEST_F(CliCp, BuiltInAnswerIsTheLibrarysRecordToTheLastBit) {
    // An exact row, one between rows with a sign change, a trough, and one
    // outside the table that clears everything.
    const struct {
        double theta, alpha;
        const char* args;
    } cases[] = {{0, 15, "--theta 0 --alpha 15"},
                 {0, 17.3, "--theta 0 --alpha 17.3"},
                 {90, -3.7, "--alpha -3.7 --theta 90"},
                 {0, 80, "--theta 0 --alpha 80"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const auto r = test::RunCli(std::string("cp gabled ") + c.args);
        ASSERT_EQ(r.status, 0) << r.out;
        ExpectSame(json::parse(r.out), Expected(Gabled(c.theta, c.alpha)));
    }
    EXPECT_NE(json::parse(test::RunCli("cp gabled --theta 0 --alpha 17.3").out)["Area_F10"].get<double>(), 0.0);
}

TEST_F(CliCp, StoreRowForNorm3EqualsTheBuiltInRow) {
    const auto store = test::RunCli("cp gabled --theta 0 --alpha 15 --store --norm 3");
    ASSERT_EQ(store.status, 0) << store.out;
    json got = json::parse(store.out);
    EXPECT_EQ(got["Norm"], 3);  // the row came from the store
    got["Norm"] = 0;
    ExpectSame(got, Expected(Gabled(0, 15)));
    // A standard without rows gives the zero record.
    const json none = json::parse(test::RunCli("cp gabled --theta 0 --alpha 15 --store --norm 999").out);
    for (const auto& [name, v] : none.items()) EXPECT_EQ(v.get<double>(), 0.0) << name;
}

TEST_F(CliCp, TableShowsTheZonesThatHoldValues) {
    const struct {
        const char* args;
        const char* table;
    } cases[] = {
        // Second values only where the zone has them; K to Ft and c_pi hold nothing.
        {"cp gabled --theta 0 --alpha 15 --table",
         "GetWindCpValues_Gabled_Roof: Theta = 0, Alpha = 15; built-in tables (DIN 1055-4:2005)\n"
         "Zone      cpe,10     cpe,1  cpe,10 2nd cpe,1 2nd\n"
         "F          0.200     0.200    -0.900    -2.000\n"
         "G          0.200     0.200    -0.800    -1.500\n"
         "H          0.200     0.200    -0.300    -0.300\n"
         "I         -0.400    -0.400\n"
         "J         -1.000    -1.500\n"},
        {"cp pent --theta 90 --alpha 15 --store --table",
         "GetWindCpValues_Pent_Roof: Theta = 90, Alpha = 15; coefficient store, Norm 3\n"
         "Zone      cpe,10     cpe,1  cpe,10 2nd cpe,1 2nd\n"
         "F         -2.400    -2.900\n"
         "G         -1.900    -2.500\n"
         "H         -0.800    -1.200\n"
         "I         -0.700    -1.200\n"
         "Ft        -1.600    -2.400\n"},
        {"cp hipped --theta 0 --alpha 80 --table",
         "GetWindCpValues_Hipped_Roof: Theta = 0, Alpha = 80; built-in tables (DIN 1055-4:2005)\n"
         "No coefficients: the tables hold no row for this request.\n"},
    };
    for (const auto& c : cases) {
        const auto r = test::RunCli(c.args);
        EXPECT_EQ(r.status, 0) << c.args;
        EXPECT_EQ(r.out, c.table) << c.args;
    }
}

TEST_F(CliCp, JsonLinesAnswerEachLineFromAFreshRequest) {
    const std::string input =
        R"({"form":"gabled","Theta":0,"Alpha":17.3,"Norm":3,"UseCpeDB":false})" "\n"
        "\n"
        R"({"form":"gabled","theta":0,"HzuD":1})" "\n"
        R"({"form":"wall","hzud":2.5})" "\n"
        R"({"form":"gabled","Alpha":15,"UseCpeDB":true,"Norm":999})" "\n"
        R"({"form":"gabled","Theta":90,"Alpha":17.3})" "\n"
        R"({"FORM":"gabled","ALPHA":15})" "\n";
    const auto r = test::RunCli("cp --jsonl", false, input);
    ASSERT_EQ(r.status, 0) << r.out;
    std::istringstream lines(r.out);
    std::vector<json> a;
    for (std::string line; std::getline(lines, line);) a.push_back(json::parse(line));
    ASSERT_EQ(a.size(), 6u);
    ExpectSame(a[0], Expected(Gabled(0, 17.3)));
    EXPECT_EQ(a[1]["error"]["number"], 5);
    EXPECT_TRUE(Has(a[1]["error"]["description"], "HzuD")) << a[1];
    CpWindRecord wall;
    Get_Wind_Cp_Wand(2.5, wall);
    ExpectSame(a[2], Expected(wall));
    ExpectSame(a[3], Expected(CpWindRecord{}));  // no rows for that standard
    // Neither a line's Norm and store nor an answer's Theta carry over.
    ExpectSame(a[4], Expected(Gabled(90, 17.3)));
    EXPECT_EQ(a[4]["Theta"], 90.0);
    ExpectSame(a[5], Expected(Gabled(0, 15)));

    const struct {
        const char* line;
        int number;
    } bad[] = {{"[1]", 5}, {R"({"Theta":1})", 5}, {R"({"form":"dome"})", 5},
               {R"({"form":"flat","Theta":1})", 5}, {R"({"form":"flat","Tetha":1})", 438},
               {R"({"form":"wall","HzuD":"1"})", 13}, {R"({"form":"inside","TrTyp":1.5})", 13},
               {R"({"form":"inside","TrTyp":40000})", 6}, {R"({"form":"wall","UseCpeDB":1})", 13},
               {R"({"form":"wall","HzuD":1,"hzud":2})", 5}};
    std::string batch;
    for (const auto& b : bad) batch += std::string(b.line) + "\n";
    const auto e = test::RunCli("cp --jsonl", false, batch);
    std::istringstream out(e.out);
    std::string line;
    for (const auto& b : bad) {
        ASSERT_TRUE(std::getline(out, line)) << b.line;
        EXPECT_EQ(json::parse(line)["error"]["number"], b.number) << b.line << " -> " << line;
    }
}

TEST_F(CliCp, BadCommandLinesAreRefusedWithStatus2AndNoOutput) {
    const struct {
        const char* args;
        const char* says;
    } cases[] = {
        {"cp gabled --h-d 1", "--h-d is not read for the gabled roof"},
        {"cp wall --theta 0", "--theta"},
        {"cp flat --trtyp 2", "--trtyp"},
        {"cp dome", "unknown form 'dome'"},
        {"cp", "name a form"},
        {"cp gabled --alpha 2x", "--alpha: '2x' is not a number"},
        {"cp gabled --alpha nan", "--alpha"},
        {"cp gabled --alpha 1e999", "--alpha"},
        {"cp inside --store --trtyp 1.5", "--trtyp"},
        {"cp gabled --store --norm 70000", "--norm"},
        {"cp --jsonl gabled", "--jsonl"},
        {"cp gabled 15", "unexpected argument '15'"},
        {"cp gabled --thetaa 15", "unknown option '--thetaa'"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const auto quiet = test::RunCli(c.args);
        EXPECT_EQ(quiet.status, 2);
        EXPECT_EQ(quiet.out, "");
        EXPECT_TRUE(Has(test::RunCli(c.args, true).out, c.says)) << test::RunCli(c.args, true).out;
    }
    const auto inside = test::RunCli("cp inside --mue 0.3", true);
    EXPECT_EQ(inside.status, 0);
    EXPECT_TRUE(Has(inside.out, "without --store the record stays empty")) << inside.out;
    const auto help = test::RunCli("cp --help");
    EXPECT_EQ(help.status, 0);
    for (const char* o : {"--hp-h", "--alpha-tr", "--jsonl", "--table"}) EXPECT_TRUE(Has(help.out, o)) << o;
}

TEST_F(CliCp, LibraryErrorsGiveTheirNumberAndStatus1) {
    const auto program = test::FreshFolder("program");
    const fs::path built = ProgramFolder();
    fs::copy(built / "deu", program / "deu", fs::copy_options::recursive);
    fs::copy_file(built / "language.ini", program / "language.ini");
    std::string line;
    for (int i = 0; i < kCpeTextFields; ++i) line += i == 3 ? "steep;" : "0;";
    test::WriteFile(program / "qvrlcpe.txt", line + "\n");
    setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);

    const auto bad = test::RunCli("cp gabled --theta 0 --alpha 15 --store", true);
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(Has(bad.out, "error 13")) << bad.out;
    EXPECT_FALSE(Has(bad.out, "{")) << bad.out;
    const auto batch = test::RunCli("cp --jsonl", false,
                                    R"({"form":"gabled","Alpha":15,"UseCpeDB":true})" "\n"
                                    R"({"form":"gabled","Alpha":15})" "\n");
    std::istringstream out(batch.out);
    std::getline(out, line);
    EXPECT_EQ(json::parse(line)["error"]["number"], 13) << line;
    std::getline(out, line);
    ExpectSame(json::parse(line), Expected(Gabled(0, 15)));
}

// A coefficient store that cannot be opened is an error naming the file, never
// "no coefficients"; the built-in route does not need it.
TEST_F(CliCp, AStoreThatCannotBeOpenedIsAnErrorNamingTheFile) {
    const auto program = test::FreshFolder("program");
    const fs::path built = ProgramFolder();
    fs::copy(built / "deu", program / "deu", fs::copy_options::recursive);
    fs::copy_file(built / "language.ini", program / "language.ini");
    setenv("QVRL_PROGRAM_FOLDER", program.c_str(), 1);
    const std::string file = (program / "qvrl.mdb").string();
    const std::string request = "cp gabled --theta 0 --alpha 15 --store";
    for (const test::BadFile& b : test::kBadFiles) {
        SCOPED_TRACE(b.what);
        test::OwnTempFolder tmp(b.what);
        test::PlaceBadFile(b, program / "qvrl.mdb");
        const std::string said = "qvroofload cp: error " + std::to_string(b.number) + ": " + file;

        auto r = test::RunCli(request + " --table", true);
        EXPECT_EQ(r.status, 1);
        EXPECT_TRUE(Has(r.out, said)) << r.out;
        r = test::RunCli(request);
        EXPECT_EQ(r.status, 1);
        const json j = json::parse(r.out);
        EXPECT_EQ(j["error"]["number"], b.number) << r.out;
        EXPECT_EQ(j["error"]["file"], file);
        EXPECT_FALSE(Has(r.out, "No coefficients")) << r.out;

        r = test::RunCli("cp --jsonl", false,
                         R"({"form":"gabled","Alpha":15,"UseCpeDB":true})" "\n"
                         R"({"form":"gabled","Alpha":15})" "\n");
        EXPECT_EQ(r.status, 0);
        std::istringstream lines(r.out);
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(json::parse(line)["error"]["number"], b.number) << line;
        std::getline(lines, line);
        ExpectSame(json::parse(line), Expected(Gabled(0, 15)));
    }
}

}  // namespace
