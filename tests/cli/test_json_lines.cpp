// The --jsonl loops: `call`'s plain reader must answer every line as the
// general reader always has, and the answers of `call` and `cp` must read as
// the JSON library dumps them. The expected answers below were written by
// the loop before it had a plain reader.

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <utility>
#include <sstream>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "commands.h"
#include "e2e/CliRunner.h"
#include "json_lines.h"

namespace qvrl::cli {
namespace {

struct Exchange {
    const char* request;
    const char* answer;
};

// Bad JSON, wrong shapes and types, unknown classes and members, numbers at
// the edges of what the plain reader takes, and lines it leaves to the
// general one (escapes, nesting, repeated keys).
const Exchange kExchanges[] = {
        {R"j(not json)j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":5})j",
         R"j({"error":{"number":5,"description":"malformed request: \"call\" must be a text such as \"CWindSnow.SnowMue1\""}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":{"Alpha":3}})j",
         R"j({"error":{"number":5,"description":"malformed request: \"args\" must be an array"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[{"a":1}]})j",
         R"j({"error":{"number":13,"description":"malformed request: an argument cannot be an object"}})j"},
        {R"j({"call":"CWindSnow"})j",
         R"j({"error":{"number":5,"description":"the call must be Class.Member, not 'CWindSnow'"}})j"},
        {R"j({"call":"CWindSnow.Nope","args":[1]})j",
         R"j({"error":{"number":438,"description":"CWindSnow has no member 'Nope'"}})j"},
        {R"j({"call":"CNope.X","args":[]})j",
         R"j({"error":{"number":91,"description":"unknown class 'CNope'"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[1,2]})j",
         R"j({"error":{"number":450,"description":"CWindSnow.SnowMue1 takes 1 arguments, not 2"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":["abc"]})j",
         R"j({"error":{"number":13,"description":"Type mismatch"}})j"},
        {R"j({"foo":1,)j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[45]} x)j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[45],})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[045]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[1e400]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","extra":1})j",
         R"j({"error":{"number":5,"description":"malformed request: unknown key \"extra\" (keys: call, args)"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[45],"call":"CWindSnow.SnowMue2"})j",
         R"j({"result":1.6})j"},
        {R"j({"call":"CWindSnow.SnowMue\u0031","args":[45]})j",
         R"j({"result":0.4})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[true]})j",
         R"j({"result":0.0})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[null]})j",
         R"j({"result":0.8})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[-0]})j",
         R"j({"result":0.8})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[ 45 , ]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j(  {"args":[30], "call" : "cwindsnow.snowmue1" }  )j",
         R"j({"result":0.8})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,9007199254740993]})j",
         R"j({"error":{"number":6,"description":"malformed request: Overflow: 9007199254740993 lies outside every Basic number type (beyond 2^53 in size)"}})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,123456789012345]})j",
         R"j({"result":999.0})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,-1234567890123456]})j",
         R"j({"result":5.040064996308784e+24})j"},
        {R"j([1,2])j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[45]}{})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":["\u00e4"]})j",
         R"j({"error":{"number":13,"description":"Type mismatch"}})j"},
        {R"j({"call":"CWindSnow.SnowBag_EN_1991_1_3","args":[54,1.2,1.5,0,0,0]})j",
         R"j({"result":null,"out":{"mue1":0.8,"mue2":2.5,"LsInM":3.0}})j"},
        {R"j({"call":"CWindSnow.WindVelocityToPressure","args":[1e200]})j",
         R"j({"error":{"number":438,"description":"CWindSnow has no member 'WindVelocityToPressure'"}})j"},
        {R"j({"call":"CWindSnow.Version","args":[]})j",
         R"j({"error":{"number":438,"description":"CWindSnow has no member 'Version'"}})j"},
        {R"j({"call":"CWindSnow.SnowZoneNames2005","args":[[],[]]})j",
         R"j({"result":null,"out":{"sName":["","1","1a","2","2a","3"],"Index":[0,1,11,2,21,3]}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[1.5E+1]})j",
         R"j({"result":0.8})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[-]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[1.]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[.5]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[+5]})j",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {"{\"call\":\"CWindSnow.SnowMue1\",\"args\":[\"a\tb\"]}",
         R"j({"error":{"number":5,"description":"malformed request: not a JSON object"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1"})j",
         R"j({"error":{"number":450,"description":"CWindSnow.SnowMue1 takes 1 arguments, not 0"}})j"},
        {R"j({"args":[45]})j",
         R"j({"error":{"number":5,"description":"malformed request: \"call\" must be a text such as \"CWindSnow.SnowMue1\""}})j"},
        {R"j({})j",
         R"j({"error":{"number":5,"description":"malformed request: \"call\" must be a text such as \"CWindSnow.SnowMue1\""}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[0.1,2e-5]})j",
         R"j({"error":{"number":450,"description":"CWindSnow.SnowMue1 takes 1 arguments, not 2"}})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,5e-324]})j",
         R"j({"result":0.85})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,1e-400]})j",
         R"j({"result":0.85})j"},
        {R"j({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2.5,400]})j",
         R"j({"result":1.214259002770083})j"},
        {R"j({"call":"CWindSnow.WindPressure_DIN1055_4_2005","args":[2,2,1e16,0]})j",
         R"j({"result":3260.4977268331418})j"},
        {R"j({"call":"CWindSnow.","args":[]})j",
         R"j({"error":{"number":5,"description":"the call must be Class.Member, not 'CWindSnow.'"}})j"},
        {R"j({"call":".SnowMue1","args":[]})j",
         R"j({"error":{"number":5,"description":"the call must be Class.Member, not '.SnowMue1'"}})j"},
        {R"j({"call":"CWindSnow.Nö\"pe","args":[]})j",
         R"j({"error":{"number":438,"description":"CWindSnow has no member 'Nö\"pe'"}})j"},
        {R"j({"call":"CWindSnow.SnowMue1","args":[45,"x\\ny"]})j",
         R"j({"error":{"number":450,"description":"CWindSnow.SnowMue1 takes 1 arguments, not 2"}})j"},
        {R"j({"call":"CWindSnow.SnowZoneNames2005","args":[["ä\"q"],[1]]})j",
         R"j({"result":null,"out":{"sName":["","1","1a","2","2a","3"],"Index":[0,1,11,2,21,3]}})j"},
        {R"j({"call":"cwindsnow.SNOWMUE1","args":[7.5e1]})j",
         R"j({"result":0.0})j"},
};

class CallJsonLines : public test::IsolatedTest {};

std::vector<std::string> Answers(const std::string& input) {
    std::istringstream in(input);
    std::ostringstream out;
    AnswerCallRequests(in, out);
    std::istringstream lines(out.str());
    std::vector<std::string> answers;
    for (std::string line; std::getline(lines, line);) answers.push_back(line);
    return answers;
}

TEST_F(CallJsonLines, AnswersEveryLineAsBefore) {
    // In one batch each call text is met first unknown, then known.
    std::string batch;
    for (const Exchange& e : kExchanges) batch += std::string(e.request) + "\n";
    for (const Exchange& e : kExchanges) batch += std::string(e.request) + "\r\n";
    const auto answers = Answers(batch);
    const size_t n = std::size(kExchanges);
    ASSERT_EQ(answers.size(), 2 * n);
    for (size_t i = 0; i < 2 * n; ++i) EXPECT_EQ(answers[i], kExchanges[i % n].answer) << kExchanges[i % n].request;
    // Bytes that are no UTF-8 are no JSON, in the call and in an argument.
    EXPECT_EQ(Answers("{\"call\":\"CWindSnow.Snow\xff\",\"args\":[]}\n{\"call\":\"CWindSnow.SnowMue1\",\"args\":[\"\xc3\xa4\xff\"]}\n"),
              std::vector<std::string>(2, R"({"error":{"number":5,"description":"malformed request: not a JSON object"}})"));
}

// What the plain reader takes, it reads as the general reader does: same
// types, same bits.
TEST_F(CallJsonLines, PlainReaderReadsAsTheGeneralReader) {
    const char* plain[] = {
        R"(["a b",true,false,null,0,-0,7,-7,2147483647,2147483648,-2147483649,123456789012345])",
        R"([0.1,-0.0,2.5e-3,1E+2,1e-310,4.9406564584124654e-324,1.7976931348623157e308,9007199254740993.0])",
        R"([ 1 , 2 ,	3 ])",
        "[]",
    };
    for (const char* args : plain) {
        SCOPED_TRACE(args);
        std::string call;
        std::vector<Variant> got;
        ASSERT_TRUE(ReadPlainRequest(std::string(R"({"call":"C.M","args":)") + args + "}", call, got));
        EXPECT_EQ(call, "C.M");
        const Variant want = VariantFromWord(args, 1);
        ASSERT_EQ(got.size(), want.asArray().size());
        for (size_t i = 0; i < got.size(); ++i) {
            const Variant& w = want.asArray()[i];
            ASSERT_EQ(got[i].type(), w.type()) << i;
            if (w.type() == Variant::Type::Double)
                EXPECT_EQ(std::bit_cast<uint64_t>(got[i].asDouble()), std::bit_cast<uint64_t>(w.asDouble())) << i;
            else
                EXPECT_EQ(got[i].toString(), w.toString()) << i;
        }
    }
    // Lines it leaves to the general reader, right ones among them.
    const char* left[] = {
        R"({"call":"C.M","args":[1234567890123456]})", R"({"call":"C.M","args":[1e400]})",
        R"({"call":"C.M","args":[1e-400]})",           R"({"call":"C.\u004d"})",
        R"({"call":"C.M","args":[[1]]})",              R"({"call":"C.M","args":[{}]})",
        R"({"call":"C.M","call":"C.N"})",              R"({"args":[],"args":[]})",
        R"({"call":"C.M","x":1})",                     R"({"call":"C.M","args":[1],})",
        R"({"call":"C.M"} x)",                         R"({"call":"C.Mä"})",
        R"({"call":"C.M","args":[01]})",               R"({"call":"C.M","args":[1.]})",
        R"({"call":"C.M","args":[-]})",                R"({"call":"C.M","args":[tru]})",
        R"({"args":[1]})",                             R"({})",
        R"({"call":5})",                               R"({"call":"C.M","args":null})",
        "{\"call\":\"C.M\",\"args\":[\"a\tb\"]}",      R"({"call":"C.M")",
    };
    for (const char* line : left) {
        std::string call;
        std::vector<Variant> args;
        EXPECT_FALSE(ReadPlainRequest(line, call, args)) << line;
    }
}

// Every value is written as dump() writes it, numbers at the turns of its
// notation above all.
TEST_F(CallJsonLines, AnswersAreWrittenAsDumpWritesThem) {
    const auto dump = [](const Variant& v) {
        return VariantToJson(v).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    };
    const double inf = std::numeric_limits<double>::infinity();
    std::vector<Variant> values = {
        Variant(),          Variant::Null(),       Variant(true),           Variant(false),
        Variant(int16_t{-32768}), Variant(int16_t{32767}), Variant(int32_t{INT32_MIN}), Variant(int32_t{INT32_MAX}),
        Variant(std::string("plain text")),        Variant(std::string("quote \" back \\ tab \t nl \n")),
        Variant(std::string("\x01 \x1f \x7f ä")),  Variant(std::string("bad \xff byte")),
        Variant(std::vector<Variant>{Variant(1.5), Variant(std::string("x"))}),
    };
    for (const double d : {0.0, -0.0, 1.0, -1.0, 0.1, 1.0 / 3.0, 2.5, 1e15, 1e16, 123456789012345.0,
                           1234567890123456.0, 1e-4, 1e-5, 0.00012345, 1e21, 1e100, 5e-324, DBL_MIN, DBL_MAX,
                           -DBL_MAX, inf, -inf, std::nan("")})
        values.emplace_back(d);
    std::mt19937_64 bits(20261124);
    for (int i = 0; i < 2000; ++i) values.emplace_back(std::bit_cast<double>(bits()));
    for (const Variant& v : values) {
        std::string out;
        AppendJson(out, v);
        EXPECT_EQ(out, dump(v));
    }
}

class CpJsonLines : public test::IsolatedTest {};

// A batch line is answered as the one request of the command line, whose
// answer is still the JSON library's dump.
TEST_F(CpJsonLines, AnswerAsTheCommandLineDoes) {
    const std::pair<const char*, const char*> requests[] = {
        {R"({"form":"gabled","Theta":0,"Alpha":17.3,"Norm":3,"UseCpeDB":false})", "cp gabled --theta 0 --alpha 17.3"},
        {R"({"form":"wall","hzud":2.5})", "cp wall --h-d 2.5"},
        {R"({"FORM":"hipped","ALPHA":15,"theta":90})", "cp hipped --alpha 15 --theta 90"},
        {R"({"form":"flat","hpZuH":0.05,"rZuH":0,"AlphaTr":0})", "cp flat --hp-h 0.05 --r-h 0 --alpha-tr 0"},
        {R"({"form":"pent","Theta":180,"Alpha":10})", "cp pent --theta 180 --alpha 10"},
    };
    std::string batch;
    for (const auto& r : requests) batch += std::string(r.first) + "\n";
    batch += R"({"form":"flat","Tetha":1})" "\n" R"({"form":"wall","HzuD":1,"hzud":2})" "\n";
    std::istringstream in(batch);
    std::ostringstream out;
    AnswerCpRequests(in, out);
    std::istringstream lines(out.str());
    std::string line;
    for (const auto& r : requests) {
        ASSERT_TRUE(std::getline(lines, line));
        const auto single = test::RunCli(r.second);
        EXPECT_EQ(single.status, 0) << r.second;
        EXPECT_EQ(line + "\n", single.out) << r.first;
    }
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line, R"j({"error":{"number":438,"description":"no input 'Tetha'; the flat roof reads hpZuH, rZuH, AlphaTr (and Norm, UseCpeDB)"}})j");
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line, R"({"error":{"number":5,"description":"hzud is given twice"}})");
    EXPECT_FALSE(std::getline(lines, line));
}

}  // namespace
}  // namespace qvrl::cli
