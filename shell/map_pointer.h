#pragma once

#include <QPoint>
#include <QString>

#include "core/app/program.h"
#include "core/views/view_frame.h"

namespace tolvane::shell {

// The mouse, the stylus and the touchpad over the map views: a drag pans
// the map, the wheel and a pinch zoom it by the arrow keys' steps, and a
// tap that does not move asks for the point under it.
class MapPointer {
  public:
    explicit MapPointer(Program& program) : program_(program) {}

    void Press(QPoint at);
    // Pans once the pointer has moved further than a shaking hand would.
    void Move(QPoint at, const ViewLayout& layout);
    // True when the press was a tap rather than a drag.
    bool Release();
    void Wheel(int angleDelta);
    // A pinch's change of scale since its last event, 0.1 for ten percent.
    void Pinch(double scaleChange);

  private:
    Program& program_;
    QPoint last_;
    QPoint pressed_;
    bool dragging_ = false;
    int wheelRest_ = 0;
    double pinchRest_ = 0;
};

// The name and distance of the point shown under at in the current map
// view, as a tip's text; empty when no point is there.
QString TappedPointText(const AppState& app, const ViewLayout& layout, QPoint at);

}  // namespace tolvane::shell
