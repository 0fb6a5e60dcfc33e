#include "core/app/local_settings.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/base/language_choice.h"

namespace tolvane {
namespace {

constexpr std::string_view kMultiGnssName = "multi-gnss";
constexpr std::string_view kBluetoothChannelName = "bluetooth-channel";
constexpr std::string_view kReceiverName = "receiver";
constexpr std::string_view kGnssShareSocketName = "gnss-share-socket";
constexpr std::string_view kTileSourceName = "tile-source";
constexpr std::string_view kLanguageName = "language";
constexpr std::string_view kGnssShareValue = "gnss-share";
constexpr std::string_view kModemManagerValue = "modem-manager";
constexpr std::string_view kPortTableValue = "port";
// RFCOMM channels run from 1 to 30.
constexpr int kLastRfcommChannel = 30;
// The file is a few lines; what lies beyond this is no setting of the
// program and is not read.
constexpr std::size_t kMostRead = 64 * 1024;

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Applies one "name = value" line.
void ReadSetting(std::string_view line, AppState& app) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view name = Trimmed(line.substr(0, equals));
    const std::string_view value = Trimmed(line.substr(equals + 1));
    if (name == kMultiGnssName && (value == "0" || value == "1")) app.multiGnss = value == "1";
    if (name == kBluetoothChannelName) {
        int channel = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), channel);
        if (error == std::errc() && end == value.data() + value.size() && channel >= 1 &&
            channel <= kLastRfcommChannel) {
            app.runtime.bluetoothChannel = channel;
        }
    }
    if (name == kReceiverName) {
        if (value == kGnssShareValue) app.runtime.daemonReceiver = DaemonReceiver::kGnssShare;
        if (value == kModemManagerValue) app.runtime.daemonReceiver = DaemonReceiver::kModemManager;
        if (value == kPortTableValue) app.runtime.daemonReceiver = DaemonReceiver::kNone;
    }
    if (name == kGnssShareSocketName && value.starts_with('/')) {
        app.runtime.gnssShareSocket = std::string(value);
    }
    if (name == kTileSourceName && value.starts_with('/')) {
        app.runtime.tileSources.emplace_back(value);
    }
    if (name == kLanguageName && IsShippedLanguage(value)) app.runtime.language = value;
}

// The language line, only while a language is chosen: its absence is the
// automatic choice.
std::string LanguageLine(const std::string& language) {
    if (language.empty()) return {};
    return "# language: the language chosen in Options (ENU, DEU, FRA, ESP, CHS).\n" +
           std::string(kLanguageName) + " = " + language + "\n";
}

// One line for each tile map, in order. A path with a line break in it
// cannot stand on a line of the file and is not written.
std::string TileSourceLines(const std::vector<std::string>& sources) {
    std::string lines;
    for (const std::string& source : sources) {
        if (source.find('\n') == std::string::npos) {
            lines += std::string(kTileSourceName) + " = " + source + "\n";
        }
    }
    return lines;
}

std::string_view ReceiverValue(DaemonReceiver receiver) {
    switch (receiver) {
        case DaemonReceiver::kGnssShare:
            return kGnssShareValue;
        case DaemonReceiver::kModemManager:
            return kModemManagerValue;
        case DaemonReceiver::kNone:
            break;
    }
    return kPortTableValue;
}

}  // namespace

std::string LocalSettingsPath(const std::string& optionsPath) {
    return (std::filesystem::path(optionsPath).parent_path() / kLocalSettingsFileName).string();
}

void ReadLocalSettings(std::string_view text, AppState& app) {
    // The file holds the whole list of tile maps.
    app.runtime.tileSources.clear();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        if (!line.starts_with('#')) ReadSetting(line, app);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string LocalSettingsText(const AppState& app) {
    return "# Tolvane GPS Utilities: the settings kept beside Options.dat.\n"
           "# multi-gnss: 1 reads the GN, GL, GA, GB and GQ talkers as GP, 0 GP alone.\n" +
           std::string(kMultiGnssName) + " = " + (app.multiGnss ? "1" : "0") + "\n" +
           "# bluetooth-channel: the RFCOMM channel of the chosen Bluetooth receiver.\n" +
           std::string(kBluetoothChannelName) + " = " + std::to_string(app.runtime.bluetoothChannel) +
           "\n" +
           "# receiver: with the serial port source, port reads the port of the port\n"
           "# table, gnss-share the gnss-share daemon's socket, modem-manager the\n"
           "# modem's receiver through ModemManager.\n" +
           std::string(kReceiverName) + " = " + std::string(ReceiverValue(app.runtime.daemonReceiver)) +
           "\n" + std::string(kGnssShareSocketName) + " = " + app.runtime.gnssShareSocket + "\n" +
           "# tile-source: a tile map, an MBTiles file or a folder of z/x/y tiles; the\n"
           "# first in this order that covers a place is drawn there.\n" +
           TileSourceLines(app.runtime.tileSources) + LanguageLine(app.runtime.language);
}

void LoadLocalSettings(Program& program) {
    std::ifstream file(LocalSettingsPath(program.files.optionsPath), std::ios::binary);
    if (!file) return;
    std::string text(kMostRead, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    ReadLocalSettings(text, program.app);
}

bool SaveLocalSettings(Program& program) {
    const std::string path = LocalSettingsPath(program.files.optionsPath);
    const std::string temporary = path + ".new";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file << LocalSettingsText(program.app);
        file.close();
        if (!file) return false;
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    if (!error) return true;
    std::filesystem::remove(temporary, error);
    return false;
}

}  // namespace tolvane
