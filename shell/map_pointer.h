#pragma once

#include <QPoint>
#include <QPointF>
#include <QString>

#include "core/app/program.h"
#include "core/views/view_frame.h"

namespace tolvane::shell {

// The mouse, the stylus, the touchpad and the fingers over the map views: a
// drag pans the map, the wheel and a pinch zoom it by the arrow keys' steps,
// two fingers zoom as they spread or close and pan as they move together,
// and a tap that does not move asks for the point under it.
class MapPointer {
  public:
    explicit MapPointer(Program& program) : program_(program) {}

    void Press(QPoint at);
    // Pans once the pointer has moved further than a shaking hand would. The
    // first move of the finger left behind by a two-finger gesture only
    // takes up its place.
    void Move(QPoint at, const ViewLayout& layout);
    // True when the press was a tap rather than a drag, a two-finger
    // gesture or a long press.
    bool Release();
    // The press was held long enough to open the command menu: it is no tap.
    void Held() { dragging_ = true; }
    // Two fingers on the map, at first and second: the change of their
    // spread zooms as a pinch does, the move of their middle pans as a drag
    // does. The first call of a gesture takes up their places.
    void TwoFingers(QPointF first, QPointF second, const ViewLayout& layout);
    void Wheel(int angleDelta);
    // A pinch's change of scale since its last event, 0.1 for ten percent.
    void Pinch(double scaleChange);

  private:
    Program& program_;
    QPoint last_;
    QPoint pressed_;
    bool dragging_ = false;
    bool twoFingers_ = false;
    QPointF fingersMiddle_;
    double fingersSpread_ = 0;
    int wheelRest_ = 0;
    double pinchRest_ = 0;
};

// The name and distance of the point shown under at in the current map
// view, as a tip's text; empty when no point is there.
QString TappedPointText(const AppState& app, const ViewLayout& layout, QPoint at);

}  // namespace tolvane::shell
