#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "core/app/main_timer.h"
#include "headless/port_run.h"
#include "headless/recording_device.h"
#include "headless/replay.h"

namespace {

namespace fs = std::filesystem;

const fs::path kRepository = fs::path(__FILE__).parent_path().parent_path().parent_path();

std::string ReadWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// The largest clean capture: from the shared corpus when it is there
// (TOLVANE_CORPUS_DIR, else ../shared/corpus beside the repository), else
// the copy in the test data.
std::string Capture() {
    const char* corpus = std::getenv("TOLVANE_CORPUS_DIR");
    const fs::path candidates[] = {
        corpus != nullptr ? fs::path(corpus) / "gpsd-logs/telit-he910.log" : fs::path(),
        kRepository.parent_path() / "shared/corpus/gpsd-logs/telit-he910.log",
        kRepository / "tests/data/gpsd/telit-he910.log"};
    for (const fs::path& candidate : candidates) {
        if (!candidate.empty() && fs::exists(candidate)) return ReadWhole(candidate);
    }
    return {};
}

tolvane::Options DefaultOptions() {
    tolvane::Options options{};
    tolvane::ResetOptions(options);
    return options;
}

// The whole replay of a capture: framing, parse, watchdog and the main
// timer's procedure for every recorded second.
void BM_ReplayCapture(benchmark::State& state) {
    const std::string capture = Capture();
    if (capture.empty()) {
        state.SkipWithError("no capture found");
        return;
    }
    const tolvane::Options options = DefaultOptions();
    const tolvane::headless::RunSettings settings;
    std::ostringstream messages;
    for (auto _ : state) {
        tolvane::headless::ReplayTotals totals;
        std::string error;
        tolvane::headless::ReplayRecording(capture, settings, options, messages, nullptr, totals,
                                           error);
        benchmark::DoNotOptimize(totals.ticks);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * capture.size()));
}
BENCHMARK(BM_ReplayCapture);

class FrozenClock final : public tolvane::Clock {
  public:
    tolvane::FileTime NowUtc() const override { return 0; }
};

// One tick of the main timer with a fix of twelve satellites in the record,
// read under the port source's lock as the program does.
void BM_MainTimerProc(benchmark::State& state) {
    const std::string capture = Capture();
    FrozenClock clock;
    tolvane::headless::RecordingDevice device;
    tolvane::headless::RunServices services(false);
    tolvane::headless::PortRun run(clock, device, DefaultOptions(), services, std::cerr);
    run.Start("recording", 4800, tolvane::ReaderDrive::kCaller);
    device.Feed(std::string_view(capture).substr(0, 2000));
    while (tolvane::ReaderPass(run.port) > 0) {
    }
    run.FireWatchdog();
    tolvane::ReaderPass(run.port);
    for (auto _ : state) {
        run.Tick();
        benchmark::DoNotOptimize(run.app.gps.latitude);
    }
}
BENCHMARK(BM_MainTimerProc);

}  // namespace
