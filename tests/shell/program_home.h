#pragma once

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "platform/program_location.h"

namespace tolvane::shell {

// A program folder of its own for each case: the language file and nothing
// the last case wrote. HOME points there too, so the documents folder is
// fresh as well.
inline std::unique_ptr<QTemporaryDir> NewProgramHome() {
    auto home = std::make_unique<QTemporaryDir>();
    QFile::copy(QStringLiteral(TOLVANE_PROGRAM_DIR "/tolvane_ENU.dat"),
                home->filePath(QStringLiteral("tolvane_ENU.dat")));
    platform::InstallProgramPaths(home->path().toStdString());
    qputenv("HOME", home->path().toUtf8());
    return home;
}

// Runs the cases of Test with no display and no session: the offscreen
// platform (with its options, such as a screen's configuration file), and
// a runtime folder of the tests' own for the single-instance lock. A fresh
// program folder is a first start, which looks for a receiver: neither the
// machine's gpsd nor its system bus is asked.
template <typename Test>
int RunOffscreenTests(int argc, char** argv, const QByteArray& platform = "offscreen") {
    QTemporaryDir runtime;
    qputenv("QT_QPA_PLATFORM", platform);
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    qputenv("GPSD_PORT", "1");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + runtime.path().toUtf8() + "/no-bus");
    qunsetenv("TOLVANE_HOME");
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace tolvane::shell
