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
    QString error;  // what is wrong with the arguments, empty when nothing is
};

CommandLine ParseCommandLine(const QStringList& arguments);

// The text of --help.
QString UsageText();

}  // namespace tolvane::shell
