#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace tolvane::shell {

// What the program was asked to do on its command line.
struct CommandLine {
    bool help = false;
    QString home;  // --home: the folder of the program's own files
    bool demo = false;
    // --screenshot DIR: paint the views into DIR without a window.
    QString screenshotFolder;
    QSize size{480, 640};
    QString replay;  // the recording to play; the demo recording when empty
    int atTick = 60;
    QString optionsFile;
    // --tiles PATH, once for each tile map the World Map's picture draws.
    QStringList tiles;
    // --center LAT,LON and --zoom Z: where the World Map's picture is
    // centred, and the tile zoom whose scale it shows (-1: as it lies).
    bool centred = false;
    double centreLatitude = 0;
    double centreLongitude = 0;
    int tileZoom = -1;
    QString error;  // what is wrong with the arguments, empty when nothing is
};

CommandLine ParseCommandLine(const QStringList& arguments);

// The text of --help.
QString UsageText();

}  // namespace tolvane::shell
