#include "tools/tolvane-tool/tick_json.h"

#include <type_traits>

#include "tools/tolvane-tool/json_writer.h"

namespace tolvane::tool {
namespace {

template <typename T, std::size_t N>
void Array(JsonWriter& json, std::string_view key, const T (&values)[N]) {
    json.BeginArray(key);
    for (const T value : values) {
        if constexpr (std::is_floating_point_v<T>) {
            json.Number({}, value);
        } else {
            json.Integer({}, value);
        }
    }
    json.EndArray();
}

// Every field of the GPS state, keyed by its field name.
void WriteGpsStateFields(JsonWriter& json, const GpsState& s) {
    json.Integer("connected", s.connected);
    json.Integer("fixValid", s.fixValid);
    json.Number("latitude", s.latitude);
    json.Number("longitude", s.longitude);
    json.Number("altitude", s.altitude);
    json.Number("course", s.course);
    json.Number("speedKnots", s.speedKnots);
    json.Integer("satellitesInView", s.satellitesInView);
    json.Integer("satellitesUsed", s.satellitesUsed);
    Array(json, "satPrn", s.satPrn);
    Array(json, "satSnr", s.satSnr);
    Array(json, "satElevation", s.satElevation);
    Array(json, "satAzimuth", s.satAzimuth);
    json.Number("pdop", s.pdop);
    json.Number("hdop", s.hdop);
    json.Number("vdop", s.vdop);
    json.Number("fixType", s.fixType);
    json.Integer("fixTime", s.fixTime);
    json.Integer("hadFixLastTick", s.hadFixLastTick);
    json.Number("heldLatitude", s.heldLatitude);
    json.Number("heldLongitude", s.heldLongitude);
    json.Number("heldCourse", s.heldCourse);
    json.Integer("havePreviousPoint", s.havePreviousPoint);
    json.Number("previousLatitude", s.previousLatitude);
    json.Number("previousLongitude", s.previousLongitude);
    json.Number("tripDistanceKm", s.tripDistanceKm);
    json.Number("maxSpeedKnots", s.maxSpeedKnots);
    json.Number("averageSpeedKmh", s.averageSpeedKmh);
    json.Integer("movingSeconds", s.movingSeconds);
    json.Integer("connectedSeconds", s.connectedSeconds);
    json.Number("destinationDistanceKm", s.destinationDistanceKm);
    json.Integer("destinationSeconds", s.destinationSeconds);
    json.Integer("noFixBlink", s.noFixBlink);
    json.Integer("idleTicks", s.idleTicks);
    json.Integer("timeResyncCountdown", s.timeResyncCountdown);
}

}  // namespace

std::string TickJson(AppState& app) {
    JsonWriter json;
    json.BeginObject();
    WriteGpsStateFields(json, app.gps);
    json.Integer("destinationIndex", CurrentDestinationIndex(app.navigation));
    json.Integer("alarmSounding", app.alarm.sounding ? 1 : 0);
    json.EndObject();
    return json.Text();
}

}  // namespace tolvane::tool
