#include "core/base/diagnostic_log.h"

#include <chrono>
#include <cinttypes>
#include <cstdarg>
#include <functional>
#include <thread>

#include "core/base/file_time.h"
#include "core/base/program_paths.h"
#include "core/base/text_encoding.h"

namespace tolvane {
namespace {

LogEnvironment& Environment() {
    static LogEnvironment environment;
    return environment;
}

// The pending source of the next line; like the reporting code that sets
// them, these are plain globals shared by all threads.
const char* g_pendingPath = "";
int g_pendingLine = 0;

// Each thread's indent depth: the number of spaces, 0..100, before the
// thread's messages. No part of the program nests its reports, so every
// thread's depth stays 0.
thread_local std::size_t t_indentDepth = 0;

std::string FormatText(const char* format, va_list arguments) {
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string text = FormatText(format, arguments);
    va_end(arguments);
    return text;
}

CivilTime LocalNow() {
    return FileTimeToCivil(UtcToLocal(SystemClock().NowUtc()));
}

std::uint32_t CurrentThreadId() {
    const LogEnvironment& environment = Environment();
    if (environment.threadId) return environment.threadId();
    return static_cast<std::uint32_t>(std::hash<std::thread::id>()(std::this_thread::get_id()));
}

const char* SourceName(const char* path) {
    const char* name = path;
    for (const char* p = path; *p != '\0'; ++p) {
        if (*p == '/' || *p == '\\') name = p + 1;
    }
    return name;
}

}  // namespace

DiagnosticLog& DiagnosticLog::Instance() {
    static DiagnosticLog log;
    return log;
}

void DiagnosticLog::SetEnvironment(LogEnvironment environment) {
    Environment() = std::move(environment);
}

void DiagnosticLog::SetPendingSource(const char* path, int line) {
    g_pendingPath = path;
    g_pendingLine = line;
}

DiagnosticLog::DiagnosticLog() {
    Open();
}

// The log ends with the program, also through exit() after a critical
// error, so its statistics and "Log finished" are always the last lines.
DiagnosticLog::~DiagnosticLog() {
    Close();
}

void DiagnosticLog::Open() {
    std::lock_guard<std::mutex> lock(mutex_);
    const std::string path = SettingsFileWithSuffix("_log.txt");
    std::remove(path.c_str());
    file_ = std::fopen(path.c_str(), "ab");
    if (file_ == nullptr) return;
    // Unbuffered, so that the lines are on disk even when the process ends
    // abruptly right after a critical error.
    std::setvbuf(file_, nullptr, _IONBF, 0);

    const CivilTime now = LocalNow();
    WriteRaw("=============================================\r\n");
    WriteRaw(Format("Log is started on %02u.%02u.%04u, at %02u:%02u:%02u:%03u\r\n",
                    static_cast<unsigned>(now.day), static_cast<unsigned>(now.month),
                    static_cast<unsigned>(now.year), static_cast<unsigned>(now.hour),
                    static_cast<unsigned>(now.minute), static_cast<unsigned>(now.second),
                    static_cast<unsigned>(now.millisecond)));
    WriteRaw(Format("Executable: %s (ProcID: 0x%08x), compile time: %s %s\r\n",
                    Environment().executablePath.c_str(), Environment().processId, __DATE__,
                    __TIME__));
}

void DiagnosticLog::WriteRaw(const std::string& text) {
    std::fseek(file_, 0, SEEK_END);
    if (std::fwrite(text.data(), 1, text.size(), file_) < text.size()) std::fflush(file_);
}

void DiagnosticLog::WriteLine(const std::string& message) {
    if (file_ == nullptr) return;
    const CivilTime now = LocalNow();
    const auto counter = std::chrono::steady_clock::now().time_since_epoch().count();
    const std::string stamp =
        Format("%02u:%02u:%02u(%" PRId64 ")", static_cast<unsigned>(now.hour),
               static_cast<unsigned>(now.minute), static_cast<unsigned>(now.second),
               static_cast<std::int64_t>(counter));
    WriteRaw(Format("%s thr 0x%08X : %s%s\t(from %s,%d)\r\n", stamp.c_str(), CurrentThreadId(),
                    std::string(t_indentDepth, ' ').c_str(), message.c_str(),
                    SourceName(g_pendingPath), g_pendingLine));
}

void DiagnosticLog::Report(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string message = FormatText(format, arguments);
    va_end(arguments);
    // The message is formatted into at most 1023 characters, then converted.
    message = TruncateToUtf16Units(message, kMaxMessageBytes);
    std::string encoded = Utf8ToWindows1252(message);
    if (encoded.size() > kMaxMessageBytes) encoded.resize(kMaxMessageBytes);
    WriteLine(encoded);
}

void DiagnosticLog::RecordTiming(int counterNumber, std::int64_t milliseconds) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (Counter& counter : counters_) {
        if (counter.number != counterNumber) continue;
        ++counter.count;
        counter.minimum = std::min(counter.minimum, milliseconds);
        counter.maximum = std::max(counter.maximum, milliseconds);
        counter.total += milliseconds;
        return;
    }
    counters_.push_back({counterNumber, 1, milliseconds, milliseconds, milliseconds});
}

void DiagnosticLog::Close() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (file_ == nullptr) return;
    for (auto it = counters_.rbegin(); it != counters_.rend(); ++it) {
        WriteLine(Format("Counter %d statistics\r\n\tCounts: %d,\r\n\tMinTime: %" PRId64
                         " ms,\r\n\tMaxTime: %" PRId64 " ms,\r\n\tTotalTime: %" PRId64
                         " ms,\r\n\tAverageTime: %" PRId64 " ms",
                         it->number, static_cast<int>(it->count), it->minimum, it->maximum,
                         it->total, it->total / it->count));
    }
    WriteLine("Log finished");
    std::fclose(file_);
    file_ = nullptr;
}

}  // namespace tolvane
