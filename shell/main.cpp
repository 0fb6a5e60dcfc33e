#include <QApplication>
#include <QIcon>
#include <clocale>
#include <iostream>

#include "platform/program_location.h"
#include "shell/command_line.h"
#include "shell/program_window.h"
#include "shell/screenshots.h"

namespace {

constexpr int kExitUsage = 2;

QStringList ArgumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

}  // namespace

int main(int argc, char** argv) {
    const tolvane::shell::CommandLine line =
        tolvane::shell::ParseCommandLine(ArgumentsOf(argc, argv));
    if (line.help) {
        std::cout << tolvane::shell::UsageText().toStdString();
        return 0;
    }
    if (!line.error.isEmpty()) {
        std::cerr << "tolvane: " << line.error.toStdString() << "\n\n"
                  << tolvane::shell::UsageText().toStdString();
        return kExitUsage;
    }
    tolvane::platform::InstallProgramPaths(line.home.toStdString());
    // The pictures need no display: they are painted on Qt's offscreen
    // platform whatever the session offers.
    if (!line.screenshotFolder.isEmpty()) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // Qt takes the whole locale of the desktop, numbers included; the
    // program's coordinates, speeds and files keep the decimal point in
    // every language, so the C library goes on printing and reading them
    // the C way.
    std::setlocale(LC_NUMERIC, "C");
    if (!line.screenshotFolder.isEmpty()) return tolvane::shell::RunScreenshots(line);
    // The desktop matches the window to its desktop entry and icon by name.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tolvane.Tolvane"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.tolvane.Tolvane")));
    return tolvane::shell::RunProgram(line);
}
