#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/app/program.h"

namespace tolvane {

// The command of reference-point placement: Enter on the cross-hair, or a
// tap on the picture, asks for the point's latitude and longitude.
inline constexpr int kCommandPlaceRefPoint = 40005;

inline constexpr std::uint32_t kTextMapMissing = 14500;
inline constexpr std::uint32_t kTextMapUnreadable = 14501;
inline constexpr std::uint32_t kTextRefPointsNotSaved = 14502;

// Whether a command of the Map menu and the Map view can run now; false for
// ids that are not theirs.
bool IsMapCommand(int id);
bool IsMapCommandAvailable(const AppState& app, int id);

// Shows the Map view (key "3"); it needs a loaded map.
void ShowMapView(Program& program);

// Starts placing reference point index (0..4): the cross-hair starts on
// the point where it is set, else in the middle of the view.
void StartRefPoint(Program& program, int index);

// A recent entry chosen from the menu: it moves to the front and its path
// comes back for loading. A file that no longer exists is taken out of
// the list with a message, and an empty path comes back.
std::string TakeRecentMap(Program& program, int index);

// A picture chosen with "Load Map": it becomes recent entry 1, which is
// then opened as the menu's entry would be.
void OpenMapFile(Program& program, const std::string& path);

// The picture of path as the Map view's map, with the calibration found for
// it, zoomed out and not panned.
void SetLoadedMap(AppState& app, const std::string& path,
                  std::shared_ptr<const MapPicture> picture);

// The picture of path has been read: it becomes the Map view's map with
// the calibration found for it, and the Map view is shown.
void OnMapLoaded(Program& program, const std::string& path,
                 std::shared_ptr<const MapPicture> picture);

// A picture that could not be read: it leaves the recent list, with a
// message.
void OnMapUnreadable(Program& program, const std::string& path);

// The position a new reference point is offered with: the point's own when
// it is set, else the current fix, else the last position the map followed.
// False when there is none.
bool OfferedRefPosition(const AppState& app, double& latitude, double& longitude);

// The offered position as the reference point dialog fills it in, in the
// user's coordinate format with the hemisphere last; false when there is
// none to offer.
bool OfferedRefPositionText(const AppState& app, std::string& latitude, std::string& longitude);

// What the reference point dialog shows under the position once a
// least-squares fit (three points or more) gives them: the residual of
// every set point and the RMS ("1: 0.4 m   3: 111.2 m   RMS 55.6 m").
// Empty before.
std::string RefPointResidualsText(const MapState& map);

// A tap or click at x, y of the window while a point is placed in the Map
// view: the cross-hair goes to the picture pixel there and the position is
// asked for. False when the tap is not for placing a point.
bool TapRefPoint(Program& program, const Rect& body, int x, int y);

// Moves the cross-hair by whole steps to the east and south.
void MoveCrossHair(Program& program, int columns, int rows);

// The point being placed, at the cross-hair, with the user's latitude and
// longitude. The calibration is fitted again and saved beside the map's
// name in the "Reference Points" folder.
void PlaceRefPoint(Program& program, double latitude, double longitude);

// Drops a reference point (fitted again and saved).
void DropRefPoint(Program& program, int index);

// Ends placing without a change.
void CancelRefPoint(Program& program);

}  // namespace tolvane
