#pragma once

#include <string>
#include <string_view>

#include "core/app/program.h"

namespace tolvane {

// Settings that the settings record has no field for live in a small text
// file beside it, so that Options.dat keeps its layout. One "name = value"
// a line; blank lines and lines starting with '#' are passed over, and so
// are names the program does not know and values it cannot read, which
// leave their setting at its default:
//   multi-gnss = 1          read the GN, GL, GA, GB and GQ talkers as GP (0: off)
//   bluetooth-channel = 1   the RFCOMM channel the receiver search found
//                           (1 to 30; 0 or missing: unknown, channel 1 is tried)
//   receiver = port         with the serial port source: port (the port of
//                           the port table), gnss-share or modem-manager
//   gnss-share-socket = /run/gnss-share.sock   gnss-share's socket
//   tile-source = /path/to/map.mbtiles   a tile map, an MBTiles file or a
//                           tile folder; one line for each, in the order
//                           they are asked for a tile
//   language = DEU          the language chosen in the Options dialog: ENU,
//                           DEU, FRA, ESP or CHS; missing: the desktop's
//                           locale decides
inline constexpr char kLocalSettingsFileName[] = "tolvane.conf";

// The file's path: beside the settings record at optionsPath.
std::string LocalSettingsPath(const std::string& optionsPath);

// Reads the settings of the file's text into app; a missing file reads as
// an empty text.
void ReadLocalSettings(std::string_view text, AppState& app);

// The file's text for the settings of app.
std::string LocalSettingsText(const AppState& app);

// Start-up reads the file once, before the language file, which it may
// choose.
void LoadLocalSettings(Program& program);

// Writes the file for the present settings; a dialog calls it when one of
// them changed. The text goes to a temporary file that then takes the
// file's place, so that a failed write leaves the old file whole. False
// when the file could not be written.
bool SaveLocalSettings(Program& program);

}  // namespace tolvane
