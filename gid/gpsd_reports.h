#pragma once

#include <gps.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/gps/gid_records.h"

namespace tolvane::gid {

// Turning gpsd's reports, as its client library decodes them, into the
// records the program reads. gpsd marks every unknown number as NaN; the
// records carry 0 instead, as the NMEA path does for an empty field.

// The position record before any report: all zero, fix type 1.0 (no fix).
GidPositionInfo EmptyPositionInfo();

// A TPV report: validity and fix type from the mode, position, altitude
// above mean sea level, course, speed in knots and the local time of the fix.
void ApplyPositionReport(const gps_fix_t& fix, GidPositionInfo& info);

// A SKY report: the satellite counts, up to twelve satellites in PRN order
// (when gpsd reports more, the ones used in the solution are kept first) and
// the dilutions of precision.
void ApplySkyReport(const gps_data_t& data, GidPositionInfo& info);

// A DEVICE report, or an entry of DEVICES: the receiver's path, driver, baud
// rate and whether gpsd has it open.
void ApplyDeviceReport(const devconfig_t& device, GidDeviceInfo& info);

// What one watching client knows of the receiver.
struct GpsdRecords {
    GidPositionInfo position = EmptyPositionInfo();
    GidDeviceInfo device{};
    bool receiverOpen = false;  // gpsd has the receiver open
};

// Applies one decoded report of any kind to records. True when the report
// came from the receiver itself (a fix or a sky view), which shows that it
// is alive.
bool ApplyReport(const gps_data_t& data, GpsdRecords& records);

// Empties data as gpsd's client library does before its first report.
void ClearGpsData(gps_data_t& data);

// gpsd's replies stay below 4096 bytes; a longer line is no report of
// gpsd's and is dropped whole rather than gathered without end.
inline constexpr std::size_t kMaxReportBytes = 16 * 1024;

// Cuts the bytes gpsd sends into its one-line JSON reports and decodes each
// with gpsd's client library into data, then calls onReport. Only the line
// under way is kept between calls, at most kMaxReportBytes of it.
class GpsdReportStream {
  public:
    void Receive(std::string_view bytes, gps_data_t& data,
                 const std::function<void(const gps_data_t&)>& onReport);

  private:
    std::string line_;
    bool overlong_ = false;  // the line under way passed the limit
};

}  // namespace tolvane::gid
