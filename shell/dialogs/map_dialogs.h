#pragma once

#include <QWidget>

#include "core/app/program.h"

namespace tolvane::shell {

// "Load Map": a file chooser for the picture formats, then the picture is
// opened as recent entry 1.
void ChooseMapFile(Program& program, QWidget* parent);

// A recent entry of the menu: it moves to the front and its picture loads
// on a thread of its own behind a progress indication; the Map view shows
// it when it has loaded.
void LoadRecentMap(Program& program, QWidget* parent, int index);

// The latitude and longitude of the reference point being placed, with the
// calibration's residuals and a way to drop the point.
void AskRefPointPosition(Program& program, QWidget* parent);

}  // namespace tolvane::shell
