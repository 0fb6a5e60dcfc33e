#include "core/placement/tile_placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/placement/world_map_placement.h"

namespace tolvane {
namespace {

// The tiles are drawn from those of this many pixels a side: the zoom whose
// tiles come closest to the screen's pixels counts on it.
constexpr double kTileSide = 256.0;
// Deeper than this, a tile's number would not fit an int.
constexpr int kDeepestZoom = 30;
// A tile is cut into no more strips than this.
constexpr int kMostStrips = 64;
// How far a stand-in may lie above the tile it stands in for.
constexpr int kMostStandInLevels = 16;

double GridSide(int z) {
    return std::exp2(z);
}

double ScreenRow(const AppState& app, const MapPlacement& placement, double latitude) {
    return placement.y0 - app.projection.LatitudeToY(latitude, placement.distance);
}

double ScreenRowOfTileRow(const AppState& app, const MapPlacement& placement, double row, int z) {
    return ScreenRow(app, placement, MercatorLatitude(row, z));
}

// Whether n strips of equal rows between rows top and bottom each lie
// within the error at their middle.
bool StripsFit(const AppState& app, const MapPlacement& placement, int z, double top, double bottom,
               int n) {
    const double height = (bottom - top) / n;
    for (int i = 0; i < n; ++i) {
        const double a = top + i * height;
        const double b = a + height;
        const double straight =
            (ScreenRowOfTileRow(app, placement, a, z) + ScreenRowOfTileRow(app, placement, b, z)) /
            2;
        const double exact = ScreenRowOfTileRow(app, placement, (a + b) / 2, z);
        if (std::fabs(exact - straight) > kMostStripError) return false;
    }
    return true;
}

// The strips of tile row y at zoom z that show between the screen rows
// top and bottom, the tile cut at the World Map's 80 degree edges.
std::vector<TileStrip> StripsOfRow(const AppState& app, const MapPlacement& placement, int z, int y,
                                   int top, int bottom) {
    const double first = std::max<double>(y, MercatorRow(kCutLatitude, z));
    const double last = std::min<double>(y + 1, MercatorRow(-kCutLatitude, z));
    std::vector<TileStrip> strips;
    if (first >= last) return strips;
    int n = 1;
    while (n < kMostStrips && !StripsFit(app, placement, z, first, last, n)) n *= 2;
    const double height = (last - first) / n;
    for (int i = 0; i < n; ++i) {
        const double a = first + i * height;
        const double b = i + 1 == n ? last : a + height;
        TileStrip strip{a - y, b - y, ClampCoordinate(ScreenRowOfTileRow(app, placement, a, z)),
                        ClampCoordinate(ScreenRowOfTileRow(app, placement, b, z))};
        if (strip.screenBottom > top && strip.screenTop < bottom) strips.push_back(strip);
    }
    return strips;
}

TileKey Parent(const TileKey& key) {
    return {key.z - 1, key.x / 2, key.y / 2};
}

}  // namespace

double MercatorRow(double latitude, int z) {
    const double phi = latitude * std::numbers::pi / 180.0;
    return (1.0 - std::asinh(std::tan(phi)) / std::numbers::pi) / 2.0 * GridSide(z);
}

double MercatorLatitude(double row, int z) {
    const double n = std::numbers::pi * (1.0 - 2.0 * row / GridSide(z));
    return std::atan(std::sinh(n)) * 180.0 / std::numbers::pi;
}

int NearestTileZoom(const AppState& app, const MapPlacement& placement) {
    const double width = WorldWidth(placement, app);
    if (!(width > 0)) return -1;
    const long zoom = std::lround(std::log2(width / kTileSide));
    return static_cast<int>(std::clamp<long>(zoom, 0, kDeepestZoom));
}

int DrawnTileZoom(const AppState& app, const MapPlacement& placement) {
    const TileZooms& zooms = app.tileZooms;
    const int nearest = NearestTileZoom(app, placement);
    if (zooms.highest < 0 || nearest < zooms.lowest) return -1;
    return std::min(nearest, zooms.highest);
}

std::vector<TilePiece> TilesInView(const AppState& app, const MapPlacement& placement,
                                   const Rect& body, int z) {
    const double perDegree = WorldWidth(placement, app) / 360.0;
    const double west = std::max(-180.0, (body.left - placement.x0) / perDegree);
    const double east = std::min(180.0, (body.right - placement.x0) / perDegree);
    const MapProjection& projection = app.projection;
    const double north = std::min(
        kCutLatitude, YToLatitude(projection, placement.y0 - body.top, placement.distance));
    const double south = std::max(
        -kCutLatitude, YToLatitude(projection, placement.y0 - body.bottom, placement.distance));
    std::vector<TilePiece> pieces;
    if (west >= east || south >= north) return pieces;
    const double side = GridSide(z);
    const int last = static_cast<int>(side) - 1;
    const int firstColumn =
        std::clamp(static_cast<int>(std::floor((west + 180) / 360 * side)), 0, last);
    const int lastColumn =
        std::clamp(static_cast<int>(std::ceil((east + 180) / 360 * side)) - 1, 0, last);
    const int firstRow = std::clamp(static_cast<int>(std::floor(MercatorRow(north, z))), 0, last);
    const int lastRow = std::clamp(static_cast<int>(std::floor(MercatorRow(south, z))), 0, last);
    const auto columnEdge = [&](int x) {
        return ClampCoordinate(placement.x0 + (x / side * 360.0 - 180.0) * perDegree);
    };
    for (int y = firstRow; y <= lastRow; ++y) {
        const std::vector<TileStrip> strips =
            StripsOfRow(app, placement, z, y, body.top, body.bottom);
        if (strips.empty()) continue;
        for (int x = firstColumn; x <= lastColumn; ++x) {
            pieces.push_back({{z, x, y}, columnEdge(x), columnEdge(x + 1), strips});
        }
    }
    return pieces;
}

TileStandIn FindTileStandIn(const TileImages& images, const TileKey& key, int lowestZoom) {
    TileKey above = key;
    for (int level = 0; level <= kMostStandInLevels && above.z >= std::max(0, lowestZoom);
         ++level, above = Parent(above)) {
        if (const Image* picture = images.Find(above)) {
            const double side = std::exp2(-level);
            return {above, picture, (key.x - std::ldexp(above.x, level)) * side,
                    (key.y - std::ldexp(above.y, level)) * side, side};
        }
    }
    return {key, nullptr};
}

std::vector<ShownTile> ShownTiles(const AppState& app, const Rect& body, const TileImages& images) {
    std::vector<ShownTile> shown;
    const std::vector<MapPlacement> copies = WorldMapCopies(app, body);
    if (copies.empty()) return shown;
    const int z = DrawnTileZoom(app, copies.front());
    if (z < 0) return shown;
    for (const MapPlacement& copy : copies) {
        for (TilePiece& piece : TilesInView(app, copy, body, z)) {
            const TileStandIn standIn = FindTileStandIn(images, piece.key, app.tileZooms.lowest);
            shown.push_back({std::move(piece), standIn});
        }
    }
    return shown;
}

bool TilesHideBody(const std::vector<ShownTile>& shown, const Rect& body) {
    if (shown.empty()) return false;
    Rect reach{body.right, body.bottom, body.left, body.top};
    for (const ShownTile& tile : shown) {
        if (tile.standIn.picture == nullptr || tile.standIn.picture->alpha) return false;
        const TilePiece& piece = tile.piece;
        reach.left = std::min(reach.left, piece.left);
        reach.right = std::max(reach.right, piece.right);
        reach.top = std::min(reach.top, piece.strips.front().screenTop);
        reach.bottom = std::max(reach.bottom, piece.strips.back().screenBottom);
    }
    // The pieces of each copy form a whole grid and the copies abut, so
    // reaching the edges is covering.
    return reach.left <= body.left && reach.right >= body.right && reach.top <= body.top &&
           reach.bottom >= body.bottom;
}

std::vector<TileKey> WantedTiles(const AppState& app, const Rect& body, TileImages& images) {
    std::vector<TileKey> wanted;
    const std::vector<MapPlacement> copies = WorldMapCopies(app, body);
    if (copies.empty()) return wanted;
    const int z = DrawnTileZoom(app, copies.front());
    if (z < 0) return wanted;
    std::vector<TilePiece> shown;
    for (const MapPlacement& copy : copies) {
        std::vector<TilePiece> pieces = TilesInView(app, copy, body, z);
        shown.insert(shown.end(), pieces.begin(), pieces.end());
    }
    // The tiles in the middle of the map come first: that is where the eye is.
    const double middleX = (body.left + body.right) / 2.0;
    const double middleY = (body.top + body.bottom) / 2.0;
    const auto farness = [&](const TilePiece& piece) {
        const double x = (piece.left + piece.right) / 2.0 - middleX;
        const double y =
            (piece.strips.front().screenTop + piece.strips.back().screenBottom) / 2.0 - middleY;
        return x * x + y * y;
    };
    std::stable_sort(shown.begin(), shown.end(), [&](const TilePiece& a, const TilePiece& b) {
        return farness(a) < farness(b);
    });
    for (const TilePiece& piece : shown) {
        TileKey key = piece.key;
        // Past the tiles no source has, up to the first not yet asked for.
        while (images.Knows(key) && images.Find(key) == nullptr && key.z > app.tileZooms.lowest) {
            key = Parent(key);
        }
        images.Touch(key);
        if (!images.Knows(key) && std::find(wanted.begin(), wanted.end(), key) == wanted.end()) {
            wanted.push_back(key);
        }
    }
    return wanted;
}

// How many of the zoom's levels lie between level 0 and the level at
// which the world is kTileSide * 2^z pixels wide in body.
double LevelsToTileZoom(const AppState& app, const Rect& body, double z) {
    const double levelZeroWidth =
        WorldWidth(WorldMapPlacement(app, body), app) *
        std::exp2(-static_cast<double>(app.mapKeys.worldMapZoom) / kWorldMapZoomStepsPerDoubling);
    return (z - std::log2(levelZeroWidth / kTileSide)) * kWorldMapZoomStepsPerDoubling;
}

int WorldMapZoomCeiling(const AppState& app, const Rect& body) {
    if (app.tileZooms.highest < 0) return kMapZoomCeiling;
    // The last level before the nearest tile zoom would pass two beyond the
    // sources' highest.
    const double beyond = LevelsToTileZoom(app, body, app.tileZooms.highest + 2.5);
    if (!std::isfinite(beyond)) return kMapZoomCeiling;
    return std::max(kMapZoomCeiling, static_cast<int>(std::ceil(beyond)) - 1);
}

int WorldMapZoomForTileZoom(const AppState& app, const Rect& body, int z) {
    const double levels = LevelsToTileZoom(app, body, z);
    return std::isfinite(levels) ? static_cast<int>(std::lround(levels)) : 0;
}

}  // namespace tolvane
