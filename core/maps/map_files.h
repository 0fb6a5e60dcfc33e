#pragma once

#include <string>

#include "core/maps/calibration.h"

namespace tolvane {

// The reference-point file of a picture: the picture's file name without
// its folder and extension, ".rpt", in the "Reference Points" folder.
std::string RefPointPath(const std::string& refPointDir, const std::string& picturePath);

// The program's own text file of reference points (CR LF lines):
//   Tolvane Reference Points,1
//   Picture,<width>,<height>
//   Point,<n 1..5>,<x>,<y>,<latitude>,<longitude>
// one Point line per set point, pixels and degrees with a decimal point.
bool WriteRefPoints(const std::string& path, const Calibration& calibration, int width, int height);
// False when the file is missing or holds no usable point; lines that do
// not parse are skipped.
bool ReadRefPoints(const std::string& path, Calibration& calibration);

// The Point lines of an OziExplorer .map file (pixel x and y, then degrees
// and minutes with their hemisphere letters); the first five that carry
// pixels are taken.
bool ReadOziMap(const std::string& path, Calibration& calibration);

// A world file's six numbers (x per column, y per column, x per row, y per
// row, then x and y of the middle of the top-left pixel) in degrees of
// longitude and latitude, turned into the picture's four corners and its
// middle. False for a missing file or one in metres.
bool ReadWorldFile(const std::string& path, int width, int height, Calibration& calibration);

// Where the calibration of a picture comes from, tried in this order: the
// user's own points in the "Reference Points" folder, a .rpt file that came
// beside the picture, an OziExplorer .map
// file beside the picture, a world file beside it (.pgw, .jgw, .gfw, .bpw,
// .tfw and the like, or .wld). An empty calibration when none is found.
Calibration FindCalibration(const std::string& picturePath, const std::string& refPointDir,
                            int width, int height);

}  // namespace tolvane
