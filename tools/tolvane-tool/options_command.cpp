#include <cstring>
#include <ostream>

#include "core/base/text_encoding.h"
#include "core/data/options.h"
#include "tools/tolvane-tool/json_writer.h"
#include "tools/tolvane-tool/tool_commands.h"

namespace tolvane::tool {
namespace {

template <std::size_t N>
void IntegerArray(JsonWriter& json, std::string_view key, const std::int32_t (&values)[N]) {
    json.BeginArray(key);
    for (const std::int32_t value : values) json.Integer({}, value);
    json.EndArray();
}

std::string VersionText(const Options& options) {
    return std::string(options.version, strnlen(options.version, sizeof options.version));
}

// The version text as the JSON shows it: its bytes are ANSI text of the
// device, which a foreign record fills with anything, so they are read as
// Windows-1252 rather than copied into the JSON as they stand.
std::string VersionJson(const Options& options) {
    return Windows1252ToUtf8(VersionText(options));
}

std::string OptionsJson(const Options& o) {
    JsonWriter json;
    json.BeginObject();
    json.String("version", VersionJson(o));
    json.Bool("versionMatches", VersionText(o) == kProgramVersion);
    json.Integer("showMap", o.showMap);
    json.Integer("showTrack", o.showTrack);
    json.Integer("showRefPoints", o.showRefPoints);
    json.Integer("showPoi", o.showPoi);
    json.Integer("gpsSource", o.gpsSource);
    json.Integer("portIndex", o.portIndex);
    json.Integer("baudIndex", o.baudIndex);
    json.Integer("trackLoggerEnabled", o.trackLoggerEnabled);
    json.Integer("trackIntervalIndex", o.trackIntervalIndex);
    json.Integer("speedAlarmIndex", o.speedAlarmIndex);
    json.Integer("unitSystem", o.unitSystem);
    json.String("bluetoothName", ReadWideField(o.bluetoothName));
    json.Integer("bluetoothAddress",
                 static_cast<std::int64_t>(static_cast<std::uint64_t>(o.bluetoothAddress[1]) << 32 |
                                           o.bluetoothAddress[0]));
    json.Integer("autoBluetooth", o.autoBluetooth);
    json.Integer("keepBacklightOn", o.keepBacklightOn);
    json.Integer("logNmea", o.logNmea);
    json.String("storageLocation", ReadWideField(o.storageLocation));
    json.BeginArray("recentMaps");
    for (const auto& recent : o.recentMaps) json.String({}, ReadWideField(recent));
    json.EndArray();
    IntegerArray(json, "speedAlarmValues", o.speedAlarmValues);
    IntegerArray(json, "trackIntervalValues", o.trackIntervalValues);
    json.String("poiFolder", ReadWideField(o.poiFolder));
    json.String("waypointFile", ReadWideField(o.waypointFile));
    json.Integer("showWaypoint", o.showWaypoint);
    json.Integer("showLabel", o.showLabel);
    json.Integer("showDestinations", o.showDestinations);
    json.Integer("showDestinationInfo", o.showDestinationInfo);
    json.Integer("navigation", o.navigation);
    json.Integer("dataProcessor", o.dataProcessor);
    json.Integer("coordinateFormat", o.coordinateFormat);
    json.Integer("nightView", o.nightView);
    json.Integer("fullScreen", o.fullScreen);
    json.Number("minimumSpeed", o.minimumSpeed);
    json.Integer("showRange", o.showRange);
    json.Integer("defaultProximityRange", o.defaultProximityRange);
    json.Integer("alwaysUseDefaultRange", o.alwaysUseDefaultRange);
    json.Integer("voiceEngine", o.voiceEngine);
    json.Integer("voiceGuide", o.voiceGuide);
    json.Integer("startGpsAtStartup", o.startGpsAtStartup);
    json.Integer("loadPoiAtStartup", o.loadPoiAtStartup);
    json.Integer("trackLogFormat", o.trackLogFormat);
    json.Integer("mapListPosition", o.mapListPosition);
    json.EndObject();
    return json.Text();
}

int Reset(const std::string& path, std::ostream& err) {
    Options options;
    ResetOptions(options);
    const std::string bytes(reinterpret_cast<const char*>(&options), sizeof options);
    return WriteTextFile(path, bytes, err) ? kExitOk : kExitFailure;
}

int Dump(const std::string& path, std::ostream& out, std::ostream& err) {
    std::string bytes;
    if (!ReadTextFile(path, kOptionsSize, bytes, err)) return kExitFailure;
    if (bytes.size() != kOptionsSize) {
        err << "tolvane-tool: " << path << ": not a settings record (" << bytes.size()
            << " bytes, a record has " << kOptionsSize << ")\n";
        return kExitFailure;
    }
    Options options;
    std::memcpy(&options, bytes.data(), sizeof options);
    out << OptionsJson(options) << '\n';
    return kExitOk;
}

}  // namespace

int RunOptionsCommand(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.size() == 2 && arguments[0] == "reset") return Reset(arguments[1], err);
    if (arguments.size() == 2 && arguments[0] == "dump") return Dump(arguments[1], out, err);
    err << "tolvane-tool: options needs 'reset FILE' or 'dump FILE'\n\n" << UsageText();
    return kExitUsage;
}

}  // namespace tolvane::tool
