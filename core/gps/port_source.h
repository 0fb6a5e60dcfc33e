#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "core/base/file_time.h"
#include "core/base/services.h"
#include "core/gps/nmea_record.h"
#include "core/gps/serial_device.h"

namespace tolvane {

inline constexpr int kPortBufferSize = 2048;  // text gathered between parses
inline constexpr int kPortReadSize = 1024;    // one read of the device
inline constexpr int kReaderPauseMilliseconds = 200;
// The longest a stop waits for the reader thread to end.
inline constexpr int kReaderStopMilliseconds = 1000;
inline constexpr int kWatchdogMilliseconds = 1000;
inline constexpr int kSilentSecondsLimit = 30;

// Why the source stopped by itself; the lost-GPS command shows a message for
// each.
inline constexpr int kStopReasonNone = 0;
inline constexpr int kStopReasonDisconnected = 1;
inline constexpr int kStopReasonSilent = 2;

// Codes left in lastErrorCode, shown inside the start command's messages.
inline constexpr char kErrorPortOpen[] = "0x08200a06";
inline constexpr char kErrorPortSettings[] = "0x08200a08";
inline constexpr char kErrorPortTimeouts[] = "0x08200a09";
inline constexpr char kErrorWatchdogTimer[] = "0x08200a0d";
inline constexpr char kErrorReaderThread[] = "0x08200a0e";
inline constexpr char kErrorReaderStop[] = "0x08200a0f";
inline constexpr char kErrorBluetoothPort[] = "0x08200a10";

inline constexpr int kPortCount = 19;  // COM0..COM9, GPD1..GPD9
inline constexpr int kBaudCount = 7;

// The device text of a port index: "COM0".."COM9" for 0-9, "GPD1".."GPD9"
// for 10-18; empty outside the table.
std::string PortDeviceName(int portIndex);
// The baud rate of a baud index (4800 .. 115200); 0 outside the table.
std::uint32_t BaudRateForIndex(int baudIndex);

// What the port source needs from the rest of the program. Start-up links
// it once; tests and the tool link their own parts.
struct PortSourceLinks {
    SerialDevice* device = nullptr;  // the port; not owned
    TimerService* timers = nullptr;  // the one-second watchdog
    const Clock* clock = nullptr;    // names the NMEA log
    // The "Log NMEA data" setting, read when the reader starts; not owned.
    const std::int32_t* logNmeaSetting = nullptr;
    std::string nmeaFolder;  // the NMEA folder of the data tree
    // Called on the reader thread once for each RMC sentence parsed.
    std::function<void()> rmcParsed;
    // The lost-GPS command; the watchdog calls it, on its own thread, when
    // the device went away or fell silent.
    std::function<void()> lostGps;
};

struct ReaderLife;

// How StartReader runs the reader: on its own thread, or pass by pass by the
// caller (the replay), which then calls ReaderPass itself.
enum class ReaderDrive { kThread, kCaller };

// The serial or GPD port source: the port, its reader thread and watchdog,
// and the one NMEA record of the program that the reader fills. The reader
// appends to buffer without the lock (only the reader touches it outside a
// parse); lock guards the parse into record and paging, and the per-second
// update takes it to read record.
struct PortSource {
    PortSource() = default;
    PortSource(const PortSource&) = delete;
    PortSource& operator=(const PortSource&) = delete;
    // Ends a reader thread that is still running.
    ~PortSource();

    PortSourceLinks links;

    std::uint32_t btDevice = 0;  // registered Bluetooth port; 0 when none
    int btPortIndex = 0;
    std::string portName;  // "COM4:", "GPD1:" or a device path
    std::uint32_t baudRate = 38400;
    std::uint8_t stopBits = 0;
    std::uint8_t byteSize = 8;
    std::uint8_t parity = 0;
    std::thread readerThread;
    std::atomic<int> silentSeconds{0};
    char buffer[kPortBufferSize] = {};
    int bufferedBytes = 0;
    std::atomic<int> parseRequested{0};
    int watchdogTimer = 0;
    std::atomic<int> stopRequested{0};
    std::atomic<int> stopReason{kStopReasonNone};
    std::string lastErrorCode;
    std::string lastErrorReason;  // the device's words for it; may be empty
    // "Log NMEA data" as the reader sees it: StartReader copies the option,
    // and the Options dialog sets it while the source runs, so switching it
    // off stops the writes at the next read.
    std::atomic<bool> logNmea{false};
    // The talkers the reader's parse reads. The GPS start command sets it
    // from the multi-GNSS setting before the reader starts; a change while a
    // reader runs is taken at its next parse.
    std::atomic<NmeaTalkers> talkers{NmeaTalkers::kGpOnly};
    std::mutex lock;
    NmeaRecord record{};
    GsvPaging paging;
    NmeaParseStats parseStats;  // every parse since the program started; under lock
    NmeaFixReader fixReader;    // reads record for the per-second update; under lock

    // The reader's own read buffer, one byte longer for the terminating zero,
    // and the bytes of a read held back until a full buffer is parsed.
    char readBuffer[kPortReadSize + 1] = {};

    // What the reader thread shares with the stop; it outlives the source
    // when the stop has to leave the thread behind.
    std::shared_ptr<ReaderLife> readerLife;

    // The NMEA log is named on the user-interface thread and written on the
    // reader thread.
    void SetNmeaLogPath(const std::string& path);
    std::string NmeaLogPath() const;

  private:
    mutable std::mutex nmeaLogPathLock_;
    std::string nmeaLogPath_;
};

// Links the Bluetooth receiver at bluetoothAddress: drops a previous link,
// then opens the RFCOMM link to the receiver's Serial Port service on
// channel (0 for the usual one) through the port's device, and names it in
// portName. The link stays open for OpenPort. False with kErrorBluetoothPort
// and the device's reason when no link can be made.
bool RegisterBluetoothPort(PortSource& port, std::uint64_t bluetoothAddress, int channel = 0);

// Opens portName and applies baudRate, the character format, XON/XOFF flow
// control and the read time-outs. False with lastErrorCode set on failure.
bool OpenPort(PortSource& port);

// Names the NMEA log when "Log NMEA data" is on, starts the watchdog and the
// reader. False with lastErrorCode set (and the port closed) on failure.
bool StartReader(PortSource& port, ReaderDrive drive = ReaderDrive::kThread);

// Stops the watchdog and the reader, closes the port; returns stopReason.
// A reader that has not ended within kReaderStopMilliseconds (a driver whose
// read never returns) is left behind with kErrorReaderStop: it touches
// nothing of the source once its read comes back.
int StopPortSource(PortSource& port);

bool IsPortOpen(const PortSource& port);

// The last error as the messages show it: the code with the device's reason
// beside it, "0x08200a08 (Inappropriate ioctl for device)".
std::string PortErrorText(const PortSource& port);

// One pass of the reader behind its pause: one read of the device, the NMEA
// log, the append to buffer and, when asked for, the parse. Returns what the
// read returned (a count, 0, or -1 for a failed read).
int ReaderPass(PortSource& port);

// Copies count bytes of a read to text as the parser's zero-terminated text
// and returns the number of zero bytes among them. A zero byte would end
// the text there and lose the rest of the read; it is no character of
// NMEA 0183 either, so each becomes a '$', which ends the sentence it
// broke (the parser drops that one as broken) and lets the sentences behind
// it be read.
int CopyReadAsText(char* text, const char* bytes, int count);

// One run of the one-second watchdog: asks for a parse, counts the silent
// second and calls the lost-GPS command when the device went away
// (kStopReasonDisconnected) or has been silent for 30 seconds
// (kStopReasonSilent). Returns the reason it found, or kStopReasonNone.
int WatchdogTick(PortSource& port);

// The NMEA log's path for a start at the clock's present local time:
// "<nmeaFolder>/YYYYMMDDhhmmss_NMEA0183.log". Creates no file.
void BuildNmeaLogPath(PortSource& port);

}  // namespace tolvane
