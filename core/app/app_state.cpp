#include "core/app/app_state.h"

namespace tolvane {

DataFolders MakeDataFolders(const std::string& root) {
    const std::string myGps = root + "/My GPS";
    return {root,           myGps + "/Reference Points", myGps + "/Track Log", myGps + "/NMEA0183",
            myGps + "/POI", myGps + "/Destinations"};
}

}  // namespace tolvane
