#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/gps/gid_records.h"

namespace tolvane::gid {

// Reading gpsd's JSON reports into the records the program reads. The
// library reads them itself: gpsd's own client library loops without end
// on some malformed reports (a device list with a field of the wrong type),
// and a report from whatever listens on gpsd's port must not hang the
// program. An unknown number reads as 0, as the NMEA path reads an empty
// field.

// The position record before any report: all zero, fix type 1.0 (no fix).
GidPositionInfo EmptyPositionInfo();

// What one watching client knows of the receiver.
struct GpsdRecords {
    GidPositionInfo position = EmptyPositionInfo();
    GidDeviceInfo device{};
    bool receiverOpen = false;  // gpsd has the receiver open
};

// Applies one report, one line of JSON, to records:
// - TPV: validity and fix type from the mode, position, altitude above mean
//   sea level, course, speed in knots and the local time of the fix;
// - SKY: the satellite counts, up to twelve satellites in PRN order (when
//   gpsd reports more, the ones used in the solution are kept first) and
//   the dilutions of precision;
// - DEVICE, and the first entry of DEVICES: the receiver's path, driver and
//   baud rate; a DEVICE report also says whether gpsd has it open.
// Other reports, and lines that are not one well-formed JSON object, are
// passed over. True when the report came from the receiver itself (TPV or
// SKY), which shows that it is alive.
bool ApplyReport(std::string_view line, GpsdRecords& records);

// gpsd's replies stay below 4096 bytes; a longer line is no report of
// gpsd's and is dropped whole rather than gathered without end.
inline constexpr std::size_t kMaxReportBytes = 16 * 1024;

// Cuts the bytes gpsd sends into its one-line reports and calls onLine for
// each. Only the line under way is kept between calls, at most
// kMaxReportBytes of it.
class GpsdReportStream {
  public:
    void Receive(std::string_view bytes, const std::function<void(std::string_view)>& onLine);

  private:
    std::string line_;
    bool overlong_ = false;  // the line under way passed the limit
};

}  // namespace tolvane::gid
