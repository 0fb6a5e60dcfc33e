#include "shell/command_line.h"

#include <QRegularExpression>
#include <cmath>

#include "formats/tile_source.h"

namespace tolvane::shell {
namespace {

// Reads "WxH" with both sides at least 1.
bool ParseSize(const QString& text, QSize& size) {
    static const QRegularExpression kPattern(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = kPattern.match(text);
    if (!match.hasMatch()) return false;
    size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
    return !size.isEmpty();
}

bool ParseTick(const QString& text, int& tick) {
    bool ok = false;
    tick = text.toInt(&ok);
    return ok && tick >= 1;
}

// Reads "LAT,LON" in degrees, a latitude within 90 and a longitude within 180.
bool ParseCentre(const QString& text, CommandLine& line) {
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 2) return false;
    bool latitudeRead = false;
    bool longitudeRead = false;
    line.centreLatitude = parts[0].trimmed().toDouble(&latitudeRead);
    line.centreLongitude = parts[1].trimmed().toDouble(&longitudeRead);
    line.centred = latitudeRead && longitudeRead && std::abs(line.centreLatitude) <= 90 &&
                   std::abs(line.centreLongitude) <= 180;
    return line.centred;
}

bool ParseTileZoom(const QString& text, int& zoom) {
    bool ok = false;
    zoom = text.toInt(&ok);
    return ok && zoom >= 0 && zoom <= kMostTileZoom;
}

// Applies one option that takes a value; false when the value is bad.
bool SetValue(const QString& name, const QString& value, CommandLine& line) {
    if (name == QLatin1String("--home")) line.home = value;
    if (name == QLatin1String("--screenshot")) line.screenshotFolder = value;
    if (name == QLatin1String("--replay")) line.replay = value;
    if (name == QLatin1String("--options")) line.optionsFile = value;
    if (name == QLatin1String("--size")) return ParseSize(value, line.size);
    if (name == QLatin1String("--at")) return ParseTick(value, line.atTick);
    if (name == QLatin1String("--tiles")) line.tiles.append(value);
    if (name == QLatin1String("--center")) return ParseCentre(value, line);
    if (name == QLatin1String("--zoom")) return ParseTileZoom(value, line.tileZoom);
    return !value.isEmpty();
}

bool TakesValue(const QString& name) {
    static const QStringList kNames = {
        QStringLiteral("--home"),   QStringLiteral("--screenshot"), QStringLiteral("--size"),
        QStringLiteral("--replay"), QStringLiteral("--at"),         QStringLiteral("--options"),
        QStringLiteral("--tiles"),  QStringLiteral("--center"),     QStringLiteral("--zoom")};
    return kNames.contains(name);
}

// What is wrong with the options taken together: the demo opens a window,
// and the picture options only shape a screenshot run.
QString CheckCombination(const QStringList& arguments, const CommandLine& line) {
    if (line.demo && !line.screenshotFolder.isEmpty()) {
        return QStringLiteral("--demo and --screenshot cannot go together");
    }
    if (line.screenshotFolder.isEmpty()) {
        for (const char* name :
             {"--size", "--replay", "--at", "--options", "--tiles", "--center", "--zoom"}) {
            if (arguments.contains(QLatin1String(name))) {
                return QStringLiteral("%1 goes with --screenshot").arg(QLatin1String(name));
            }
        }
    }
    return {};
}

}  // namespace

CommandLine ParseCommandLine(const QStringList& arguments) {
    CommandLine line;
    for (int index = 1; index < arguments.size() && line.error.isEmpty(); ++index) {
        const QString& name = arguments[index];
        if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
            line.help = true;
        } else if (name == QLatin1String("--demo")) {
            line.demo = true;
        } else if (!TakesValue(name)) {
            line.error = QStringLiteral("unexpected argument '%1'").arg(name);
        } else if (index + 1 >= arguments.size()) {
            line.error = QStringLiteral("%1 needs a value").arg(name);
        } else if (!SetValue(name, arguments[++index], line)) {
            line.error = QStringLiteral("bad value '%1' for %2").arg(arguments[index], name);
        }
    }
    if (line.error.isEmpty()) line.error = CheckCombination(arguments, line);
    return line;
}

QString UsageText() {
    return QStringLiteral(
        "Usage: tolvane [--home DIR] [--demo]\n"
        "       tolvane --screenshot DIR [--size WxH] [--replay LOG [--at SECONDS]]\n"
        "               [--options FILE] [--tiles MAP]... [--center LAT,LON]\n"
        "               [--zoom Z] [--home DIR]\n"
        "\n"
        "Tolvane GPS Utilities: the GPS receiver's position, satellites, course,\n"
        "speed and trip in one window, and your own pictures calibrated as maps\n"
        "(Map -> Load Map, then Reference Points; see the README's Map view).\n"
        "\n"
        "  --demo              read the demo receiver, a recorded walk played at its\n"
        "                      own pace, instead of the configured GPS source; the\n"
        "                      settings keep the configured source\n"
        "  --home DIR          keep the program's own files (language file,\n"
        "                      Options.dat, the log, Alarm.wav, GID.QX.so, ports/) in\n"
        "                      DIR instead of beside the program (also TOLVANE_HOME)\n"
        "  --screenshot DIR    open no window: play a recording through the GPS\n"
        "                      pipeline at full speed, then paint every view into DIR\n"
        "                      as gps-info.png, satellites.png, compass.png, speed.png,\n"
        "                      trip-stat.png, world-map.png and map.png (the Map\n"
        "                      view with recent map 1 of the settings record)\n"
        "  --size WxH          the size of the pictures (default 480x640)\n"
        "  --replay LOG        the NMEA log to play (default: the demo recording)\n"
        "  --at SECONDS        paint after this many seconds of the log (default 60,\n"
        "                      or its end when shorter)\n"
        "  --options FILE      start from this settings record (Options.dat), so that\n"
        "                      a record with Night View paints the night palette\n"
        "  --tiles MAP         draw the tiles of this tile map (an MBTiles file or a\n"
        "                      z/x/y folder) on the World Map; give it once for each\n"
        "  --center LAT,LON    centre the World Map here, in degrees (\"47.37,8.54\")\n"
        "  --zoom Z            show the World Map at the scale of tile zoom Z (0-24)\n"
        "  --help              show this text\n"
        "\n"
        "World Map (key 2): Enter switches the arrow keys between zooming (Up, Down)\n"
        "and panning; a drag pans, the wheel or a pinch zooms, a tap on a point shows\n"
        "its name and distance. The map follows the position again 10 seconds after\n"
        "a pan while the GPS is on. Its pictures come from the package xplanet-images;\n"
        "tile maps of your own (MBTiles files or z/x/y folders, listed under\n"
        "Map > Tile Maps...) are drawn over them once zoomed in to their scale.\n"
        "\n"
        "GPS Setup (key * or F8) finds the receiver: gpsd, a serial, USB or\n"
        "Bluetooth port, with the baud rate found by itself, a phone's gnss-share\n"
        "socket or a modem through ModemManager. The first start looks for one by\n"
        "itself and says which it chose. The Menu soft key holds\n"
        "Options, Track Interval, Speed Alarm, the waypoints and POI, destination\n"
        "lists, GPX import and View Log File.\n"
        "\n"
        "Language: English, Deutsch, Français, Español or 简体中文 (Simplified\n"
        "Chinese). Options > Language chooses one; while it says Automatic, the\n"
        "variable TOLVANE_LANGUAGE (ENU, DEU, FRA, ESP or CHS) decides, and without\n"
        "it the desktop's locale (the first set of LC_ALL, LC_MESSAGES and LANG,\n"
        "e.g. LANG=de_DE.UTF-8). Every other language reads English.\n");
}

}  // namespace tolvane::shell
