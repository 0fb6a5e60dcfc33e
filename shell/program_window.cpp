#include "shell/program_window.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QStandardPaths>
#include <iostream>

#include "core/app/commands.h"
#include "core/app/startup.h"
#include "core/base/program_paths.h"
#include "platform/device_queries.h"
#include "platform/dynamic_library.h"
#include "platform/lock_file.h"
#include "shell/demo_run.h"
#include "shell/main_window.h"
#include "shell/single_instance.h"

namespace tolvane::shell {
namespace {

constexpr char kManualFileName[] = "README.md";

ProgramFiles FilesOfThisInstallation() {
    ProgramFiles files;
    files.optionsPath = SettingsFile("Options.dat");
    files.alarmPath = ProgramFile("Alarm.wav");
    const std::string manual = ProgramFile(kManualFileName);
    if (QFileInfo::exists(QString::fromStdString(manual))) files.manualPath = manual;
    files.documentsFolder =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
    return files;
}

ScreenMetrics ReadScreen() {
    ScreenMetrics metrics;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        metrics.dpiX = qRound(screen->logicalDotsPerInchX());
        metrics.dpiY = qRound(screen->logicalDotsPerInchY());
        metrics.width = screen->size().width();
        metrics.height = screen->size().height();
    }
    return metrics;
}

// Phones and tablets give the whole screen to the program.
bool IsTouchDevice(const DeviceQueries& queries) {
    std::string name;
    return queries.QueryPlatformName(name) == 0 && !name.empty();
}

}  // namespace

int RunProgram(const CommandLine& line) {
    QtHost host;
    const platform::LinuxDeviceQueries deviceQueries;
    platform::SystemLibraryLoader libraryLoader;
    RunSerialDevice serialDevice;
    DemoRun demo;
    if (line.demo && !demo.Start(ProgramFile("demo.nmea"), serialDevice)) {
        std::cerr << "tolvane: cannot start the demo receiver on " << ProgramFile("demo.nmea")
                  << '\n';
        return 1;
    }
    SingleInstance instance(QString::fromStdString(platform::RuntimeFolder()));
    Program program({host, deviceQueries, libraryLoader, serialDevice}, FilesOfThisInstallation());
    if (!StartBeforeWindow(program, instance)) return 0;
    demo.Apply(program.app.options);

    const WindowSetup setup = PrepareWindow(program, ReadScreen());
    const auto runCommand = [&program, &demo](int id) {
        // Exit saves the settings: the demo must not end up in them.
        if (id == kCommandExit) {
            demo.WithConfiguredSource(program.app.options, [&] { OnCommand(program, id); });
        } else {
            OnCommand(program, id);
        }
    };
    MainWindow window(program, setup, QApplication::font().family(), runCommand);
    host.SetWindow(&window);
    instance.SetBringForward([&window] { window.BringForward(); });
    if (IsTouchDevice(deviceQueries)) {
        window.showFullScreen();
    } else {
        window.show();
    }
    if (!StartAfterWindow(program)) return 0;
    if (demo.Running() && !program.app.gpsRunning) OnCommand(program, kCommandStartGps);
    const int result = QApplication::exec();
    host.SetWindow(nullptr);
    return result;
}

}  // namespace tolvane::shell
