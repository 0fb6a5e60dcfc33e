#pragma once

#include <vector>

#include "core/maps/tile_images.h"
#include "core/placement/map_placement.h"
#include "core/state/app_state.h"

namespace tolvane {

// Tiles are drawn in the World Map's own projection, not in the Web
// Mercator they are made in. Both lay longitude out evenly, so a tile keeps
// its columns; its rows are laid out again. Each tile is cut into strips of
// rows, each drawn straight between the screen rows its edges belong to, so
// that a strip's middle lies within kMostStripError pixels of where the
// projection puts it.
inline constexpr double kMostStripError = 0.5;

// The fractional Web Mercator row of a latitude at zoom z, and back.
double MercatorRow(double latitude, int z);
double MercatorLatitude(double row, int z);

// A band of a tile's rows and where it lies on the screen: rows as fractions
// of the tile's height from its top, screen rows as the placed map's.
struct TileStrip {
    double top = 0;
    double bottom = 1;
    int screenTop = 0;
    int screenBottom = 0;
};

// A tile as it lies on the screen: its columns, and its strips from the
// north. Neighbouring tiles and strips share their edges, so no gap shows.
struct TilePiece {
    TileKey key;
    int left = 0;
    int right = 0;
    std::vector<TileStrip> strips;
};

// The tile zoom whose pixels come closest to the screen's on a placed
// World Map, below the sources' lowest zoom or not; none (-1) without a
// world on the screen.
int NearestTileZoom(const AppState& app, const MapPlacement& placement);

// The zoom the World Map draws tiles at: the nearest, or the sources'
// highest scaled up beyond it; none (-1) without sources or while the map
// is zoomed out beyond their lowest zoom, where it shows its own pictures.
int DrawnTileZoom(const AppState& app, const MapPlacement& placement);

// The tiles of zoom z that show in body on a placed copy of the world,
// north of 80 degrees south and south of 80 degrees north, where the World
// Map ends.
std::vector<TilePiece> TilesInView(const AppState& app, const MapPlacement& placement,
                                   const Rect& body, int z);

// The tile to draw for key: itself, or the nearest larger tile above it
// whose picture is here, down to the sources' lowest zoom; none when no such
// picture is here.
struct TileStandIn {
    TileKey key;
    const Image* picture = nullptr;
    // The part of the stand-in that key covers, as fractions of its side.
    double left = 0;
    double top = 0;
    double side = 1;
};
TileStandIn FindTileStandIn(const TileImages& images, const TileKey& key, int lowestZoom);

// A tile the World Map shows, with what stands in for it.
struct ShownTile {
    TilePiece piece;
    TileStandIn standIn;
};

// The tiles of every copy of the world that show in body at the drawn
// zoom; none while the map shows no tiles.
std::vector<ShownTile> ShownTiles(const AppState& app, const Rect& body, const TileImages& images);

// Whether the shown tiles hide all of body: each has a picture without
// see-through parts, and together they reach the body's four edges. The
// pictures of the earth under them need not be drawn then.
bool TilesHideBody(const std::vector<ShownTile>& shown, const Rect& body);

// The tiles the World Map needs and does not have, nearest the middle of
// body first: each shown tile not yet known, or, where no source has one,
// the first larger tile above it not yet known, so that a stand-in comes.
// The shown tiles found in images are marked as used.
std::vector<TileKey> WantedTiles(const AppState& app, const Rect& body, TileImages& images);

// The World Map's highest zoom level in body: the described 255, or with
// sources as far as two tile zooms beyond their highest.
int WorldMapZoomCeiling(const AppState& app, const Rect& body);

// The World Map's zoom level in body at which tile zoom z is the nearest.
int WorldMapZoomForTileZoom(const AppState& app, const Rect& body, int z);

}  // namespace tolvane
