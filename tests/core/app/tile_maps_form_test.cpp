#include "core/app/tile_maps_form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/app/local_settings.h"
#include "tests/core/app/program_fixture.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

TileMapReading Problem(TileSourceProblem problem, std::string detail) {
    TileMapReading reading;
    reading.problem = problem;
    reading.detail = std::move(detail);
    return reading;
}

TileMapReading Opened(TileMapKind kind, std::string name, int minZoom, int maxZoom,
                      TileFormat format) {
    TileMapReading reading;
    reading.kind = kind;
    reading.info.name = std::move(name);
    reading.info.minZoom = minZoom;
    reading.info.maxZoom = maxZoom;
    reading.info.format = format;
    return reading;
}

std::vector<std::string> Shown(const TileMapsForm& form) {
    std::vector<std::string> lines;
    for (const TileMapRow& row : form.rows) {
        lines.push_back(TileMapNameText(row) + " | " + TileMapDetailText(row));
    }
    return lines;
}

bool Has(const std::vector<std::string>& events, const std::string& event) {
    return std::find(events.begin(), events.end(), event) != events.end();
}

// Each row says what its map is once it has been read, or why it does not
// open in plain words with the system's own; a reading that comes back for
// a map removed meanwhile goes nowhere.
TEST(TileMapsFormTest, EachRowSaysWhatItsMapIsOrWhyItDoesNotOpen) {
    AppState app;
    app.runtime.tileSources = {"/maps/sea.mbtiles",    "/maps/osm",      "/card/gone.mbtiles",
                               "/maps/notes.mbtiles",  "/maps/other.db", "/maps/empty",
                               "/maps/unnamed.mbtiles"};
    TileMapsForm form = OpenTileMapsForm(app);
    SetTileMapReading(form, "/maps/sea.mbtiles",
                      Opened(TileMapKind::kMbtiles, "Harbour chart", 8, 16, TileFormat::kPng));
    SetTileMapReading(form, "/maps/osm",
                      Opened(TileMapKind::kFolder, "osm", 10, 17, TileFormat::kJpeg));
    SetTileMapReading(form, "/card/gone.mbtiles",
                      Problem(TileSourceProblem::kMissing, "No such file or directory"));
    SetTileMapReading(form, "/maps/notes.mbtiles",
                      Problem(TileSourceProblem::kNotSqlite, "file is not a database"));
    SetTileMapReading(form, "/maps/other.db",
                      Problem(TileSourceProblem::kNotMbtiles, "no such table: tiles"));
    SetTileMapReading(form, "/maps/empty", Problem(TileSourceProblem::kNoTiles, ""));
    SetTileMapReading(form, "/maps/removed", Problem(TileSourceProblem::kMissing, ""));
    EXPECT_EQ(Shown(form),
              (std::vector<std::string>{
                  "Harbour chart | MBTiles, zoom 8 to 16, PNG",
                  "osm | Tile folder, zoom 10 to 17, JPEG",
                  "gone.mbtiles | Missing or unreadable: No such file or directory",
                  "notes.mbtiles | Not an SQLite file: file is not a database",
                  "other.db | No MBTiles tables (tiles, metadata): no such table: tiles",
                  "empty | No tiles found",
                  "unnamed.mbtiles | Reading...",
              }));
    SetTileMapReading(form, "/maps/unnamed.mbtiles",
                      Opened(TileMapKind::kMbtiles, "", 0, 3, TileFormat::kUnknown));
    EXPECT_EQ(Shown(form).back(), "unnamed.mbtiles | MBTiles, zoom 0 to 3");
    EXPECT_FALSE(TileMapsChanged(form));
}

// Maps are added at the end, once each, moved within the list and removed;
// the list counts as changed only while it differs from the one opened.
TEST(TileMapsFormTest, TheListTakesEachMapOnceAndKnowsWhetherItChanged) {
    AppState app;
    app.runtime.tileSources = {"/maps/a.mbtiles", "/maps/b"};
    TileMapsForm form = OpenTileMapsForm(app);
    EXPECT_FALSE(AddTileMap(form, "/maps/a.mbtiles"));
    EXPECT_FALSE(AddTileMap(form, "/maps/./b/"));
    EXPECT_FALSE(AddTileMap(form, ""));
    EXPECT_EQ(TileMapListedText("/maps/b"), "/maps/b is in the list already.");
    EXPECT_FALSE(TileMapsChanged(form));
    EXPECT_TRUE(AddTileMap(form, "/card/c/"));
    ASSERT_EQ(form.rows.size(), 3u);
    EXPECT_EQ(form.rows[2].path, "/card/c");
    EXPECT_EQ(TileMapDetailText(form.rows[2]), "Reading...");
    EXPECT_TRUE(TileMapsChanged(form));

    EXPECT_FALSE(CanMoveTileMap(form, 0, -1));
    EXPECT_FALSE(CanMoveTileMap(form, 2, +1));
    EXPECT_EQ(MoveTileMap(form, 2, +1), 2);
    EXPECT_EQ(MoveTileMap(form, 2, -1), 1);
    EXPECT_EQ(MoveTileMap(form, 1, -1), 0);
    EXPECT_EQ(form.rows[0].path, "/card/c");
    RemoveTileMap(form, 0);
    RemoveTileMap(form, 5);
    EXPECT_FALSE(TileMapsChanged(form));
    MoveTileMap(form, 0, +1);
    EXPECT_TRUE(TileMapsChanged(form));
}

// OK with an unchanged list writes nothing; a changed one is the program's,
// lands in tolvane.conf in its order and has the maps read again, and a
// file that cannot be written says so while the list still holds.
TEST(TileMapsFormTest, OkSavesAChangedListAndHasTheMapsReadAgain) {
    testing::ProgramFixture fixture;
    Program& program = fixture.program;
    program.app.runtime.tileSources = {"/maps/a.mbtiles"};
    TileMapsForm form = OpenTileMapsForm(program.app);
    ApplyTileMapsForm(program, form);
    EXPECT_FALSE(std::filesystem::exists(fixture.folder.File("tolvane.conf")));
    EXPECT_FALSE(Has(fixture.host.events, "reload tile maps"));

    ASSERT_TRUE(AddTileMap(form, "/maps/b"));
    MoveTileMap(form, 1, -1);
    ApplyTileMapsForm(program, form);
    EXPECT_EQ(program.app.runtime.tileSources,
              (std::vector<std::string>{"/maps/b", "/maps/a.mbtiles"}));
    AppState read;
    ReadLocalSettings(testing::ReadFileBytes(fixture.folder.File("tolvane.conf")), read);
    EXPECT_EQ(read.runtime.tileSources, program.app.runtime.tileSources);
    EXPECT_TRUE(Has(fixture.host.events, "reload tile maps"));
    EXPECT_TRUE(fixture.host.messages.empty());

    testing::ProgramFixture unwritable;
    unwritable.program.files.optionsPath = unwritable.folder.File("missing/Options.dat");
    TileMapsForm added = OpenTileMapsForm(unwritable.program.app);
    ASSERT_TRUE(AddTileMap(added, "/maps/c"));
    ApplyTileMapsForm(unwritable.program, added);
    EXPECT_EQ(unwritable.program.app.runtime.tileSources, std::vector<std::string>{"/maps/c"});
    ASSERT_EQ(unwritable.host.messages.size(), 1u);
    EXPECT_NE(unwritable.host.messages[0].text.find("missing/tolvane.conf could not be saved"),
              std::string::npos)
        << unwritable.host.messages[0].text;
    EXPECT_TRUE(Has(unwritable.host.events, "reload tile maps"));
}

}  // namespace
}  // namespace tolvane
