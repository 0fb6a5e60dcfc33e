#include "shell/program_window.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QStandardPaths>
#include <iostream>

#include "core/app/commands.h"
#include "core/app/gps_commands.h"
#include "core/app/gps_setup_form.h"
#include "core/app/receiver_discovery.h"
#include "core/app/startup.h"
#include "core/base/program_paths.h"
#include "platform/lock_file.h"
#include "platform/receiver_setup.h"
#include "shell/dialogs/command_dialogs.h"
#include "shell/dialogs/touch.h"
#include "shell/qt_translations.h"

namespace tolvane::shell {
namespace {

constexpr char kManualFileName[] = "README.md";
constexpr char kDemoRecordingFileName[] = "demo.nmea";

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

// Phones and tablets give the whole screen to the program.
bool IsTouchDevice(const DeviceQueries& queries) {
    std::string name;
    return queries.QueryPlatformName(name) == 0 && !name.empty();
}

}  // namespace

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

ProgramWindow::ProgramWindow(const CommandLine& line)
    : demo_(line.demo),
      instance_(QString::fromStdString(platform::RuntimeFolder())),
      program_({host_, deviceQueries_, libraryLoader_, serialDevice_}, FilesOfThisInstallation()) {
    serialDevice_.SetModemDevice(&modemDevice_);
    instance_.SetBringForward([this] {
        if (window_) window_->BringForward();
    });
}

ProgramWindow::~ProgramWindow() {
    host_.SetDialogOpener(nullptr);
    host_.SetWindow(nullptr);
}

bool ProgramWindow::Start(const ScreenMetrics& screen) {
    if (demo_ && !demoRun_.Start(ProgramFile(kDemoRecordingFileName), serialDevice_)) {
        std::cerr << "tolvane: cannot start the demo receiver on "
                  << ProgramFile(kDemoRecordingFileName) << '\n';
        exitCode_ = 1;
        return false;
    }
    if (!StartBeforeWindow(program_, instance_)) return false;
    SpeakQtLanguage(LanguageToLoad(program_.app.runtime.language));
    demoRun_.Apply(program_.app);
    const WindowSetup setup = PrepareWindow(program_, screen);
    InstallTouchStyle();
    window_ = std::make_unique<MainWindow>(program_, setup, QApplication::font().family(),
                                           [this](int id) { RunCommand(id); });
    host_.SetWindow(window_.get());
    host_.SetDialogOpener([this](int id) { OpenCommandDialog(program_, window_.get(), id); });
    if (IsTouchDevice(deviceQueries_)) {
        window_->showFullScreen();
    } else {
        window_->show();
    }
    if (!StartAfterWindow(program_)) return false;
    if (demoRun_.Running() && !program_.app.gpsRunning) RunCommand(kCommandStartGps);
    if (ShouldFindReceiver(program_.app)) {
        firstStartSearch_.Start(program_.app.runtime.gnssShareSocket, window_.get(),
                                [this](const FoundReceiver& found) { TakeFound(found); });
    }
    return true;
}

void ProgramWindow::TakeFound(const FoundReceiver& found) {
    // The user may have set a source up while the search ran.
    if (!program_.app.runtime.firstStart) return;
    if (found.source == kGpsSourcePort) {
        const std::string portName = PortDeviceName(program_.app.options.portIndex);
        std::string reason;
        if (!platform::WritePortLink(portName, found.where, reason)) {
            host_.ShowNotice(LinkNotWrittenText(portName, found.where, reason));
            return;
        }
    }
    TakeFoundReceiver(program_, found);
}

void ProgramWindow::RunCommand(int id) {
    OnCommand(program_, id);
}

int RunProgram(const CommandLine& line) {
    ProgramWindow program(line);
    if (!program.Start(ReadScreen())) return program.ExitCode();
    return QApplication::exec();
}

}  // namespace tolvane::shell
