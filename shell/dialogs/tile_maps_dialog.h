#pragma once

class QWidget;

namespace tolvane {
struct Program;
}

namespace tolvane::shell {

// "Tile Maps...": the offline tile maps drawn under the World Map, in the
// order they are asked for a tile, with what each one is or why it does not
// open. Each map is read on a thread of its own, so that a folder of a
// million tiles or a large MBTiles without an index keeps no one waiting;
// its row says "Reading..." meanwhile. OK keeps a changed list in
// tolvane.conf and has the window read the maps again.
void RunTileMapsDialog(Program& program, QWidget* parent);

}  // namespace tolvane::shell
