#include "tools/tolvane-tool/run_options.h"

#include <charconv>
#include <cmath>

namespace tolvane::tool {
namespace {

bool ParseNumber(const std::string& text, double& value) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc() && stop == end;
}

bool ValueOf(const Arguments& arguments, std::size_t& index, std::string& value) {
    if (index + 1 >= arguments.size()) return false;
    value = arguments[++index];
    return true;
}

}  // namespace

bool ParseInteger(const std::string& text, long long& value) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc() && stop == end;
}

namespace {

// Reads a whole number within [low, high] into target.
bool SetInteger(const std::string& value, long long low, long long high,
                std::optional<std::int32_t>& target) {
    long long integer = 0;
    if (!ParseInteger(value, integer) || integer < low || integer > high) return false;
    target = static_cast<std::int32_t>(integer);
    return true;
}

bool SetTrackFormat(const std::string& value, std::optional<std::int32_t>& target) {
    static const char* const kFormats[] = {"log", "gpx", "kml"};
    for (std::int32_t format = 0; format < 3; ++format) {
        if (value == kFormats[format]) target = format;
    }
    return target.has_value();
}

// Applies one option that takes a value; false when the value is bad.
bool SetValueOption(const std::string& name, const std::string& value,
                    headless::RunSettings& settings) {
    double number = 0;
    if (name == "--options") settings.optionsFile = value;
    if (name == "--out") settings.trackFolder = value;
    if (name == "--destinations") settings.destinationsFile = value;
    if (name == "--options" || name == "--out" || name == "--destinations") return !value.empty();
    if (name == "--min-speed") {
        if (!ParseNumber(value, number) || !std::isfinite(number) || number < 0) return false;
        settings.minimumSpeed = number;
        return true;
    }
    if (name == "--processor") return SetInteger(value, 0, 2, settings.dataProcessor);
    if (name == "--unit") return SetInteger(value, 0, 9, settings.unitSystem);
    if (name == "--track-format") return SetTrackFormat(value, settings.trackFormat);
    if (name == "--interval") return SetInteger(value, 0, 1'000'000, settings.trackInterval);
    if (name == "--navigation") return SetInteger(value, 0, 1, settings.navigation);
    if (name == "--default-range")
        return SetInteger(value, 0, 1'000'000'000, settings.defaultRange);
    if (name == "--speed-alarm") return SetInteger(value, -1, 7, settings.speedAlarm);
    std::optional<std::int32_t> voice;
    if (!SetInteger(value, 0, 1, voice)) return false;
    settings.voice = *voice == 1;
    return true;
}

bool TakesValue(const std::string& name) {
    static const char* const kNames[] = {"--options",       "--out",         "--destinations",
                                         "--min-speed",     "--processor",   "--unit",
                                         "--track-format",  "--interval",    "--navigation",
                                         "--default-range", "--speed-alarm", "--voice"};
    for (const char* known : kNames) {
        if (name == known) return true;
    }
    return false;
}

}  // namespace

bool ParseRunOption(const Arguments& arguments, std::size_t& index, headless::RunSettings& settings,
                    std::string& error) {
    const std::string& name = arguments[index];
    if (name == "--json") {
        settings.json = true;
        return true;
    }
    if (name == "--always-default-range") {
        settings.alwaysDefaultRange = true;
        return true;
    }
    if (name == "--multi-gnss") {
        settings.multiGnss = true;
        return true;
    }
    if (!TakesValue(name)) return false;
    std::string value;
    if (!ValueOf(arguments, index, value)) {
        error = name + " needs a value";
    } else if (!SetValueOption(name, value, settings)) {
        error = "bad value '" + value + "' for " + name;
    }
    return true;
}

std::string CheckRunSettings(const headless::RunSettings& settings) {
    if (settings.trackFormat && settings.trackFolder.empty()) {
        return "--track-format needs --out DIR, the folder for the track files";
    }
    if (!settings.trackFormat && (settings.trackInterval || !settings.trackFolder.empty())) {
        return "--interval and --out go with --track-format";
    }
    return {};
}

std::string RunOptionsUsage() {
    return "  --json                    print the state of every tick as one JSON line\n"
           "  --processor N             data processor: 0 raw, 1 averaging, 2 smoothing\n"
           "  --unit N                  unit system: 0 metric, 1 imperial, 2 nautical\n"
           "  --min-speed V             minimum speed, in the unit system's speed unit\n"
           "  --options FILE            start from a settings record; the options here win\n"
           "  --track-format log|gpx|kml  log the track, into the folder of --out\n"
           "  --interval S              seconds between track points (1..3600)\n"
           "  --out DIR                 the folder for the track files\n"
           "  --destinations CSV        a destination list to guide through\n"
           "  --navigation 0|1          Go-To navigation off or on (default 1)\n"
           "  --default-range N         default proximity range, metres or feet by unit system\n"
           "  --always-default-range    use the default range for every destination\n"
           "  --speed-alarm INDEX       speed alarm: -1 off, 0..7 the alarm values of the record\n"
           "  --voice 0|1               speak arrivals with espeak-ng (default 0: alarm sound)\n"
           "  --multi-gnss              also read the GN, GL, GA, GB and GQ talkers as GP\n"
           "                            (receivers that combine satellite systems)\n";
}

}  // namespace tolvane::tool
