// Tiles made in Web Mercator are laid into the World Map's own projection
// strip by strip: every row must land where the projection puts its
// latitude, the strips and tiles must close up without a gap, and tiles not
// yet read must be asked for, middle first, with a larger tile standing in.

#include "core/placement/tile_placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/placement/world_map_placement.h"

namespace tolvane {
namespace {

constexpr Rect kBody{0, 20, 480, 620};

struct TileScene {
    explicit TileScene(int lowest = 0, int highest = 18) { app.tileZooms = {lowest, highest}; }

    // The World Map centred at a place at the scale of tile zoom z.
    MapPlacement At(double latitude, double longitude, int z) {
        app.worldMapCentre = {latitude, longitude};
        app.mapKeys.worldMapZoom = WorldMapZoomForTileZoom(app, kBody, z);
        return WorldMapPlacement(app, kBody);
    }

    AppState app;
};

// Where row `row` of the grid at zoom z lies on the screen, exactly.
double ExactScreenRow(const AppState& app, const MapPlacement& placement, double row, int z) {
    return placement.y0 - app.projection.LatitudeToY(MercatorLatitude(row, z), placement.distance);
}

TEST(TilePlacementTest, EveryRowLiesWithinAPixelOfItsLatitudeAndTheTilesCloseUp) {
    TileScene scene;
    for (const double latitude : {0.0, 47.4, -62.0, 78.5}) {
        for (int z = 1; z <= 18; ++z) {
            const MapPlacement placement = scene.At(latitude, 8.5, z);
            ASSERT_EQ(NearestTileZoom(scene.app, placement), z);
            const std::vector<TilePiece> pieces = TilesInView(scene.app, placement, kBody, z);
            ASSERT_FALSE(pieces.empty()) << latitude << " " << z;
            double worst = 0;
            int top = kBody.bottom;
            int bottom = kBody.top;
            for (const TilePiece& piece : pieces) {
                for (std::size_t i = 0; i < piece.strips.size(); ++i) {
                    const TileStrip& strip = piece.strips[i];
                    if (i > 0) {
                        EXPECT_EQ(strip.screenTop, piece.strips[i - 1].screenBottom);
                    }
                    for (double f = 0; f <= 1.0; f += 0.125) {
                        const double row = piece.key.y + strip.top + f * (strip.bottom - strip.top);
                        const double drawn =
                            strip.screenTop + f * (strip.screenBottom - strip.screenTop);
                        worst = std::max(
                            worst, std::fabs(drawn - ExactScreenRow(scene.app, placement, row, z)));
                    }
                }
                top = std::min(top, piece.strips.front().screenTop);
                bottom = std::max(bottom, piece.strips.back().screenBottom);
            }
            // Half a pixel from the straight strip, half from rounding.
            EXPECT_LE(worst, kMostStripError + 0.5) << latitude << " " << z;
            // The whole body is covered where the map fills it.
            if (std::fabs(latitude) < 60 && z >= 3) {
                EXPECT_LE(top, kBody.top);
                EXPECT_GE(bottom, kBody.bottom);
            }
            // Columns follow each other without a gap.
            for (const TilePiece& piece : pieces) {
                const bool hasEastNeighbour =
                    std::any_of(pieces.begin(), pieces.end(), [&](const TilePiece& other) {
                        return other.key.y == piece.key.y && other.key.x == piece.key.x + 1;
                    });
                if (!hasEastNeighbour) {
                    EXPECT_GE(piece.right, kBody.right) << z;
                }
            }
        }
    }
}

TEST(TilePlacementTest, TilesAreAskedForMiddleFirstAndALargerTileStandsInForOneNoMapHas) {
    TileScene scene(2, 12);
    scene.At(47.4, 8.5, 12);
    TileImages images(64 << 20);
    const std::vector<TileKey> first = WantedTiles(scene.app, kBody, images);
    ASSERT_GT(first.size(), 4u);
    const TileKey middle{12, static_cast<int>(std::floor((8.5 + 180) / 360 * 4096)),
                         static_cast<int>(std::floor(MercatorRow(47.4, 12)))};
    EXPECT_EQ(first.front(), middle);
    for (const TileKey& key : first) EXPECT_EQ(key.z, 12);

    // No map has them: their parents are asked for next, once each.
    for (const TileKey& key : first) images.Put(key, {});
    const std::vector<TileKey> parents = WantedTiles(scene.app, kBody, images);
    ASSERT_FALSE(parents.empty());
    ASSERT_LT(parents.size(), first.size());
    for (const TileKey& key : parents) {
        EXPECT_EQ(key.z, 11);
        images.Put(key, Image{256, 256, std::vector<std::uint32_t>(256 * 256)});
    }
    EXPECT_TRUE(WantedTiles(scene.app, kBody, images).empty());

    // The parent stands in with the quarter its child covers.
    const TileKey child{12, 2 * parents.front().x + 1, 2 * parents.front().y};
    const TileStandIn standIn = FindTileStandIn(images, child, scene.app.tileZooms.lowest);
    EXPECT_EQ(standIn.key, parents.front());
    EXPECT_EQ(standIn.left, 0.5);
    EXPECT_EQ(standIn.top, 0.0);
    EXPECT_EQ(standIn.side, 0.5);
    EXPECT_EQ(FindTileStandIn(images, {12, 0, 0}, 2).picture, nullptr);

    // Opaque stand-ins everywhere hide the earth's pictures; one see-through
    // tile lets them show again.
    EXPECT_TRUE(TilesHideBody(ShownTiles(scene.app, kBody, images), kBody));
    Image edge{256, 256, std::vector<std::uint32_t>(256 * 256)};
    edge.alpha = true;
    images.Put(parents.back(), edge);
    EXPECT_FALSE(TilesHideBody(ShownTiles(scene.app, kBody, images), kBody));
}

TEST(TilePlacementTest, TheZoomGoesTwoTileZoomsBeyondTheDeepestMapAndTilesStartAtTheShallowest) {
    TileScene scene(10, 17);
    const int ceiling = WorldMapZoomCeiling(scene.app, kBody);
    EXPECT_GT(ceiling, 255);
    scene.app.mapKeys.worldMapZoom = ceiling;
    MapPlacement placement = WorldMapPlacement(scene.app, kBody);
    EXPECT_EQ(NearestTileZoom(scene.app, placement), 19);
    EXPECT_EQ(DrawnTileZoom(scene.app, placement), 17);
    scene.app.mapKeys.worldMapZoom = ceiling + 1;
    EXPECT_EQ(NearestTileZoom(scene.app, WorldMapPlacement(scene.app, kBody)), 20);

    placement = scene.At(0, 0, 9);
    EXPECT_EQ(DrawnTileZoom(scene.app, placement), -1);
    TileImages none(1 << 20);
    EXPECT_TRUE(WantedTiles(scene.app, kBody, none).empty());

    // Without tile maps the described ceiling stays.
    scene.app.tileZooms = {};
    EXPECT_EQ(WorldMapZoomCeiling(scene.app, kBody), 255);
    EXPECT_EQ(DrawnTileZoom(scene.app, scene.At(0, 0, 12)), -1);
}

TEST(TilePlacementTest, TheTilesInMemoryKeepWithinTheirBudgetDroppingTheLongestUnusedFirst) {
    const Image tile{256, 256, std::vector<std::uint32_t>(256 * 256)};
    const std::size_t tileBytes = 256 * 256 * 4;
    TileImages images(2 * tileBytes + 1024);
    images.Put({1, 0, 0}, tile);
    images.Put({1, 1, 0}, tile);
    images.Put({1, 0, 1}, {});  // no map has it: remembered, cheaply
    images.Touch({1, 0, 0});
    images.Put({1, 1, 1}, tile);
    EXPECT_NE(images.Find({1, 0, 0}), nullptr);
    EXPECT_FALSE(images.Knows({1, 1, 0}));
    EXPECT_NE(images.Find({1, 1, 1}), nullptr);
    EXPECT_LE(images.Bytes(), 2 * tileBytes + 1024);
    images.Clear();
    EXPECT_EQ(images.Count(), 0u);
    EXPECT_EQ(images.Bytes(), 0u);
}

}  // namespace
}  // namespace tolvane
