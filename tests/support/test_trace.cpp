#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <regex>
#include <sstream>

#include "TestEnv.h"
#include "support/CTrace.h"
#include "support/errors.h"

using namespace qvrl;

namespace {

class Trace : public test::IsolatedTest {
protected:
    std::string Log() { return test::ReadFile(TraceFileName()); }
};

TEST_F(Trace, EntryFormat) {
    struct {
        const char* name;
        std::optional<Variant> value;
        const char* prefix;
        bool lineEnd;
        const char* text;
    } cases[] = {
        {"", std::nullopt, "abc", true, "ABC: \n"},
        {"x", Variant(int16_t{1}), "", false, "x=1 "},
        {"cnt(mCpWind)=", Variant(int32_t{7}), "Get_Wind_Cp_Satteldach_FromMdb", true,
         "GET_WIND_CP_SATTELDACH_FROMMDB: cnt(mCpWind)==7 \n"},
        {"", std::nullopt, "   ", true, "\n"},                       // blank prefix writes nothing
        {"name", Variant("  padded  "), "", true, "name=padded \n"},  // the value is trimmed
        {"name", Variant(), "", false, "name= "},                     // empty value: only its blank
        {"SQL=", Variant("SELECT * FROM cpe"), "p ", false, "P : SQL==SELECT * FROM cpe "},
        {"v", Variant(2.5), "", false, "v=2.5 "},
        {"b", Variant(true), "", false, "b=True "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        std::filesystem::remove(TraceFileName());
        EXPECT_EQ(WriteTrace(c.name, c.value, c.prefix, c.lineEnd, false), 0);
        EXPECT_EQ(Log(), c.text);
    }
}

TEST_F(Trace, AnOpenLineIsContinuedByTheNextEntry) {
    WriteTrace("x", Variant(int16_t{1}), "", false, false);
    WriteTrace("y", Variant(int16_t{2}), "", true, false);
    WriteTrace("", std::nullopt, "next", true, false);
    EXPECT_EQ(Log(), "x=1 y=2 \nNEXT: \n");
}

TEST_F(Trace, TimeStampPrecedesTheEntry) {
    WriteTrace("", std::nullopt, "CRoofLoad_Initialize", true, true);
    const std::regex re("Now=\\d{4}\\.\\d{2}\\.\\d{2} \\d{2}:\\d{2}:\\d{2} CROOFLOAD_INITIALIZE: \n");
    EXPECT_TRUE(std::regex_match(Log(), re)) << Log();
}

TEST_F(Trace, StepsAndClosedLog) {
    CTrace t;
    EXPECT_EQ(t.Trace("x", Variant(1.0), "", true), -99);
    EXPECT_EQ(t.CloseLogFile(), -99);
    const std::string file = (appdata_ / "own.log").string();
    EXPECT_EQ(t.OpenLogFile(file, true), 1);
    EXPECT_EQ(t.OpenLogFile(file, true), -99);
    EXPECT_EQ(t.Trace("", std::nullopt, "", false), 0);
    EXPECT_EQ(t.Trace("", std::nullopt, "p", false), 1);
    EXPECT_EQ(t.Trace("n", Variant(1.0), "p", false), 2);
    EXPECT_EQ(t.Trace("n", Variant(1.0), "", true), 3);
    EXPECT_EQ(t.CloseLogFile(), 0);
    EXPECT_EQ(t.Trace("late", Variant(1.0), "", true), -99);
    EXPECT_EQ(test::ReadFile(file), "P: P: n=1 n=1 \n");
}

TEST_F(Trace, AppendKeepsAndRewriteTruncates) {
    const std::string file = (appdata_ / "own.log").string();
    test::WriteFile(file, "old\n");
    {
        CTrace t;
        t.OpenLogFile(file, true);
        t.Trace("a", Variant(1.0), "", true);
    }  // closed by its destructor
    EXPECT_EQ(test::ReadFile(file), "old\na=1 \n");
    CTrace t;
    t.OpenLogFile(file, false);
    t.Trace("b", Variant(2.0), "", true);
    t.CloseLogFile();
    EXPECT_EQ(test::ReadFile(file), "b=2 \n");
}

TEST_F(Trace, AnUnwritableLogNeverFailsTheTracedCall) {
    CTrace t;
    try {
        t.OpenLogFile((appdata_ / "no-such-folder" / "x.log").string(), true);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 76);
    }
    // A folder in place of the log file: the entry is lost, the call goes on.
    std::filesystem::create_directories(TraceFileName());
    EXPECT_EQ(WriteTrace("x", Variant(1.0), "", true, true), 0);
    EXPECT_TRUE(std::filesystem::is_directory(TraceFileName()));
}

TEST_F(Trace, LogPastTheLimitIsRotatedBeforeTheNextEntry) {
    const std::string log = TraceFileName(), old = log + ".1";
    std::filesystem::create_directories(std::filesystem::path(log).parent_path());
    struct Case {
        int64_t size;
        bool rotated;
    } cases[] = {{kTraceLogLimit, false}, {kTraceLogLimit + 1, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        test::WriteFile(old, "older\n");
        std::filesystem::remove(log);
        test::WriteFile(log, "first\n");
        std::filesystem::resize_file(log, static_cast<uintmax_t>(c.size));  // sparse: costs no disk
        WriteTrace("x", Variant(int16_t{1}), "", true);
        if (c.rotated) {
            EXPECT_EQ(Log(), "x=1 \n");
            EXPECT_EQ(static_cast<int64_t>(std::filesystem::file_size(old)), c.size);  // the one old file replaced
        } else {
            EXPECT_EQ(static_cast<int64_t>(std::filesystem::file_size(log)), c.size + 5);
            EXPECT_EQ(test::ReadFile(old), "older\n");
        }
    }
}

TEST_F(Trace, ProcessesRotatingAtOnceRotateOnce) {
    // Several processes find the log full at the same moment; one of them
    // renames it, and every entry lands whole in the new file. Were a second
    // rename to follow, it would move the new file over the full one.
    const std::string log = TraceFileName(), old = log + ".1";
    std::filesystem::create_directories(std::filesystem::path(log).parent_path());
    const int kChildren = 4;
    for (int round = 0; round < 10; ++round) {
        SCOPED_TRACE(round);
        std::filesystem::remove(old);
        test::WriteFile(log, "full\n");
        std::filesystem::resize_file(log, static_cast<uintmax_t>(kTraceLogLimit + 1));
        int gate[2];
        ASSERT_EQ(::pipe(gate), 0);
        for (int c = 0; c < kChildren; ++c) {
            const pid_t pid = fork();
            ASSERT_GE(pid, 0);
            if (pid == 0) {
                ::close(gate[1]);
                char b;
                (void)::read(gate[0], &b, 1);  // released together when the parent closes its end
                WriteTrace("c", Variant(int16_t{1}), "", true);
                _exit(0);
            }
        }
        ::close(gate[0]);
        ::close(gate[1]);
        for (int c = 0; c < kChildren; ++c) {
            int status = 0;
            wait(&status);
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        }
        EXPECT_EQ(static_cast<int64_t>(std::filesystem::file_size(old)), kTraceLogLimit + 1);
        std::string expected;
        for (int c = 0; c < kChildren; ++c) expected += "c=1 \n";
        EXPECT_EQ(Log(), expected);
    }
}

TEST_F(Trace, TwoProcessesNeverTearAnEntry) {
    // Each child writes many entries made of one repeated letter; every line
    // read back must be whole.
    const int kChildren = 4, kEntries = 300;
    const std::string payload(600, '.');
    for (int c = 0; c < kChildren; ++c) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            const std::string letter(1, static_cast<char>('A' + c));
            int rc = 0;
            try {
                for (int i = 0; i < kEntries; ++i) WriteTrace(letter, Variant(letter + payload + letter), letter, true);
            } catch (...) {
                rc = 1;
            }
            _exit(rc);
        }
    }
    for (int c = 0; c < kChildren; ++c) {
        int status = 0;
        wait(&status);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    std::istringstream in(Log());
    std::string line;
    int lines = 0;
    while (std::getline(in, line)) {
        ++lines;
        ASSERT_FALSE(line.empty());
        const char l = line[0];
        EXPECT_EQ(line, std::string(1, l) + ": " + l + "=" + l + payload + l + " ") << "torn at line " << lines;
    }
    EXPECT_EQ(lines, kChildren * kEntries);
}

}  // namespace
