#include "core/base/diagnostic_log.h"

#include <gtest/gtest.h>

#include <regex>

#include "tests/core/test_support.h"

namespace tolvane {
namespace {

// The log is a process-wide singleton, so its whole life is checked in a
// child process, which ends without closing the log itself.
void WriteSomeLines(const std::string& longMessage) {
    DiagnosticLog::SetEnvironment({"/opt/tolvane/tolvane", 0x1234, [] { return 0xABCDu; }});
    DiagnosticLog::SetPendingSource("/src/core/app/start.cpp", 42);
    DiagnosticLog::Instance().Report("value %d", 7);
    DiagnosticLog::Instance().Report("%s", longMessage.c_str());
    DiagnosticLog::Instance().RecordTiming(3, 10);
    DiagnosticLog::Instance().RecordTiming(3, 31);
    std::exit(0);
}

TEST(DiagnosticLogTest, WritesHeaderLinesStatisticsAndStartsFreshEachRun) {
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    testing::WriteFileBytes(folder.File("tolvane_log.txt"), "old run\r\n");
    const std::string longMessage(1500, 'x');
    EXPECT_EXIT(WriteSomeLines(longMessage), ::testing::ExitedWithCode(0), "");

    const std::string log = testing::ReadFileBytes(folder.File("tolvane_log.txt"));
    EXPECT_EQ(log.find("old run"), std::string::npos);
    EXPECT_EQ(log.rfind("=============================================\r\n", 0), 0u);
    EXPECT_TRUE(std::regex_search(
        log,
        std::regex(
            "Log is started on \\d\\d\\.\\d\\d\\.\\d{4}, at \\d\\d:\\d\\d:\\d\\d:\\d{3}\r\n")));
    EXPECT_NE(log.find("Executable: /opt/tolvane/tolvane (ProcID: 0x00001234), compile time: "),
              std::string::npos);
    EXPECT_TRUE(std::regex_search(log, std::regex("\\d\\d:\\d\\d:\\d\\d\\(\\d+\\) thr 0x0000ABCD : "
                                                  "value 7\t\\(from start\\.cpp,42\\)\r\n")));
    // The message is cut to 1023 bytes.
    EXPECT_NE(log.find(" : " + std::string(1023, 'x') + "\t(from"), std::string::npos);
    EXPECT_EQ(log.find(std::string(1024, 'x')), std::string::npos);
    EXPECT_NE(
        log.find("Counter 3 statistics\r\n\tCounts: 2,\r\n\tMinTime: 10 ms,\r\n\tMaxTime: 31 ms,"
                 "\r\n\tTotalTime: 41 ms,\r\n\tAverageTime: 20 ms"),
        std::string::npos);
    // The end of the run writes the statistics and, last, "Log finished".
    EXPECT_TRUE(std::regex_search(
        log, std::regex("AverageTime: 20 ms\t\\(from start\\.cpp,42\\)\r\n"
                        "\\d\\d:\\d\\d:\\d\\d\\(\\d+\\) thr 0x0000ABCD : Log finished\t"
                        "\\(from start\\.cpp,42\\)\r\n$")));
}

}  // namespace
}  // namespace tolvane
