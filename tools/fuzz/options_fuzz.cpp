// libFuzzer target of the settings record's start-up load: the version
// check, the validation and the copies of its texts.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "core/data/options.h"
#include "tools/fuzz/fuzz_file.h"

namespace {

template <std::size_t N>
void CheckTerminated(const char16_t (&field)[N]) {
    if (field[N - 1] != u'\0') std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tolvane::fuzz::InputFile file(data, size);
    tolvane::Options options;
    tolvane::OptionsRuntime runtime;
    tolvane::LoadOptionsAtStartup(file.Path(), options, runtime);
    // Whatever the file held, the invariants of a loaded record hold.
    if (options.trackIntervalIndex < 0 || options.trackIntervalIndex > 3) std::abort();
    if (options.speedAlarmIndex < -1 || options.speedAlarmIndex > 7) std::abort();
    if (options.dataProcessor < 0 || options.dataProcessor > 2) std::abort();
    CheckTerminated(options.bluetoothName);
    CheckTerminated(options.storageLocation);
    for (const auto& recent : options.recentMaps) CheckTerminated(recent);
    CheckTerminated(options.poiFolder);
    CheckTerminated(options.waypointFile);
    return 0;
}
