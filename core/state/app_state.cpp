#include "core/state/app_state.h"

namespace tolvane {

DataFolders MakeDataFolders(const std::string& root) {
    const std::string myGps = root + "/My GPS";
    return {root,           myGps + "/Reference Points", myGps + "/Track Log", myGps + "/NMEA0183",
            myGps + "/POI", myGps + "/Destinations"};
}

bool IsMapView(int view) {
    return view == kViewWorldMap || view == kViewMap;
}

std::int32_t ConfiguredGpsSource(const AppState& app) {
    return app.configuredGpsSource.value_or(app.options.gpsSource);
}

bool IsFullScreenShown(const AppState& app) {
    return app.options.fullScreen != 0 && IsMapView(app.currentView);
}

}  // namespace tolvane
