// The GPS mark's name of the source in use, for each source GPS Setup
// offers and for the demo receiver.

#include "core/app/gps_source_name.h"

#include <gtest/gtest.h>

#include "core/app/gid_commands.h"
#include "core/app/gps_commands.h"

namespace tolvane {
namespace {

TEST(GpsSourceNameTest, NamesEachSourceWithWhereItLeads) {
    AppState app;
    const SourcePlaces places{"localhost:2947", "/dev/ttyUSB0"};
    app.options.gpsSource = kGpsSourceGid;
    EXPECT_EQ(GpsSourceName(app, places), "gpsd (localhost:2947)");

    app.options.gpsSource = kGpsSourcePort;
    app.options.portIndex = 0;
    EXPECT_EQ(GpsSourceName(app, places), "Serial port COM0 (/dev/ttyUSB0)");
    // A port without a link leads nowhere yet.
    app.options.portIndex = 10;
    EXPECT_EQ(GpsSourceName(app, {"localhost:2947", ""}), "Serial port GPD1");
    // The receivers a daemon owns are kept as the serial port source.
    app.runtime.daemonReceiver = DaemonReceiver::kGnssShare;
    EXPECT_EQ(GpsSourceName(app, places), "gnss-share (/run/gnss-share.sock)");
    app.runtime.daemonReceiver = DaemonReceiver::kModemManager;
    EXPECT_EQ(GpsSourceName(app, places), "Modem (ModemManager)");

    app.options.gpsSource = kGpsSourceBluetooth;
    EXPECT_EQ(GpsSourceName(app, places), "Bluetooth receiver (none chosen yet)");
    app.runtime.bluetoothName = "BT-Q818XT";
    app.runtime.receiverChosen = true;
    EXPECT_EQ(GpsSourceName(app, places), "Bluetooth receiver BT-Q818XT");

    // The demo receiver plays through the port source in the place of the
    // chosen one.
    app.configuredGpsSource = kGpsSourceBluetooth;
    app.options.gpsSource = kGpsSourcePort;
    app.runtime.daemonReceiver = DaemonReceiver::kNone;
    EXPECT_EQ(GpsSourceName(app, places), "Demo recording");
}

}  // namespace
}  // namespace tolvane
