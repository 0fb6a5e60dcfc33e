#include "formats/tile_source.h"

#include <sys/stat.h>

#include <gtest/gtest.h>
#include <png.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

#include "tests/core/test_support.h"
#include "tests/formats/mbtiles_writer.h"
#include "tests/tools/shell_command.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

constexpr int kSide = 8;
constexpr int kDeepestZoom = 2;
constexpr std::uint32_t kWhite = 0xFFFFFF;

// Each test tile is one colour that spells its z, x and y, with its top
// left pixel white, so that a tile from the wrong row, or a picture upside
// down, shows.
std::uint32_t TileColour(int z, int x, int y) {
    return static_cast<std::uint32_t>(40 * z + 1) << 16 |
           static_cast<std::uint32_t>(40 * x + 1) << 8 | static_cast<std::uint32_t>(40 * y + 1);
}

std::string Png(int width, int height, std::uint32_t colour) {
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(width) * height * 3);
    for (std::size_t i = 0; i < rgb.size(); i += 3) {
        rgb[i] = static_cast<std::uint8_t>(colour >> 16);
        rgb[i + 1] = static_cast<std::uint8_t>(colour >> 8);
        rgb[i + 2] = static_cast<std::uint8_t>(colour);
    }
    std::fill_n(rgb.begin(), 3, 0xFF);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, rgb.data(), 0, nullptr);
    std::string bytes(size, '\0');
    EXPECT_NE(png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr), 0);
    bytes.resize(size);
    return bytes;
}

std::string TilePng(int z, int x, int y) {
    return Png(kSide, kSide, TileColour(z, x, y));
}

// The same tiles of zooms 0 to 2 as an MBTiles file (rows from the south)
// and as a folder (rows from the north), with a few things beside the zoom
// folders that a folder of a real tool may hold.
struct TestMaps {
    testing::TemporaryFolder folder;
    std::string mbtiles = folder.File("walk.mbtiles");
    std::string tileFolder = folder.File("Walk Tiles");

    TestMaps() {
        testing::MbtilesWriter database(mbtiles);
        database.MakeMbtilesTables();
        database.Run(
            "BEGIN; INSERT INTO metadata VALUES ('name', 'Demo walk'),"
            " ('format', 'png'), ('bounds', '-180,-85.0511,180,85.0511'),"
            " ('minzoom', '0'), ('maxzoom', '2'), ('attribution', '(c) the walkers')");
        for (int z = 0; z <= kDeepestZoom; ++z) {
            for (int x = 0; x < (1 << z); ++x) {
                for (int y = 0; y < (1 << z); ++y) {
                    database.AddTile(z, x, (1 << z) - 1 - y, TilePng(z, x, y));
                    const fs::path column =
                        fs::path(tileFolder) / std::to_string(z) / std::to_string(x);
                    fs::create_directories(column);
                    testing::WriteFileBytes((column / (std::to_string(y) + ".png")).string(),
                                            TilePng(z, x, y));
                }
            }
        }
        database.Run("COMMIT");
        fs::create_directories(fs::path(tileFolder) / "99" / "0");
        fs::create_directories(fs::path(tileFolder) / "notes");
        testing::WriteFileBytes(tileFolder + "/7", "a file named like a zoom");
    }
};

std::unique_ptr<TileSource> Open(const std::string& path) {
    TileSourceOpening opening = OpenTileSource(path);
    EXPECT_EQ(opening.problem, TileSourceProblem::kNone) << path << ": " << opening.detail;
    return std::move(opening.source);
}

TEST(TileSourceTest, AnMbtilesFileAndATileFolderGiveEveryTileFromItsOwnPlace) {
    const TestMaps maps;
    const std::unique_ptr<TileSource> mbtiles = Open(maps.mbtiles);
    const std::unique_ptr<TileSource> folder = Open(maps.tileFolder);
    ASSERT_TRUE(mbtiles && folder);
    for (int z = 0; z <= kDeepestZoom; ++z) {
        for (int x = 0; x < (1 << z); ++x) {
            for (int y = 0; y < (1 << z); ++y) {
                SCOPED_TRACE(::testing::Message() << z << "/" << x << "/" << y);
                const std::optional<std::string> bytes = mbtiles->TileBytes(z, x, y);
                ASSERT_TRUE(bytes.has_value());
                EXPECT_EQ(folder->TileBytes(z, x, y), bytes);
                const std::optional<Image> tile = DecodePngTile(*bytes);
                ASSERT_TRUE(tile.has_value());
                ASSERT_EQ(tile->width, kSide);
                ASSERT_EQ(tile->height, kSide);
                EXPECT_EQ(tile->pixels[0], kWhite);
                EXPECT_EQ(tile->pixels[kSide * kSide - 1], TileColour(z, x, y));
            }
        }
    }
    // Outside the grid and past the deepest zoom there is nothing, and
    // nothing is asked of the disk.
    for (TileSource* source : {mbtiles.get(), folder.get()}) {
        EXPECT_FALSE(source->Covers(3, 0, 0));
        EXPECT_FALSE(source->Covers(1, 2, 0));
        EXPECT_FALSE(source->Covers(1, 0, -1));
        EXPECT_FALSE(source->TileBytes(1, 0, 2).has_value());
    }

    const TileSourceInfo& file = mbtiles->Info();
    EXPECT_EQ(file.name, "Demo walk");
    EXPECT_EQ(file.attribution, "(c) the walkers");
    EXPECT_EQ(file.format, TileFormat::kPng);
    EXPECT_EQ(file.bounds.south, -85.0511);
    EXPECT_EQ(std::pair(file.minZoom, file.maxZoom), std::pair(0, kDeepestZoom));
    const TileSourceInfo& tiles = folder->Info();
    EXPECT_EQ(tiles.name, "Walk Tiles");
    EXPECT_EQ(tiles.attribution, "Walk Tiles");
    EXPECT_EQ(tiles.format, TileFormat::kPng);
    EXPECT_EQ(std::pair(tiles.minZoom, tiles.maxZoom), std::pair(0, kDeepestZoom));
}

// A map of one region without zoom levels in its metadata: the zoom range
// is read from the tiles, only tiles that meet the region are covered, a
// missing tile is none, and a tile over the size limit is skipped unread.
TEST(TileSourceTest, AnMbtilesFileCoversItsBoundsAndSkipsATileTooBigToHold) {
    testing::TemporaryFolder folder;
    const std::string path = folder.File("harbour.mbtiles");
    {
        testing::MbtilesWriter database(path);
        database.MakeMbtilesTables();
        // The north-east of the world between the equator and 60 degrees.
        database.Run("INSERT INTO metadata VALUES ('bounds', '0.5, 0.5, 90, 60')");
        database.AddTile(1, 1, 1, TilePng(1, 1, 0));
        database.AddTile(2, 2, 2, std::string(kMostTileBytes + 1, 'x'));
    }
    const std::unique_ptr<TileSource> source = Open(path);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->Info().name, "harbour");
    EXPECT_EQ(source->Info().attribution, "harbour");
    EXPECT_EQ(std::pair(source->Info().minZoom, source->Info().maxZoom), std::pair(1, 2));
    EXPECT_TRUE(source->Covers(1, 1, 0));
    EXPECT_FALSE(source->Covers(1, 0, 0));  // west of the region
    EXPECT_FALSE(source->Covers(1, 1, 1));  // south of the equator
    EXPECT_TRUE(source->Covers(2, 2, 1));
    EXPECT_FALSE(source->Covers(2, 3, 1));  // east of 90 degrees
    EXPECT_FALSE(source->Covers(2, 2, 0));  // north of 66.5 degrees
    EXPECT_EQ(source->TileBytes(1, 1, 0), TilePng(1, 1, 0));
    EXPECT_FALSE(source->TileBytes(2, 2, 1).has_value());
    EXPECT_FALSE(source->Covers(0, 0, 0));
}

TEST(TileSourceTest, BadMapsSayWhatIsWrongAndADamagedOneGivesNoTile) {
    testing::TemporaryFolder folder;
    const auto problem = [](const std::string& path) {
        const TileSourceOpening opening = OpenTileSource(path);
        EXPECT_EQ(opening.source, nullptr);
        return std::pair(opening.problem, opening.detail);
    };
    EXPECT_EQ(problem(folder.File("gone.mbtiles")).first, TileSourceProblem::kMissing);
    // A pipe is refused before it is read, which would never end.
    ASSERT_EQ(mkfifo(folder.File("pipe.mbtiles").c_str(), 0600), 0);
    EXPECT_EQ(problem(folder.File("pipe.mbtiles")).first, TileSourceProblem::kMissing);
    testing::WriteFileBytes(folder.File("notes.mbtiles"), std::string(2048, 'n'));
    EXPECT_EQ(problem(folder.File("notes.mbtiles")),
              std::pair(TileSourceProblem::kNotSqlite, std::string("file is not a database")));
    testing::MbtilesWriter(folder.File("other.sqlite")).Run("CREATE TABLE points (name TEXT)");
    EXPECT_EQ(problem(folder.File("other.sqlite")),
              std::pair(TileSourceProblem::kNotMbtiles, std::string("no such table: tiles")));
    fs::create_directories(folder.File("empty/tiles"));
    EXPECT_EQ(problem(folder.File("empty")).first, TileSourceProblem::kNoTiles);
    {
        testing::MbtilesWriter database(folder.File("no tiles.mbtiles"));
        database.MakeMbtilesTables();
    }
    EXPECT_EQ(problem(folder.File("no tiles.mbtiles")),
              std::pair(TileSourceProblem::kNoTiles,
                        std::string("no tile at zoom levels 0 to 24 in its tiles table")));
    // Opening never wrote beside the user's file.
    EXPECT_FALSE(fs::exists(folder.File("notes.mbtiles-journal")));
    EXPECT_FALSE(fs::exists(folder.File("other.sqlite-shm")));

    // A view that never ends is stopped rather than holding the thread.
    {
        testing::MbtilesWriter database(folder.File("endless.mbtiles"));
        database.Run(
            "CREATE TABLE metadata (name TEXT, value TEXT);"
            "INSERT INTO metadata VALUES ('minzoom', '0'), ('maxzoom', '0');"
            "CREATE VIEW tiles AS WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 "
            "FROM n) SELECT 0 AS zoom_level, 0 AS tile_column, 0 AS tile_row, "
            "x'00' AS tile_data FROM n WHERE i < 0");
    }
    const std::unique_ptr<TileSource> endless = Open(folder.File("endless.mbtiles"));
    ASSERT_TRUE(endless);
    EXPECT_FALSE(endless->TileBytes(0, 0, 0).has_value());

    // A file cut short under an open map: the tiles that were lost are
    // none.
    const TestMaps maps;
    const std::unique_ptr<TileSource> cut = Open(maps.mbtiles);
    ASSERT_TRUE(cut);
    fs::resize_file(maps.mbtiles, 4096);
    EXPECT_FALSE(cut->TileBytes(2, 3, 3).has_value());
    EXPECT_FALSE(cut->TileBytes(2, 0, 0).has_value());
}

// Where a place lies on the Web Mercator grid at zoom z: its tile and the
// pixel within the tile, tiles of 256 pixels.
struct GridPlace {
    int x = 0;
    int y = 0;
    int pixel = 0;  // the index of the pixel in the tile's picture
};

GridPlace PlaceOnGrid(double latitude, double longitude, int z) {
    const double side = std::ldexp(256.0, z);
    const double x = (longitude + 180.0) / 360.0 * side;
    const double y =
        (1.0 - std::asinh(std::tan(latitude * std::numbers::pi / 180.0)) / std::numbers::pi) / 2.0 *
        side;
    return {static_cast<int>(x / 256), static_cast<int>(y / 256),
            static_cast<int>(std::fmod(y, 256.0)) * 256 + static_cast<int>(std::fmod(x, 256.0))};
}

bool Near(std::uint32_t colour, std::uint32_t expected) {
    for (int shift : {0, 8, 16}) {
        const int difference =
            static_cast<int>(colour >> shift & 0xFF) - static_cast<int>(expected >> shift & 0xFF);
        if (std::abs(difference) > 12) return false;
    }
    return true;
}

// GDAL's MBTiles of the demo map, georeferenced by the corners that
// demo-map.rpt gives: the park and the river lie in the tiles where their
// coordinates fall, so the reader counts the rows as GDAL writes them.
TEST(TileSourceTest, AnMbtilesMadeByGdalFromTheDemoMapShowsItsPlacesWhereTheyLie) {
    testing::TemporaryFolder folder;
    const std::string geo = folder.File("demo-map.tif");
    const std::string mbtiles = folder.File("demo-map.mbtiles");
    const std::string gdal = testing::Quoted(TOLVANE_GDAL_TRANSLATE_PROGRAM);
    for (const std::string& command :
         {gdal + " -q -of GTiff -a_srs EPSG:4326 -a_ullr 153.048 -27.208 153.056 -27.214 " +
              testing::Quoted(testing::TestDataFile("maps/demo-map.png")) + " " +
              testing::Quoted(geo),
          gdal + " -q -of MBTILES " + testing::Quoted(geo) + " " + testing::Quoted(mbtiles)}) {
        const testing::ShellResult made = testing::RunShell(command + " 2>&1");
        ASSERT_EQ(made.exitCode, 0) << command << "\n" << made.output;
    }
    const std::unique_ptr<TileSource> source = Open(mbtiles);
    ASSERT_TRUE(source);
    const TileSourceInfo& info = source->Info();
    EXPECT_EQ(info.format, TileFormat::kPng);
    ASSERT_EQ(info.minZoom, info.maxZoom);
    EXPECT_NEAR(info.bounds.west, 153.048, 1e-4);
    EXPECT_NEAR(info.bounds.east, 153.056, 1e-4);
    EXPECT_NEAR(info.bounds.north, -27.208, 1e-4);
    EXPECT_NEAR(info.bounds.south, -27.214, 1e-4);

    // Pixels (360, 110) and (120, 400) of the 480-pixel picture: the park and
    // the river, away from the streets.
    constexpr std::uint32_t kPark = 0xBEE1AA;
    constexpr std::uint32_t kWater = 0x96BEE6;
    for (const auto& [latitude, longitude, colour] :
         {std::tuple(-27.209375, 153.054, kPark), std::tuple(-27.213, 153.050, kWater)}) {
        SCOPED_TRACE(::testing::Message() << latitude << ", " << longitude);
        const GridPlace place = PlaceOnGrid(latitude, longitude, info.maxZoom);
        ASSERT_TRUE(source->Covers(info.maxZoom, place.x, place.y));
        const std::optional<std::string> bytes = source->TileBytes(info.maxZoom, place.x, place.y);
        ASSERT_TRUE(bytes.has_value());
        const std::optional<Image> tile = DecodePngTile(*bytes);
        ASSERT_TRUE(tile.has_value());
        ASSERT_EQ(tile->width * tile->height, 256 * 256);
        EXPECT_TRUE(Near(tile->pixels[static_cast<std::size_t>(place.pixel)], colour))
            << std::hex << tile->pixels[static_cast<std::size_t>(place.pixel)];
    }
}

TEST(TileSourceTest, OnlyAWholePngTileOfAtMostTheTileSizeDecodes) {
    EXPECT_TRUE(DecodePngTile(Png(kMostTileSide, kMostTileSide, 0)).has_value());
    EXPECT_FALSE(DecodePngTile(Png(kMostTileSide + 1, 1, 0)).has_value());
    const std::string png = TilePng(0, 0, 0);
    EXPECT_FALSE(DecodePngTile(png.substr(0, png.size() - 20)).has_value());
    const std::string jpeg = "\xFF\xD8\xFF\xE0 not decoded here";
    EXPECT_EQ(TileBytesFormat(jpeg), TileFormat::kJpeg);
    EXPECT_FALSE(DecodePngTile(jpeg).has_value());
    EXPECT_EQ(TileBytesFormat(std::string("RIFF\x10\0\0\0WEBPVP8 ", 16)), TileFormat::kWebp);

    // A tile beyond its map's edge is see-through there, as GDAL writes
    // it, and stays so: what lies under it must show.
    const std::uint8_t rgba[] = {0, 0, 0, 0, 0x20, 0x40, 0x60, 0xFF};
    png_image edge{};
    edge.version = PNG_IMAGE_VERSION;
    edge.width = 2;
    edge.height = 1;
    edge.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 1024;
    std::string bytes(size, '\0');
    ASSERT_NE(png_image_write_to_memory(&edge, bytes.data(), &size, 0, rgba, 0, nullptr), 0);
    bytes.resize(size);
    const std::optional<Image> clear = DecodePngTile(bytes);
    ASSERT_TRUE(clear.has_value());
    EXPECT_TRUE(clear->alpha);
    EXPECT_EQ(clear->pixels, (std::vector<std::uint32_t>{0, 0xFF204060}));
    EXPECT_FALSE(DecodePngTile(png)->alpha);
}

}  // namespace
}  // namespace tolvane
