#pragma once

#include "core/geo/geo_point.h"

class QWidget;

namespace tolvane {
struct Program;
}

namespace tolvane::shell {

// The "GeoPoint Editor": edits point in place and returns true on OK. With
// positionKnown false (a new point without a fix) the coordinate fields
// start greyed until the user chooses to type the position.
bool EditPoint(Program& program, QWidget* parent, GeoPoint& point, bool positionKnown);

}  // namespace tolvane::shell
