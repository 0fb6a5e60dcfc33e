// The receivers a daemon owns, read by the window: gnss-share's UNIX socket,
// and the modem of a ModemManager (the test's own stand-in) on a private
// bus that DBUS_SYSTEM_BUS_ADDRESS names; and logind's sleep inhibitor,
// held while a track is recorded.

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "core/app/commands.h"
#include "core/app/gid_commands.h"
#include "core/app/gps_setup_form.h"
#include "core/app/local_settings.h"
#include "core/base/string_manager.h"
#include "core/data/options.h"
#include "core/data/point_import.h"
#include "core/gps/modem_device.h"
#include "platform/port_device.h"
#include "shell/dialogs/modem_manager.h"
#include "shell/program_window.h"
#include "tests/core/nmea_sentence.h"
#include "tests/shell/program_home.h"

namespace tolvane::shell {
namespace {

// Two seconds of a receiver with a fix.
std::string Recording() {
    return testing::NmeaSentence("GPRMC,101500.000,A,5956.000,N,01043.000,E,10.0,90.0,231126,,") +
           testing::NmeaSentence("GPGGA,101500.000,5956.000,N,01043.000,E,1,08,0.9,120.0,M,,,,") +
           testing::NmeaSentence("GPRMC,101501.000,A,5956.001,N,01043.000,E,10.0,90.0,231126,,") +
           testing::NmeaSentence("GPGGA,101501.000,5956.001,N,01043.000,E,1,08,0.9,120.0,M,,,,");
}

// gnss-share's side of the socket: it takes the program's connections and
// sends what it is given to the latest, as the first start's search
// connects and leaves before the GPS connects.
class ShareServer {
  public:
    explicit ShareServer(const std::string& path) { server_.listen(QString::fromStdString(path)); }

    void Send(const std::string& bytes) {
        while (QLocalSocket* latest = server_.nextPendingConnection()) client_ = latest;
        if (client_ != nullptr) client_->write(bytes.data(), static_cast<qint64>(bytes.size()));
    }

  private:
    QLocalServer server_;
    QPointer<QLocalSocket> client_;
};

class DaemonReceiversTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void TheModemGivesFixesAndIsSwitchedBackOff();
    void AMissingSocketAndModemManagerProblemsAreNamed();
    void GpsSetupFindsTheSocketAndTheModemAndKeepsTheChoice();
    void RecordingATrackHoldsSleepOffUntilItStops();
    void AFirstStartFindsGnssShareAndThenTheModemByItself();

  private:
    // Starts the program with the serial port source and the receiver lines
    // of tolvane.conf, and then the GPS when asked.
    ProgramWindow& Start(const std::string& receiverLines, bool startGps = true,
                         bool logTrack = false);
    // Starts the program as for the first time: no Options.dat, and
    // tolvane.conf with the given lines.
    ProgramWindow& StartFirstTime(const std::string& localLines);
    std::string OptionsPath() const {
        return home_->filePath(QStringLiteral("Options.dat")).toStdString();
    }
    // Starts the stand-ins of the system bus, ModemManager in a mode; it
    // reads recording_.
    void StartModemManager(const QString& mode);
    // What the stand-ins have printed since the last call, line by line.
    QByteArray MockOutput() { return systemBus_.readAll(); }

    QProcess bus_;
    QProcess systemBus_;
    std::unique_ptr<QTemporaryDir> home_;
    std::unique_ptr<ProgramWindow> program_;
    QString recording_;
};

void DaemonReceiversTest::initTestCase() {
    bus_.start(QStringLiteral(TOLVANE_DBUS_DAEMON),
               {QStringLiteral("--session"), QStringLiteral("--nofork"),
                QStringLiteral("--print-address=1")});
    QVERIFY(bus_.waitForReadyRead(5000));
    // Qt opens the system bus at its first use, at this address.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.readLine().trimmed());
}

void DaemonReceiversTest::cleanupTestCase() {
    bus_.kill();
    bus_.waitForFinished();
}

void DaemonReceiversTest::init() {
    home_ = NewProgramHome();
    QVERIFY(CStringManager::GetInstance().Load(9, 1));
    recording_ = home_->filePath(QStringLiteral("recording.nmea"));
    QFile file(recording_);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(Recording()));
}

void DaemonReceiversTest::cleanup() {
    program_.reset();
    systemBus_.kill();
    systemBus_.waitForFinished();
    home_.reset();
}

ProgramWindow& DaemonReceiversTest::Start(const std::string& receiverLines, bool startGps,
                                          bool logTrack) {
    Options options;
    ResetOptions(options);
    options.gpsSource = kGpsSourcePort;
    options.trackLoggerEnabled = logTrack ? 1 : 0;
    // A point a second, so that a short run logs a few.
    options.trackIntervalIndex = 0;
    options.trackIntervalValues[0] = 1;
    if (!SaveOptions(OptionsPath(), options, 1)) qFatal("Options.dat not written");
    ProgramWindow& program = StartFirstTime(receiverLines);
    if (startGps && !program.Core().app.gpsRunning) program.RunCommand(kCommandStartGps);
    return program;
}

ProgramWindow& DaemonReceiversTest::StartFirstTime(const std::string& localLines) {
    QFile conf(QString::fromStdString(LocalSettingsPath(OptionsPath())));
    if (!conf.open(QIODevice::WriteOnly)) qFatal("tolvane.conf not written");
    conf.write(QByteArray::fromStdString(localLines));
    conf.close();
    program_ = std::make_unique<ProgramWindow>(CommandLine{});
    if (!program_->Start({96, 96, 720, 1440})) qFatal("the program did not start");
    return *program_;
}

void DaemonReceiversTest::StartModemManager(const QString& mode) {
    systemBus_.start(QStringLiteral(TOLVANE_SYSTEM_BUS_MOCK), {recording_, mode});
    QVERIFY(systemBus_.waitForReadyRead(5000));
    QCOMPARE(systemBus_.readLine().trimmed(), QByteArray("ready"));
}

// A modem gives NMEA on the bus, or, left unmanaged, on a GPS port of its
// own; either way the window reaches a fix, and Stop GPS puts back what the
// modem had switched on.
void DaemonReceiversTest::TheModemGivesFixesAndIsSwitchedBackOff() {
    const std::pair<const char*, const char*> modes[] = {
        {"working", "Setup 4 0\nSetup 0 0\n"},
        {"unmanaged", "Setup 16 0\nSetup 0 0\n"},
    };
    for (const auto& [mode, setups] : modes) {
        StartModemManager(QString::fromLatin1(mode));
        ProgramWindow& program = Start("receiver = modem-manager\n");
        const AppState& app = program.Core().app;
        QVERIFY2(app.gpsRunning, mode);
        QTRY_VERIFY_WITH_TIMEOUT(HasLiveFix(app.gps), 5000);
        program.RunCommand(kCommandStopGps);
        QVERIFY(!app.gpsRunning);
        QByteArray said;
        QTRY_COMPARE((said += MockOutput()), QByteArray(setups));
        program_.reset();
        systemBus_.kill();
        systemBus_.waitForFinished();
    }
}

void DaemonReceiversTest::AMissingSocketAndModemManagerProblemsAreNamed() {
    const std::string gone = home_->filePath(QStringLiteral("gone.sock")).toStdString();
    platform::PortDevice share;
    QVERIFY(!share.Open(SocketPortName(gone)));
    QCOMPARE(share.FailureReason(), std::string("No such file or directory"));

    ModemManagerLocation location;
    ModemSerialDevice device(location);
    QVERIFY(!device.Open(kModemPortName));
    QCOMPARE(device.FailureReason(), ModemFaultText(ModemFault::kNoModemManager));
    QVERIFY(!device.FailureReason().empty());
    const std::pair<const char*, ModemFault> modes[] = {
        {"no-modem", ModemFault::kNoModem},
        {"no-gnss", ModemFault::kNoGnss},
        {"refuses", ModemFault::kRefused},
    };
    for (const auto& [mode, fault] : modes) {
        StartModemManager(QString::fromLatin1(mode));
        QVERIFY2(!device.Open(kModemPortName), mode);
        QCOMPARE(device.FailureReason(), ModemFaultText(fault));
        systemBus_.kill();
        systemBus_.waitForFinished();
    }
}

// GPS Setup marks the sources the machine offers, its two new pages say
// whether gnss-share's socket answers and which modem ModemManager offers,
// and OK keeps the choice beside the settings.
void DaemonReceiversTest::GpsSetupFindsTheSocketAndTheModemAndKeepsTheChoice() {
    const std::string socketPath = home_->filePath(QStringLiteral("gnss.sock")).toStdString();
    ShareServer server(socketPath);
    StartModemManager(QStringLiteral("working"));
    ProgramWindow& program = Start("receiver = port\n", false);
    QString shareState;
    QString modemState;
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        auto* source = dialog->findChild<QComboBox*>(QStringLiteral("source"));
        // The list marks what the machine offers: here the modem, not gpsd.
        QTRY_COMPARE(source->itemText(kSetupSourceModemManager),
                     QStringLiteral("Modem receiver (ModemManager) - found here"));
        QCOMPARE(source->itemText(kGpsSourceGid), QStringLiteral("Shared GPS service (gpsd)"));
        source->setCurrentIndex(kSetupSourceModemManager);
        auto* modem = dialog->findChild<QLabel*>(QStringLiteral("modemState"));
        QTRY_VERIFY(modem->text().contains(QStringLiteral("Modem/0")));
        modemState = modem->text();
        source->setCurrentIndex(kSetupSourceGnssShare);
        auto* path = dialog->findChild<QLineEdit*>(QStringLiteral("socketPath"));
        path->setText(QString::fromStdString(socketPath));
        emit path->editingFinished();
        auto* share = dialog->findChild<QLabel*>(QStringLiteral("shareState"));
        QTRY_VERIFY(share->text().startsWith(QStringLiteral("gnss-share answers")));
        shareState = share->text();
        QMetaObject::invokeMethod(dialog, "accept");
    });
    program.RunCommand(kCommandGpsSetup);
    QCOMPARE(modemState, QStringLiteral("Modem with a GNSS receiver found: "
                                        "/org/freedesktop/ModemManager1/Modem/0"));
    QCOMPARE(shareState, QString::fromStdString("gnss-share answers on " + socketPath + "."));
    const AppState& app = program.Core().app;
    QCOMPARE(app.runtime.daemonReceiver, DaemonReceiver::kGnssShare);
    QCOMPARE(app.runtime.gnssShareSocket, socketPath);
    QCOMPARE(app.options.gpsSource, kGpsSourcePort);
}

// The gnss-share socket set up in tolvane.conf gives fixes within five
// seconds; while the GPS runs with the track logger on, logind's sleep
// inhibitor is held, the track keeps every point, and Stop GPS lets the
// inhibitor go.
void DaemonReceiversTest::RecordingATrackHoldsSleepOffUntilItStops() {
    const std::string socketPath = home_->filePath(QStringLiteral("gnss.sock")).toStdString();
    ShareServer server(socketPath);
    StartModemManager(QStringLiteral("working"));
    ProgramWindow& program =
        Start("receiver = gnss-share\ngnss-share-socket = " + socketPath + "\n", true, true);
    const AppState& app = program.Core().app;
    QVERIFY(app.gpsRunning);
    const QByteArray inhibit = "Inhibit sleep Tolvane GPS Utilities Recording a GPS track block\n";
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT(
        (server.Send(Recording()), said += MockOutput(), HasLiveFix(app.gps) && said == inhibit),
        5000);
    QVERIFY(app.sleepHeld);
    const auto logged = [&app] {
        const std::lock_guard<std::mutex> guard(app.track.lock);
        return app.track.liveTrack.Count();
    };
    QTRY_VERIFY_WITH_TIMEOUT((server.Send(Recording()), logged() >= 3), 10000);
    program.RunCommand(kCommandStopGps);
    QTRY_COMPARE((said += MockOutput()), inhibit + "Released\n");
    // Every point logged while the inhibitor was held is in the file.
    const ImportRead track = ReadTrackLog(app.track.currentPath);
    QCOMPARE(track.problem, ImportProblem::kNone);
    QCOMPARE(static_cast<int>(track.contents.tracks.at(0).points.size()), logged());
}

// With nothing set up, the first start looks for a receiver by itself: a
// phone's gnss-share socket first, then ModemManager's modem; it starts the
// GPS on the one it finds, says so, and keeps the choice.
void DaemonReceiversTest::AFirstStartFindsGnssShareAndThenTheModemByItself() {
    const std::string socketPath = home_->filePath(QStringLiteral("gnss.sock")).toStdString();
    {
        ShareServer server(socketPath);
        ProgramWindow& program = StartFirstTime("gnss-share-socket = " + socketPath + "\n");
        const AppState& app = program.Core().app;
        QVERIFY(!app.gpsRunning);
        QTRY_VERIFY_WITH_TIMEOUT((server.Send(Recording()), HasLiveFix(app.gps)), 5000);
        QCOMPARE(app.runtime.daemonReceiver, DaemonReceiver::kGnssShare);
        auto* notice = program.Window().findChild<QMessageBox*>();
        QVERIFY(notice != nullptr && notice->isVisible());
        QVERIFY2(notice->text().contains(QString::fromStdString(socketPath)),
                 qPrintable(notice->text()));
        program_.reset();
    }
    // The choice is kept, and a later start searches no more.
    Options saved;
    QVERIFY(LoadOptions(OptionsPath(), saved, 1));
    QCOMPARE(saved.gpsSource, kGpsSourcePort);

    QFile::remove(QString::fromStdString(OptionsPath()));
    StartModemManager(QStringLiteral("working"));
    ProgramWindow& program = StartFirstTime("gnss-share-socket = " + socketPath + "\n");
    const AppState& app = program.Core().app;
    QTRY_VERIFY_WITH_TIMEOUT(HasLiveFix(app.gps), 5000);
    QCOMPARE(app.runtime.daemonReceiver, DaemonReceiver::kModemManager);
}

}  // namespace
}  // namespace tolvane::shell

int main(int argc, char** argv) {
    return tolvane::shell::RunOffscreenTests<tolvane::shell::DaemonReceiversTest>(argc, argv);
}

#include "daemon_receivers_test.moc"
