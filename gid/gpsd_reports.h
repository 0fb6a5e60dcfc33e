#pragma once

#include <gps.h>

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

}  // namespace tolvane::gid
