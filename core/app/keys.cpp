#include "core/app/keys.h"

#include <algorithm>
#include <cmath>

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "core/base/string_manager.h"
#include "core/nav/instrument_memory.h"
#include "core/placement/picture_map_placement.h"
#include "core/placement/world_map_placement.h"

namespace tolvane {
namespace {

// The zoom levels the arrow keys reach in the two map views.
constexpr int kWorldMapZoomFloor = -255;  // never reached: the level stays above it

// The view commands of the digit keys; 0 for a digit without one.
constexpr int kDigitCommands[] = {
    0,  // "0" starts and stops the GPS
    kCommandGpsInfo,
    kCommandWorldMap,
    kCommandMap,
    kCommandCompass,
    kCommandSpeed,
    kCommandTripStat,
    kCommandSatellites,
    0,
    0,
};

bool IsArrow(Key key) {
    return key == Key::kLeft || key == Key::kUp || key == Key::kRight || key == Key::kDown;
}

int ArrowIndex(Key key) {
    return static_cast<int>(key) - static_cast<int>(Key::kLeft);
}

void PlayLimitBeep(Host& host) {
    RepeatUntilSuccess([&host] { return host.Sound().PlayLimitBeep(); });
}

// A held arrow key steps at most once per interval; a release in between
// lets the next press through at once.
bool AcceptArrow(AppState& app, Key key, FileTime now) {
    const int index = ArrowIndex(key);
    ArrowKeyTimes& times = app.arrowKeys;
    if (!times.released[index] && now - times.lastAccepted[index] < kArrowKeyInterval) {
        return false;
    }
    times.lastAccepted[index] = now;
    times.released[index] = false;
    return true;
}

// One zoom step within [floor, ceiling]; false at the end.
bool StepZoom(int& level, int step, int floor, int ceiling) {
    const int next = level + step;
    if (next < floor || next > ceiling) return false;
    level = next;
    return true;
}

// One zoom step of the shown map; false at its end. The World Map also
// stops at its scale limit, which lies above its lowest level.
bool ZoomMap(AppState& app, int step) {
    MapKeys& map = app.mapKeys;
    if (app.currentView == kViewMap) return StepZoom(map.mapZoom, step, 0, kMapZoomCeiling);
    const int floor = std::max(kWorldMapZoomFloor + 1, kWorldMapLowestZoom);
    return StepZoom(map.worldMapZoom, step, floor, map.worldMapCeiling);
}

// An arrow's step to the east and to the south.
int EastStep(Key key) {
    return key == Key::kRight ? 1 : key == Key::kLeft ? -1 : 0;
}

int SouthStep(Key key) {
    return key == Key::kDown ? 1 : key == Key::kUp ? -1 : 0;
}

// Pans the Map view by east and south steps, whole ones at a time.
void PanPictureMap(AppState& app, double east, double south) {
    // The steps count from where the map last followed the position.
    if (app.gps.connected && app.mapCountdown == 0) {
        app.mapKeys.panColumns = app.mapKeys.panRows = 0;
    }
    MapDragRest& rest = app.mapDragRest;
    rest.east += east;
    rest.south += south;
    const double columns = std::trunc(rest.east);
    const double rows = std::trunc(rest.south);
    app.mapKeys.panColumns += static_cast<int>(columns);
    app.mapKeys.panRows += static_cast<int>(rows);
    rest = {rest.east - columns, rest.south - rows};
}

// A pan stops the map following the position for a while when the GPS is on.
void PauseFollowing(AppState& app) {
    if (app.gps.connected) app.mapCountdown = kPanFollowPauseTicks;
}

void OnMapArrow(Program& program, Key key) {
    AppState& app = program.app;
    if (!AcceptArrow(app, key, program.host.Time().NowUtc())) return;
    if (app.mapKeys.zoomMode) {
        const bool upOrDown = key == Key::kUp || key == Key::kDown;
        if (!upOrDown || !ZoomMap(app, key == Key::kUp ? 1 : -1)) {
            PlayLimitBeep(program.host);
            return;
        }
    } else {
        const int east = EastStep(key);
        const int south = SouthStep(key);
        if (app.currentView == kViewWorldMap) {
            StepWorldMap(app, east, south);
        } else {
            PanPictureMap(app, east, south);
        }
        PauseFollowing(app);
    }
    program.host.Repaint();
}

// Left and Right in the Speed view step the alarm; at "Off" and at the last
// limit nothing happens.
void OnSpeedArrow(Program& program, Key key) {
    if (key != Key::kLeft && key != Key::kRight) return;
    const int index = program.app.options.speedAlarmIndex;
    const int next =
        StepSpeedAlarmIndex(index, key == Key::kLeft ? SpeedAlarmStep::kDown : SpeedAlarmStep::kUp);
    if (next != index) OnCommand(program, SpeedAlarmCommand(next));
}

void OnEnter(Program& program) {
    AppState& app = program.app;
    switch (app.currentView) {
        case kViewTripStat:
            if (program.host.AskYesNo(LanguageText(kTextClearTrip), program.title)) {
                ClearTrip(app.gps, app.instruments);
                program.host.Repaint();
            }
            break;
        case kViewCompass:
            app.compassMode =
                app.compassMode == kCompassNorthUp ? kCompassCourseUp : kCompassNorthUp;
            program.host.Repaint();
            break;
        case kViewWorldMap:
        case kViewMap:
            app.mapKeys.zoomMode = !app.mapKeys.zoomMode;
            program.host.Repaint();  // the map shows what the arrows do now
            break;
        default:
            break;
    }
}

// While a reference point is placed the arrows move the cross-hair, Enter
// asks for its position and every other key is ignored.
void OnPlacingKey(Program& program, Key key) {
    if (key == Key::kEnter) {
        OnCommand(program, kCommandPlaceRefPoint);
    } else if (IsArrow(key) && AcceptArrow(program.app, key, program.host.Time().NowUtc())) {
        MoveCrossHair(program, EastStep(key), SouthStep(key));
    }
}

}  // namespace

void OnKeyDown(Program& program, Key key) {
    AppState& app = program.app;
    if (app.map.placing >= 0) return OnPlacingKey(program, key);
    if (key == Key::kDigit0) {
        OnCommand(program, app.gpsRunning ? kCommandStopGps : kCommandStartGps);
    } else if (key <= Key::kDigit9) {
        // A command that cannot run now is refused without a sound: "3"
        // shows the Map view only while a map is loaded and does nothing
        // before then.
        const int command = kDigitCommands[static_cast<int>(key)];
        if (command != 0) OnCommand(program, command);
    } else if (key == Key::kStar) {
        OnCommand(program, kCommandGpsSetup);
    } else if (key == Key::kHash) {
        OnCommand(program, kCommandNightView);
    } else if (key == Key::kEnter) {
        OnEnter(program);
    } else if (IsMapView(app.currentView)) {
        OnMapArrow(program, key);
    } else if (app.currentView == kViewSpeed) {
        OnSpeedArrow(program, key);
    }
}

void OnKeyUp(Program& program, Key key) {
    if (IsArrow(key)) program.app.arrowKeys.released[ArrowIndex(key)] = true;
}

void ZoomShownMap(Program& program, int steps) {
    if (!IsMapView(program.app.currentView)) return;
    const int step = steps > 0 ? 1 : -1;
    for (int taken = 0; taken != steps; taken += step) {
        if (!ZoomMap(program.app, step)) {
            PlayLimitBeep(program.host);
            break;
        }
    }
    program.host.Repaint();
}

void DragShownMap(Program& program, int dx, int dy, const Rect& body) {
    AppState& app = program.app;
    if (!IsMapView(app.currentView)) return;
    // The map moves with the hand: its centre goes the other way.
    if (app.currentView == kViewWorldMap) {
        PanWorldMap(app, -dx, -dy, WorldMapPlacement(app, body).distance);
    } else {
        // A pan step moves the picture by MapStepPixels of its own pixels;
        // counted on the screen, the picture follows the hand.
        const double step =
            std::max(1.0, MapStepPixels(app) * ComputeMapGeometry(app, body).screenPerPixel);
        PanPictureMap(app, -dx / step, -dy / step);
    }
    PauseFollowing(app);
    program.host.Repaint();
}

}  // namespace tolvane
