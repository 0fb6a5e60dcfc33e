#include "core/app/tile_maps_form.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "core/app/language_messages.h"
#include "core/app/local_settings.h"
#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"

namespace tolvane {
namespace {

constexpr std::uint32_t kTextReading = 14529;
constexpr std::uint32_t kTextMbtiles = 14530;
constexpr std::uint32_t kTextFolder = 14531;
constexpr std::uint32_t kTextMissing = 14532;
constexpr std::uint32_t kTextNotSqlite = 14533;
constexpr std::uint32_t kTextNotMbtiles = 14534;
constexpr std::uint32_t kTextNoTiles = 14535;
constexpr std::uint32_t kTextProblem = 14536;

// The path as the list keeps it: "/maps/osm/" and "/maps/./osm" are the
// folder "/maps/osm".
std::string ListedPath(const std::string& path) {
    std::filesystem::path normal = std::filesystem::path(path).lexically_normal();
    if (!normal.has_filename() && normal.has_relative_path()) normal = normal.parent_path();
    return normal.string();
}

bool Holds(const TileMapsForm& form, int row) {
    return row >= 0 && row < static_cast<int>(form.rows.size());
}

std::vector<std::string> Paths(const TileMapsForm& form) {
    std::vector<std::string> paths;
    for (const TileMapRow& row : form.rows) paths.push_back(row.path);
    return paths;
}

std::string ProblemText(TileSourceProblem problem) {
    switch (problem) {
        case TileSourceProblem::kMissing:
            return LanguageText(kTextMissing);
        case TileSourceProblem::kNotSqlite:
            return LanguageText(kTextNotSqlite);
        case TileSourceProblem::kNotMbtiles:
            return LanguageText(kTextNotMbtiles);
        case TileSourceProblem::kNoTiles:
            return LanguageText(kTextNoTiles);
        case TileSourceProblem::kNone:
            break;
    }
    return {};
}

// The tiles' format by the name its makers give it; nothing for a map
// that does not say.
std::string_view FormatName(TileFormat format) {
    switch (format) {
        case TileFormat::kPng:
            return "PNG";
        case TileFormat::kJpeg:
            return "JPEG";
        case TileFormat::kWebp:
            return "WebP";
        case TileFormat::kUnknown:
            break;
    }
    return {};
}

std::string DescriptionText(const TileMapReading& reading) {
    const std::uint32_t kind = reading.kind == TileMapKind::kFolder ? kTextFolder : kTextMbtiles;
    std::string text = FillLanguageText(
        kind, {std::to_string(reading.info.minZoom), std::to_string(reading.info.maxZoom)});
    const std::string_view format = FormatName(reading.info.format);
    if (!format.empty()) text += ", " + std::string(format);
    return text;
}

}  // namespace

TileMapsForm OpenTileMapsForm(const AppState& app) {
    TileMapsForm form;
    form.opened = app.runtime.tileSources;
    for (const std::string& path : form.opened) form.rows.push_back({path, std::nullopt});
    return form;
}

bool AddTileMap(TileMapsForm& form, const std::string& path) {
    const std::string listed = ListedPath(path);
    const bool known = std::any_of(form.rows.begin(), form.rows.end(), [&](const TileMapRow& row) {
        return ListedPath(row.path) == listed;
    });
    if (listed.empty() || known) return false;
    form.rows.push_back({listed, std::nullopt});
    return true;
}

std::string TileMapListedText(const std::string& path) {
    return FillLanguageText(kTextTileMapListed, {path});
}

void RemoveTileMap(TileMapsForm& form, int row) {
    if (Holds(form, row)) form.rows.erase(form.rows.begin() + row);
}

bool CanMoveTileMap(const TileMapsForm& form, int row, int step) {
    return Holds(form, row) && Holds(form, row + step);
}

int MoveTileMap(TileMapsForm& form, int row, int step) {
    if (!CanMoveTileMap(form, row, step)) return row;
    std::swap(form.rows[static_cast<std::size_t>(row)],
              form.rows[static_cast<std::size_t>(row + step)]);
    return row + step;
}

void SetTileMapReading(TileMapsForm& form, const std::string& path, const TileMapReading& reading) {
    for (TileMapRow& row : form.rows) {
        if (row.path == path) row.reading = reading;
    }
}

std::string TileMapNameText(const TileMapRow& row) {
    if (row.reading && row.reading->problem == TileSourceProblem::kNone &&
        !row.reading->info.name.empty()) {
        return row.reading->info.name;
    }
    const std::filesystem::path path(row.path);
    return path.has_filename() ? path.filename().string() : row.path;
}

std::string TileMapDetailText(const TileMapRow& row) {
    if (!row.reading) return LanguageText(kTextReading);
    const TileMapReading& reading = *row.reading;
    if (reading.problem == TileSourceProblem::kNone) return DescriptionText(reading);
    if (reading.detail.empty()) return ProblemText(reading.problem);
    return FillLanguageText(kTextProblem, {ProblemText(reading.problem), reading.detail});
}

bool TileMapsChanged(const TileMapsForm& form) {
    return Paths(form) != form.opened;
}

void ApplyTileMapsForm(Program& program, const TileMapsForm& form) {
    if (!TileMapsChanged(form)) return;
    program.app.runtime.tileSources = Paths(form);
    if (!SaveLocalSettings(program)) {
        ShowLanguageMessage(program.host, kStringPointFileNotSaved, MessageIcon::kStop,
                            LocalSettingsPath(program.files.optionsPath));
    }
    program.host.ReloadTileSources();
}

}  // namespace tolvane
