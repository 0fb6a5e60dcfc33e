#include "shell/map_pointer.h"

#include <QApplication>
#include <QLineF>

#include "core/app/keys.h"
#include "core/placement/picture_map_placement.h"
#include "core/placement/world_map_placement.h"

namespace tolvane::shell {
namespace {

// One notch of a mouse wheel is 120 in Qt's eighths of a degree; it zooms
// by four key steps, a quarter of a doubling.
constexpr int kWheelNotch = 120;
constexpr int kStepsPerNotch = 4;
// A pinch zooms by one notch's steps for every tenth it grows or shrinks.
constexpr double kPinchNotch = 0.1;

// Where the shown map puts the earth: the World Map repeats it east and
// west; the Map view places it only when its picture is calibrated.
std::vector<MapPlacement> ShownMapPlacements(const AppState& app, const Rect& body) {
    if (app.currentView == kViewWorldMap) return WorldMapCopies(app, body);
    if (app.currentView != kViewMap) return {};
    const MapGeometry geometry = ComputeMapGeometry(app, body);
    if (!geometry.calibrated) return {};
    return {geometry.placement};
}

}  // namespace

void MapPointer::Press(QPoint at) {
    pressed_ = last_ = at;
    dragging_ = false;
    twoFingers_ = false;
}

void MapPointer::Move(QPoint at, const ViewLayout& layout) {
    if (twoFingers_) {
        twoFingers_ = false;
        last_ = at;
        return;
    }
    if (!dragging_ && (at - pressed_).manhattanLength() < QApplication::startDragDistance()) return;
    dragging_ = true;
    const QPoint moved = at - last_;
    last_ = at;
    DragShownMap(program_, moved.x(), moved.y(), layout.body);
}

bool MapPointer::Release() {
    const bool tap = !dragging_;
    dragging_ = false;
    return tap;
}

void MapPointer::Wheel(int angleDelta) {
    wheelRest_ += angleDelta;
    const int notches = wheelRest_ / kWheelNotch;
    if (notches == 0) return;
    wheelRest_ -= notches * kWheelNotch;
    ZoomShownMap(program_, notches * kStepsPerNotch);
}

void MapPointer::Pinch(double scaleChange) {
    pinchRest_ += scaleChange;
    const int notches = static_cast<int>(pinchRest_ / kPinchNotch);
    if (notches == 0) return;
    pinchRest_ -= notches * kPinchNotch;
    ZoomShownMap(program_, notches * kStepsPerNotch);
}

void MapPointer::TwoFingers(QPointF first, QPointF second, const ViewLayout& layout) {
    const QPointF middle = (first + second) / 2;
    const double spread = QLineF(first, second).length();
    if (!twoFingers_ || fingersSpread_ <= 0) {
        twoFingers_ = true;
        dragging_ = true;
        fingersMiddle_ = middle;
        fingersSpread_ = spread;
        return;
    }
    const QPoint moved = (middle - fingersMiddle_).toPoint();
    if (!moved.isNull()) {
        // Only the whole pixels moved are taken; the rest waits for the next move.
        fingersMiddle_ += moved;
        DragShownMap(program_, moved.x(), moved.y(), layout.body);
    }
    Pinch(spread / fingersSpread_ - 1);
    fingersSpread_ = spread;
}

QString TappedPointText(const AppState& app, const ViewLayout& layout, QPoint at) {
    for (const MapPlacement& placement : ShownMapPlacements(app, layout.body)) {
        const std::optional<TappedPoint> point =
            FindPointAt(app, placement, {at.x(), at.y()}, layout.barHeight);
        if (!point) continue;
        QString text = QString::fromStdString(point->name);
        if (!point->distance.empty())
            text += QLatin1Char('\n') + QString::fromStdString(point->distance);
        return text;
    }
    return {};
}

}  // namespace tolvane::shell
