#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "core/gps/nmea_record.h"
#include "core/gps/port_reader_feed.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

// The parser reads text up to its first zero byte, as the port reader hands
// it over; a capture with stray zero bytes counts only up to the first.
std::string ReadCaptureText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    std::string text = bytes.str();
    text.resize(std::min(text.size(), text.find('\0')));
    return text;
}

// The folders that may hold receiver captures: the shared corpus beside the
// repository, else the copies the tests use.
std::vector<fs::path> CaptureFolders() {
    return {fs::path(TOLVANE_CORPUS_DIR) / "gpsd-logs", fs::path(TOLVANE_TEST_DATA_DIR) / "gpsd"};
}

std::vector<fs::path> CaptureFiles() {
    for (const fs::path& folder : CaptureFolders()) {
        std::error_code error;
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(folder, error)) {
            if (entry.path().extension() == ".log") files.push_back(entry.path());
        }
        if (!files.empty()) {
            std::sort(files.begin(), files.end());
            return files;
        }
    }
    return {};
}

// A minute-long cycle of the four kept sentences, repeated, for machines
// without any capture.
std::string GeneratedSentences() {
    static constexpr const char* kBodies[] = {
        "GPRMC,1235%02d.000,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W",
        "GPGGA,1235%02d.000,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,",
        "GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1",
        "GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45",
        "GPGSV,2,2,08,15,40,083,46,16,17,308,41,17,07,344,39,18,22,228,45",
    };
    std::string text;
    for (int repeat = 0; repeat < 20; ++repeat) {
        for (int second = 0; second < 60; ++second) {
            for (const char* format : kBodies) {
                char body[128];
                std::snprintf(body, sizeof body, format, second);
                int checksum = 0;
                for (const char* c = body; *c != '\0'; ++c) checksum ^= *c;
                char sentence[160];
                std::snprintf(sentence, sizeof sentence, "$%s*%02X\r\n", body, checksum);
                text += sentence;
            }
        }
    }
    return text;
}

// Every capture found, one after the other.
const std::string& AllCaptures() {
    static const std::string text = [] {
        std::string all;
        for (const fs::path& file : CaptureFiles()) all += ReadCaptureText(file);
        return all.empty() ? GeneratedSentences() : all;
    }();
    return text;
}

// A long recording of GP sentences only, the port reader's usual fare.
const std::string& GpOnlyRecording() {
    static const std::string text = [] {
        for (const fs::path& folder : CaptureFolders()) {
            const std::string capture = ReadCaptureText(folder / "telit-he910.log");
            if (!capture.empty()) return capture;
        }
        return GeneratedSentences();
    }();
    return text;
}

// Parses the whole text in one call, as one large read would be.
void BM_ParseNmeaBuffer(benchmark::State& state, const std::string& (*input)(),
                        NmeaTalkers talkers = NmeaTalkers::kGpOnly) {
    const std::string& text = input();
    NmeaRecord record{};
    GsvPaging paging;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ParseNmeaBuffer(record, paging, text.c_str(), nullptr, talkers));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK_CAPTURE(BM_ParseNmeaBuffer, all_captures, &AllCaptures);
BENCHMARK_CAPTURE(BM_ParseNmeaBuffer, gp_sentences, &GpOnlyRecording);
// The multi-GNSS reading also reads the captures' GN, GL, GA and GB sentences.
BENCHMARK_CAPTURE(BM_ParseNmeaBuffer, all_captures_multi_gnss, &AllCaptures,
                  NmeaTalkers::kMultiGnss);

// The port reader's way: small reads gathered in the 2048-byte buffer,
// parsed whenever the next read would not fit, the tail moved to the front.
void BM_ParseGpSentencesInPortReaderWindows(benchmark::State& state) {
    constexpr std::size_t kReadSize = 256;
    const std::string& text = GpOnlyRecording();
    NmeaRecord record{};
    GsvPaging paging;
    for (auto _ : state) {
        PortReaderFeed feed(record, paging);
        feed.ReadAll(text.data(), text.size(), kReadSize, INT_MAX);
        benchmark::DoNotOptimize(feed.Buffer());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_ParseGpSentencesInPortReaderWindows);

}  // namespace
}  // namespace tolvane
