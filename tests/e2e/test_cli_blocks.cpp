#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

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
        // Numbers the file's pictures would turn into other numbers.
        {R"({"wind":{"h":-1e100}})", "wind.h = -1e+100 does not fit its block file field of 10 characters", ""},
        {R"({"wind":{"h":-1234567.5}})", "wind.h = -1234567.5 does not fit", ""},
        {R"({"dead":{"g0":1e7}})", "dead.g0 = 10000000.0 does not fit", ""},
        {R"({"wind":{"h":1e400}})", "a number beyond the range of a double", ""},
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
    // Deep nesting is refused before the parser could run out of stack.
    test::WriteFile(Path("deep.json"), "{\"wind\":" + std::string(100000, '[') + std::string(100000, ']') + "}");
    const auto r = test::RunCli("blocks write '" + Path("keep.asc") + "' < '" + Path("deep.json") + "'", true);
    EXPECT_EQ(r.status, 2) << r.out;
    EXPECT_NE(r.out.find("deeper than 64 levels"), std::string::npos) << r.out;
    EXPECT_EQ(test::ReadFile(Path("keep.asc")), kExample);
}

TEST_F(CliBlocks, FilesThatAreNoBlockFilesAreBadInput) {
    ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0644), 0);
    std::filesystem::create_symlink("nowhere", dir_ / "dangling");
    std::filesystem::create_directories(dir_ / "folder");
    const bool haveDevice = ::mknod(Path("full").c_str(), S_IFCHR | 0666, makedev(1, 7)) == 0;
    struct Case {
        const char* command;
        const char* name;
        const char* says;
    } cases[] = {
        {"read", "none.asc", "no such file"},   {"read", "folder", "is a folder"},
        {"read", "fifo", "not a regular file"}, {"write", "fifo", "is a FIFO"},
        {"write", "dangling", "symbolic link to nothing"}, {"write", "folder", "is a folder"},
        {"write", "full", "is a device"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.command) + " " + c.name);
        if (std::string(c.name) == "full" && !haveDevice) continue;  // mknod needs privileges
        const auto r = test::RunCli("blocks " + std::string(c.command) + " '" + Path(c.name) + "'", true,
                                    R"({"wind":{}})");
        EXPECT_EQ(r.status, 2) << r.out;
        EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
    }
    EXPECT_FALSE(std::filesystem::exists(Path("none.asc")));
    EXPECT_FALSE(std::filesystem::exists(dir_ / "nowhere"));
    EXPECT_TRUE(std::filesystem::is_fifo(dir_ / "fifo"));
    if (haveDevice) {
        EXPECT_TRUE(std::filesystem::is_character_file(dir_ / "full"));
    }
}

TEST_F(CliBlocks, FileProblemsAreRuntimeErrors) {
    test::WriteFile(Path("empty.asc"), "");
    auto r = test::RunCli("blocks read '" + Path("empty.asc") + "'", true);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("error 62"), std::string::npos) << r.out;

    r = test::RunCli("blocks write '" + Path("no/such/folder.asc") + "'", true, R"({"wind":{}})");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.out.find("Path not found"), std::string::npos) << r.out;
}

TEST_F(CliBlocks, CharactersWindows1252LacksAreNamedOrKeptAsUtf8) {
    const std::string old = "VERSION 004 001\r\nDEADLOAD 1 0 'Stra\xDF" "e' 0 '' 0 ''\r\n";
    const std::string in = R"({"dead":{"Norm":1,"Descr0":"Stra\u00dfe","Descr2":"\u03a9"}})";
    test::WriteFile(Path("w.asc"), old);
    auto r = test::RunCli("blocks write '" + Path("w.asc") + "'", true, in);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("warning: dead.Descr2 holds characters that Windows-1252"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("Descr0"), std::string::npos) << r.out;
    EXPECT_NE(test::ReadFile(Path("w.asc")).find("'Stra\xDF" "e'   0.000000 ''   0.000000 '?'"), std::string::npos);

    test::WriteFile(Path("w.asc"), old);
    r = test::RunCli("blocks write --utf8 '" + Path("w.asc") + "'", true, in);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out, "");
    EXPECT_NE(test::ReadFile(Path("w.asc")).find("'Stra\xC3\x9F" "e'   0.000000 ''   0.000000 '\xCE\xA9'"),
              std::string::npos);
}

// Runs the tool on a file with input from a file, without a shell, so that it can be killed.
pid_t Spawn(const std::string& file, const std::string& input, const std::string& only) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int in = ::open(input.c_str(), O_RDONLY);
        const int null = ::open("/dev/null", O_WRONLY);
        if (in < 0 || null < 0) ::_exit(97);
        ::dup2(in, 0);
        ::dup2(null, 1);
        ::dup2(null, 2);
        ::execl(QVRL_CLI_PATH, QVRL_CLI_PATH, "blocks", "write", "--only", only.c_str(), file.c_str(),
                static_cast<char*>(nullptr));
        ::_exit(96);
    }
    return pid;
}

int Reap(pid_t pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    return status;
}

TEST_F(CliBlocks, KilledAndConcurrentWritersNeverMixOrLoseUpdates) {
    // Two writers of a roof session with dead loads, each with its own town
    // and description. Killed at any moment, the file holds the old text or
    // one writer's whole result, never one's roof with the other's dead load.
    const std::string f = Path("k.asc");
    test::WriteFile(Path("a.json"), R"({"ctrlNorm":1,"town":{"AGS":"A"},"dead":{"Norm":1,"Descr0":"A"}})");
    test::WriteFile(Path("b.json"), R"({"ctrlNorm":1,"town":{"AGS":"B"},"dead":{"Norm":1,"Descr0":"B"}})");
    const std::string start = kExample + "DEADLOAD 1 0.0001 'start' 0 '' 0 ''\r\n";
    test::WriteFile(f, start);
    std::set<std::string> allowed = {start};
    for (const char* first : {"a", "b"})
        for (const char* second : {"", "a", "b"}) {
            test::WriteFile(f, start);
            ASSERT_EQ(Reap(Spawn(f, Path(std::string(first) + ".json"), "roof,dead")), 0);
            if (*second) {
                ASSERT_EQ(Reap(Spawn(f, Path(std::string(second) + ".json"), "roof,dead")), 0);
            }
            allowed.insert(test::ReadFile(f));
        }
    ASSERT_EQ(allowed.size(), 3u);  // start, A's result, B's result

    // Kill at moments spread over one writer's run.
    test::WriteFile(f, start);
    const auto t0 = std::chrono::steady_clock::now();
    Reap(Spawn(f, Path("a.json"), "roof,dead"));
    const auto span = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - t0);
    std::mt19937 rng(12345);
    std::uniform_int_distribution<int64_t> delay(0, std::max<int64_t>(span.count(), 1));
    int kills = 0;
    for (int round = 0; kills < 200 && round < 1000; ++round) {
        const pid_t a = Spawn(f, Path("a.json"), "roof,dead");
        const pid_t b = Spawn(f, Path("b.json"), "roof,dead");
        ::usleep(static_cast<useconds_t>(delay(rng)));
        ::kill(a, SIGKILL);
        if (round % 2 == 0) ::kill(b, SIGKILL);
        kills += WIFSIGNALED(Reap(a)) ? 1 : 0;
        kills += WIFSIGNALED(Reap(b)) ? 1 : 0;
        const std::string now = test::ReadFile(f);
        ASSERT_TRUE(allowed.contains(now)) << "round " << round << ":\n" << now;
    }
    EXPECT_GE(kills, 200);

    // The next writer clears what the killed ones left behind.
    ASSERT_EQ(Reap(Spawn(f, Path("a.json"), "roof,dead")), 0);
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir_)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"a.json", "b.json", "k.asc"}));

    // Two writers of different blocks at once: the result is that of one
    // order or the other (a roof rewrite drops the dead load block, so the
    // order shows), never one that lost the other's update.
    test::WriteFile(Path("roof.json"), R"({"ctrlNorm":1,"town":{"AGS":"R"}})");
    test::WriteFile(Path("dead.json"), R"({"dead":{"Norm":1,"Descr0":"D"}})");
    std::set<std::string> serial;
    for (const char* first : {"roof", "dead"}) {
        const std::string second = std::string(first) == "roof" ? "dead" : "roof";
        test::WriteFile(f, start);
        ASSERT_EQ(Reap(Spawn(f, Path(std::string(first) + ".json"), first)), 0);
        ASSERT_EQ(Reap(Spawn(f, Path(second + ".json"), second)), 0);
        serial.insert(test::ReadFile(f));
    }
    ASSERT_EQ(serial.size(), 2u);
    for (int round = 0; round < 20; ++round) {
        test::WriteFile(f, start);
        const pid_t a = Spawn(f, Path("roof.json"), "roof");
        const pid_t b = Spawn(f, Path("dead.json"), "dead");
        ASSERT_EQ(Reap(a), 0);
        ASSERT_EQ(Reap(b), 0);
        const std::string now = test::ReadFile(f);
        EXPECT_TRUE(serial.contains(now)) << "round " << round << ":\n" << now;
    }
}

}  // namespace
