#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "core/base/dynamic_list.h"
#include "core/base/file_time.h"
#include "core/data/options.h"
#include "core/data/track_logger.h"
#include "core/geo/geo_point.h"
#include "core/geo/map_projection.h"
#include "core/gps/gps_processing.h"
#include "core/gps/gps_state.h"
#include "core/maps/map_state.h"
#include "core/nav/instrument_memory.h"
#include "core/nav/navigation.h"
#include "core/nav/speed_alarm.h"

namespace tolvane {

// The views, in the order of the view switch.
enum View : int {
    kViewGpsInfo = 0,
    kViewSatellites = 1,
    kViewCompass = 2,
    kViewSpeed = 3,
    kViewWorldMap = 4,
    kViewMap = 5,
    kViewTripStat = 6,
};

// The two modes of the Compass view, switched with Enter.
inline constexpr int kCompassNorthUp = 1;
inline constexpr int kCompassCourseUp = 2;

// Whether a view is one of the two maps, which share the arrow keys, the
// layers and "Full Screen (Map)".
bool IsMapView(int view);

// The folders under "My GPS" where the program keeps its files.
struct DataFolders {
    std::string root;
    std::string refPointDir;     // root + "/My GPS/Reference Points"
    std::string trackLogDir;     // root + "/My GPS/Track Log"
    std::string nmeaDir;         // root + "/My GPS/NMEA0183"
    std::string poiDir;          // root + "/My GPS/POI", then ".../POI/My POI"
    std::string destinationDir;  // root + "/My GPS/Destinations"
};

// The folders for a data root.
DataFolders MakeDataFolders(const std::string& root);

// What one tick reads from the active GPS source.
struct SourceReading {
    std::int32_t connected = 0;
    GpsFix snapshot;
};

// The last valid position handed to the map views, which follow it.
struct MapFollow {
    double latitude = 0;
    double longitude = 0;
    bool havePosition = false;
};

// The waypoint and POI lists, under the point-list lock.
struct PointLists {
    // Mutable: the painters, which only read, lock it through a const view
    // of the state.
    mutable std::mutex lock;
    DynamicList<GeoPoint> waypoints;
    DynamicList<GeoPoint> pois;
};

inline constexpr int kArrowKeyCount = 4;

// The arrow keys' throttle: the clock time of each key's last accepted press
// and whether it was released since, which lets the next press through at
// once.
struct ArrowKeyTimes {
    FileTime lastAccepted[kArrowKeyCount] = {};
    bool released[kArrowKeyCount] = {true, true, true, true};
};

// The highest zoom level of the map views: the World Map goes further
// only while tile maps offer deeper zooms.
inline constexpr int kMapZoomCeiling = 255;

// What the arrow keys do in the two map views: Enter switches between
// zooming (Up and Down) and panning; the map views read the zoom levels and
// the pan steps.
struct MapKeys {
    bool zoomMode = true;
    int worldMapZoom = 0;  // above -255 up to worldMapCeiling
    int worldMapCeiling = kMapZoomCeiling;
    int mapZoom = 0;     // 0 to kMapZoomCeiling
    int panColumns = 0;  // steps to the east since the map last followed
    int panRows = 0;     // steps to the south
};

// Where the World Map is centred, in degrees: the position while it
// follows, else where panning took it.
struct MapCentre {
    double latitude = 0;
    double longitude = 0;
};

// The part of a drag over the Map view not yet turned into whole pan steps,
// in steps east and south.
struct MapDragRest {
    double east = 0;
    double south = 0;
};

// The zoom range of the tile maps that opened, the lowest of their lowest
// zooms to the highest of their highest; -1 without any.
struct TileZooms {
    int lowest = -1;
    int highest = -1;
};

// The one application-state block that owns all long-lived state.
struct AppState {
    Options options{};
    OptionsRuntime runtime;
    // The GPS source the settings name, while this run reads another in its
    // place (the demo receiver): saves write it and GPS Setup edits it.
    std::optional<std::int32_t> configuredGpsSource;
    bool multiGnss = false;  // read the GN, GL, GA, GB and GQ talkers as GP

    DataFolders folders;

    // Set by the GPS start command, cleared by the stop commands.
    bool gpsRunning = false;
    bool sleepHeld = false;  // the host keeps the computer from suspending
    GpsState gps;
    ProcessorState processor;

    // Reads the running source once a tick; the GPS start command installs
    // it for the chosen source and the stop command removes it. Without one
    // the source reads as not connected with an empty snapshot.
    std::function<SourceReading()> readActiveSource;

    TrackLogger track;
    Navigation navigation;
    AlarmSound alarm;  // its path is set at start-up, beside the program

    int currentView = kViewGpsInfo;
    int compassMode = kCompassNorthUp;
    // What the instrument views remember between ticks.
    InstrumentMemory instruments;
    MapProjection projection;
    MapFollow mapFollow;
    int mapCountdown = 0;  // ticks until the map views follow the position again

    ArrowKeyTimes arrowKeys;
    MapKeys mapKeys;
    MapState map;  // the Map view's picture and its calibration
    MapCentre worldMapCentre;
    TileZooms tileZooms;
    MapDragRest mapDragRest;

    PointLists points;
};

// The GPS source the settings name: the configured one while a run reads
// another in its place, else the one in the record.
std::int32_t ConfiguredGpsSource(const AppState& app);

// Whether the window is laid out full screen now: "Full Screen (Map)" is
// set and a map is shown; the other views keep their title and soft keys.
bool IsFullScreenShown(const AppState& app);

}  // namespace tolvane
