#include "core/app/app_state.h"

namespace tolvane {

DataFolders MakeDataFolders(const std::string& root) {
    const std::string myGps = root + "/My GPS";
    return {root, myGps + "/Track Log", myGps + "/NMEA0183"};
}

}  // namespace tolvane
