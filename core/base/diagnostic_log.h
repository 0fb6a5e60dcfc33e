#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tolvane {

// What the log's opening lines and each line's thread field need from the
// operating system; start-up fills it from platform/.
struct LogEnvironment {
    std::string executablePath;
    std::uint32_t processId = 0;
    std::function<std::uint32_t()> threadId;
};

// The process-wide diagnostic log "<program>_log.txt" beside the program.
// It is opened on the first report, so a run that never reports leaves no
// file, and every run starts a fresh one.
class DiagnosticLog {
  public:
    static constexpr std::size_t kMaxMessageBytes = 1023;

    static DiagnosticLog& Instance();
    static void SetEnvironment(LogEnvironment environment);

    // Where the next line says it comes from: the part of the path after the
    // last separator, and the line number.
    static void SetPendingSource(const char* path, int line);

    // printf-style; the message is cut to 1023 bytes of Windows-1252.
    void Report(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Adds one timing to a counter; Close writes every counter's statistics.
    void RecordTiming(int counterNumber, std::int64_t milliseconds);

    // Writes the counter statistics and "Log finished", then closes the file.
    void Close();

    bool IsOpen() const { return file_ != nullptr; }

    DiagnosticLog(const DiagnosticLog&) = delete;
    DiagnosticLog& operator=(const DiagnosticLog&) = delete;

  private:
    struct Counter {
        int number = 0;
        std::int64_t count = 0;
        std::int64_t minimum = 0;
        std::int64_t maximum = 0;
        std::int64_t total = 0;
    };

    DiagnosticLog();
    ~DiagnosticLog();

    void Open();
    void WriteRaw(const std::string& text);
    void WriteLine(const std::string& message);

    std::FILE* file_ = nullptr;
    std::mutex mutex_;
    std::vector<Counter> counters_;
};

}  // namespace tolvane
