#include "headless/demo_recording.h"

#include <limits>
#include <optional>
#include <sstream>

#include "core/geo/distance.h"
#include "headless/recording_device.h"
#include "headless/replay.h"

namespace tolvane::headless {
namespace {

struct Fix {
    double latitude = 0;
    double longitude = 0;
};

// The fix of every second of the recording, as the program reads it.
std::vector<std::optional<Fix>> FixesOf(std::string_view recording) {
    std::vector<std::optional<Fix>> fixes;
    Options options;
    std::string error;
    if (!MakeRunOptions({}, options, error)) return fixes;
    std::ostringstream messages;
    ReplayTotals totals;
    ReplayRecording(
        recording, {}, options, messages,
        [&fixes](AppState& app, FileTime) {
            const GpsState& gps = app.gps;
            fixes.push_back(HasLiveFix(gps) ? std::optional<Fix>(Fix{gps.latitude, gps.longitude})
                                            : std::nullopt);
            return true;
        },
        totals, error);
    return fixes;
}

std::size_t LoopStart(const std::vector<std::optional<Fix>>& fixes) {
    std::size_t last = fixes.size();
    while (last > 0 && !fixes[last - 1]) --last;
    if (last <= kShortestDemoLap) return 0;
    const Fix& end = *fixes[last - 1];
    std::size_t nearest = 0;
    double nearestKm = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i + kShortestDemoLap < last; ++i) {
        if (!fixes[i]) continue;
        const double km = DistanceKm(fixes[i]->latitude, fixes[i]->longitude, end.latitude,
                                     end.longitude);
        if (km < nearestKm) {
            nearestKm = km;
            nearest = i;
        }
    }
    return nearest;
}

}  // namespace

DemoRecording MakeDemoRecording(std::string_view recording) {
    DemoRecording demo;
    for (const RecordedSecond& second : SplitIntoSeconds(recording)) {
        demo.seconds.emplace_back(recording.substr(second.begin, second.end - second.begin));
    }
    const std::vector<std::optional<Fix>> fixes = FixesOf(recording);
    // The replay plays one tick for each second; should it ever not, the
    // loop takes the whole recording.
    if (fixes.size() == demo.seconds.size()) demo.loopFrom = LoopStart(fixes);
    return demo;
}

}  // namespace tolvane::headless
