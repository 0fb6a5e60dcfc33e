#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/app/program.h"
#include "core/data/tile_sources.h"

namespace tolvane {

// The texts of the Tile Maps dialog.
inline constexpr std::uint32_t kTextTileMapsTitle = 14520;
inline constexpr std::uint32_t kTextTileMapsOrder = 14521;
inline constexpr std::uint32_t kTextTileMapAddFile = 14522;
inline constexpr std::uint32_t kTextTileMapAddFolder = 14523;
inline constexpr std::uint32_t kTextTileMapRemove = 14524;
inline constexpr std::uint32_t kTextTileMapMoveUp = 14525;
inline constexpr std::uint32_t kTextTileMapMoveDown = 14526;
inline constexpr std::uint32_t kTextTileMapFiles = 14527;
inline constexpr std::uint32_t kTextTileMapListed = 14528;

// The two kinds of tile map.
enum class TileMapKind { kMbtiles, kFolder };

// What reading a tile map found: its description, or why it does not open.
struct TileMapReading {
    TileMapKind kind = TileMapKind::kMbtiles;
    TileSourceProblem problem = TileSourceProblem::kNone;
    std::string detail;   // the system's or SQLite's words for the problem
    TileSourceInfo info;  // when it opened
};

// One row of the list: a map and, once its reading has come back from the
// worker thread that opens it, what was found.
struct TileMapRow {
    std::string path;
    std::optional<TileMapReading> reading;
};

// The list as the user leaves it, in the order the maps are asked for a
// tile; the settings change only on OK.
struct TileMapsForm {
    std::vector<TileMapRow> rows;
    std::vector<std::string> opened;  // the list when the dialog opened
};

// The form of the listed maps, every one still to be read.
TileMapsForm OpenTileMapsForm(const AppState& app);

// Appends a file or folder the user chose, unread; false when it is in the
// list already (a trailing "/" or "." step does not make another map).
bool AddTileMap(TileMapsForm& form, const std::string& path);

// What the dialog says when AddTileMap refused path.
std::string TileMapListedText(const std::string& path);

// Takes row out of the list; a row outside the list changes nothing.
void RemoveTileMap(TileMapsForm& form, int row);

// Whether row can move by step (-1 up, +1 down) and stay in the list.
bool CanMoveTileMap(const TileMapsForm& form, int row, int step);

// Moves row by step; the row where it now stands comes back.
int MoveTileMap(TileMapsForm& form, int row, int step);

// The reading of path has come back; a map removed meanwhile is not
// listed and takes nothing.
void SetTileMapReading(TileMapsForm& form, const std::string& path, const TileMapReading& reading);

// The row's first line: the map's own name once it opened, else its file or
// folder name.
std::string TileMapNameText(const TileMapRow& row);

// The row's second line: "Reading...", what the map is ("MBTiles, zoom 0 to
// 14, PNG", "Tile folder, zoom 10 to 16, JPEG"), or why it does not open
// ("Not an SQLite file: file is not a database").
std::string TileMapDetailText(const TileMapRow& row);

// Whether the list differs from the one the dialog opened with.
bool TileMapsChanged(const TileMapsForm& form);

// OK: a changed list becomes the program's, is saved to tolvane.conf (a
// failed save says so, and the list holds for this run) and the window
// reads its maps again. A map that does not open stays listed, as a card
// that is not in the slot now.
void ApplyTileMapsForm(Program& program, const TileMapsForm& form);

}  // namespace tolvane
