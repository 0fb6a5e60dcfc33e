#include "formats/tile_source.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <system_error>

#include "formats/png_rows.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

// The metadata table's values are cut to a kilobyte: the program shows a
// name and an attribution line, not a document.
constexpr char kMetadataQuery[] = "SELECT name, substr(value, 1, 1024) FROM metadata";
// SQLite calls the progress handler every this many steps of its machine...
constexpr int kStepsPerCall = 1000;
// ...and a statement that takes more calls than this is stopped, so that a
// hostile view (a recursive one, say) cannot hold the worker thread for
// long; a tile's lookup takes a few hundred steps, and finding the zoom
// range of a large map without an index a few million.
constexpr int kMostCallsPerStatement = 50000;
constexpr std::array<std::string_view, 4> kTileExtensions = {".png", ".jpg", ".jpeg", ".webp"};

// The tiles in a row or column of the grid at zoom z.
long long GridSide(int z) {
    return 1LL << z;
}

double TileLongitude(long long x, int z) {
    return static_cast<double>(x) / static_cast<double>(GridSide(z)) * 360.0 - 180.0;
}

// The latitude of the northern edge of row y (Web Mercator).
double TileLatitude(long long y, int z) {
    const double n =
        std::numbers::pi * (1.0 - 2.0 * static_cast<double>(y) / static_cast<double>(GridSide(z)));
    return std::atan(std::sinh(n)) * 180.0 / std::numbers::pi;
}

TileFormat FormatNamed(std::string_view name) {
    if (name == "png" || name == ".png") return TileFormat::kPng;
    if (name == "jpg" || name == "jpeg" || name == ".jpg" || name == ".jpeg")
        return TileFormat::kJpeg;
    if (name == "webp" || name == ".webp") return TileFormat::kWebp;
    return TileFormat::kUnknown;
}

std::optional<int> WholeNumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// "west,south,east,north" in degrees; none unless all four read and lie on
// the globe with the south under the north.
std::optional<TileBounds> ReadBounds(std::string_view text) {
    std::array<double, 4> value{};
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::size_t comma = std::min(text.find(','), text.size());
        std::string_view piece = text.substr(0, comma);
        while (!piece.empty() && piece.front() == ' ') piece.remove_prefix(1);
        while (!piece.empty() && piece.back() == ' ') piece.remove_suffix(1);
        const auto [end, error] =
            std::from_chars(piece.data(), piece.data() + piece.size(), value[i]);
        if (error != std::errc() || end != piece.data() + piece.size()) return std::nullopt;
        // The first three numbers end at a comma, the last at the end.
        if ((i + 1 < value.size()) == (comma == text.size())) return std::nullopt;
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    const TileBounds bounds{value[0], value[1], value[2], value[3]};
    const bool onGlobe = std::abs(bounds.west) <= 180.0 && std::abs(bounds.east) <= 180.0 &&
                         std::abs(bounds.south) <= 90.0 && std::abs(bounds.north) <= 90.0;
    if (!onGlobe || bounds.south >= bounds.north) return std::nullopt;
    return bounds;
}

// Opening an SQLite file by a URI: every byte of the path but the plain
// ones is written as %XX, so that a '?' or '#' in a folder's name stays part
// of the path.
std::string FileUri(const std::string& path) {
    constexpr std::string_view kPlain = "-._~/";
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || kPlain.find(c) != std::string_view::npos) {
            uri += c;
        } else {
            uri += {'%', kHex[byte >> 4], kHex[byte & 0xF]};
        }
    }
    // immutable: the map is taken as it lies on the disk, without locks and
    // without the -shm and -journal files SQLite would otherwise make beside
    // it, so a map on a read-only card opens too. A map is written once by
    // the tool that made it; tiles that a tool left in a -wal file it did not
    // fold back are not seen.
    return uri + "?mode=ro&immutable=1";
}

struct StatementFinalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

struct DatabaseCloser {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;

// The progress handler's count of calls for the statement that runs.
struct StepBudget {
    int calls = 0;
};

int CountStep(void* budget) {
    return ++static_cast<StepBudget*>(budget)->calls > kMostCallsPerStatement ? 1 : 0;
}

// An MBTiles file: SQLite with the tables tiles (rows from the south) and
// metadata.
class MbtilesSource final : public TileSource {
  public:
    MbtilesSource(TileSourceInfo info, Database database, Statement tileQuery,
                  std::unique_ptr<StepBudget> budget)
        : TileSource(std::move(info)),
          budget_(std::move(budget)),
          database_(std::move(database)),
          tileQuery_(std::move(tileQuery)) {}

    std::optional<std::string> TileBytes(int z, int x, int y) override {
        if (!Covers(z, x, y)) return std::nullopt;
        sqlite3_stmt* query = tileQuery_.get();
        sqlite3_reset(query);
        sqlite3_bind_int(query, 1, z);
        sqlite3_bind_int64(query, 2, x);
        sqlite3_bind_int64(query, 3, GridSide(z) - 1 - y);
        budget_->calls = 0;
        if (sqlite3_step(query) != SQLITE_ROW) return std::nullopt;
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(query, 0));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(query, 0));
        if (bytes == nullptr || size > kMostTileBytes) return std::nullopt;
        std::string tile(bytes, size);
        sqlite3_reset(query);
        return tile;
    }

  private:
    std::unique_ptr<StepBudget> budget_;
    Database database_;
    Statement tileQuery_;
};

// The tile's bytes only when the tile is small enough: length() reads the
// size from the record without loading the tile, so a huge tile is passed
// over unread.
constexpr char kTileQuery[] =
    "SELECT CASE WHEN length(tile_data) <= ?4 THEN tile_data END FROM tiles "
    "WHERE zoom_level = ?1 AND tile_column = ?2 AND tile_row = ?3";

class MbtilesOpening {
  public:
    explicit MbtilesOpening(const std::string& path) : path_(path) {}

    TileSourceOpening Open() {
        sqlite3* database = nullptr;
        const int opened =
            sqlite3_open_v2(FileUri(path_).c_str(), &database,
                            SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
        database_.reset(database);
        if (opened != SQLITE_OK) return Problem(TileSourceProblem::kMissing);
        // The file's schema is the user's, not the program's: its views and
        // triggers may call no function with side effects.
        sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_progress_handler(database, kStepsPerCall, CountStep, budget_.get());
        Statement tileQuery = Prepare(kTileQuery);
        if (tileQuery == nullptr) return Problem(ProblemOfFailure());
        sqlite3_bind_int64(tileQuery.get(), 4, static_cast<sqlite3_int64>(kMostTileBytes));
        TileSourceInfo info;
        if (!ReadMetadata(info)) return Problem(ProblemOfFailure());
        if (!FindZoomRange(info)) return NoTiles();
        TileSourceOpening opening;
        opening.source = std::make_unique<MbtilesSource>(std::move(info), std::move(database_),
                                                         std::move(tileQuery), std::move(budget_));
        return opening;
    }

  private:
    Statement Prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        budget_->calls = 0;
        sqlite3_prepare_v2(database_.get(), sql, -1, &statement, nullptr);
        return Statement(statement);
    }

    // A database that does not read at all is no SQLite file; one that reads
    // but lacks a table or a column is no MBTiles.
    TileSourceProblem ProblemOfFailure() const {
        const int code = sqlite3_errcode(database_.get()) & 0xFF;
        if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT) return TileSourceProblem::kNotSqlite;
        if (code == SQLITE_CANTOPEN || code == SQLITE_IOERR || code == SQLITE_PERM) {
            return TileSourceProblem::kMissing;
        }
        return TileSourceProblem::kNotMbtiles;
    }

    TileSourceOpening Problem(TileSourceProblem problem) const {
        TileSourceOpening opening;
        opening.problem = problem;
        opening.detail =
            database_ != nullptr ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(SQLITE_NOMEM);
        return opening;
    }

    // A tiles table that holds no tile the program reads is no failure of
    // SQLite, whose words would then be "not an error" or "another row
    // available"; the program says it in its own.
    TileSourceOpening NoTiles() const {
        TileSourceOpening opening = Problem(TileSourceProblem::kNoTiles);
        const int code = sqlite3_errcode(database_.get()) & 0xFF;
        if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) {
            opening.detail = "no tile at zoom levels 0 to " + std::to_string(kMostTileZoom) +
                             " in its tiles table";
        }
        return opening;
    }

    bool ReadMetadata(TileSourceInfo& info) {
        Statement query = Prepare(kMetadataQuery);
        if (query == nullptr) return false;
        info.name = fs::path(path_).stem().string();
        info.minZoom = -1;
        info.maxZoom = -1;
        int stepped = SQLITE_ROW;
        while ((stepped = sqlite3_step(query.get())) == SQLITE_ROW) {
            const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(query.get(), 0));
            const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(query.get(), 1));
            if (name != nullptr && value != nullptr) ApplyMetadata(name, value, info);
        }
        if (info.attribution.empty()) info.attribution = info.name;
        return stepped == SQLITE_DONE;
    }

    static void ApplyMetadata(std::string_view name, std::string_view value, TileSourceInfo& info) {
        if (name == "name" && !value.empty()) info.name = value;
        if (name == "attribution") info.attribution = value;
        if (name == "format") info.format = FormatNamed(value);
        if (name == "bounds") info.bounds = ReadBounds(value).value_or(TileBounds{});
        if (name == "minzoom") info.minZoom = WholeNumber(value).value_or(-1);
        if (name == "maxzoom") info.maxZoom = WholeNumber(value).value_or(-1);
    }

    // A zoom range the metadata leaves out or gets wrong is read from the
    // tiles; false when the range holds no level the program reads.
    bool FindZoomRange(TileSourceInfo& info) {
        const auto readable = [](int z) { return z >= 0 && z <= kMostTileZoom; };
        if (!readable(info.minZoom) || !readable(info.maxZoom) || info.minZoom > info.maxZoom) {
            Statement query = Prepare("SELECT min(zoom_level), max(zoom_level) FROM tiles");
            if (query == nullptr || sqlite3_step(query.get()) != SQLITE_ROW) return false;
            info.minZoom = std::max(sqlite3_column_int(query.get(), 0), 0);
            info.maxZoom = std::min(sqlite3_column_int(query.get(), 1), kMostTileZoom);
            if (sqlite3_column_type(query.get(), 0) == SQLITE_NULL) return false;
        }
        return info.minZoom <= info.maxZoom;
    }

    std::string path_;
    std::unique_ptr<StepBudget> budget_ = std::make_unique<StepBudget>();
    Database database_;
};

// A folder of z/x/y tiles with rows from the north.
class TileFolder final : public TileSource {
  public:
    TileFolder(TileSourceInfo info, fs::path root)
        : TileSource(std::move(info)), root_(std::move(root)) {}

    std::optional<std::string> TileBytes(int z, int x, int y) override {
        if (!Covers(z, x, y)) return std::nullopt;
        const fs::path stem = root_ / std::to_string(z) / std::to_string(x) / std::to_string(y);
        for (const std::string_view extension : kTileExtensions) {
            fs::path file = stem;
            file += extension;
            std::error_code error;
            const auto size = fs::file_size(file, error);
            if (error) continue;
            if (size > kMostTileBytes) return std::nullopt;
            return ReadFile(file, static_cast<std::size_t>(size));
        }
        return std::nullopt;
    }

  private:
    static std::optional<std::string> ReadFile(const fs::path& file, std::size_t size) {
        std::ifstream in(file, std::ios::binary);
        std::string bytes(size, '\0');
        in.read(bytes.data(), static_cast<std::streamsize>(size));
        if (!in) return std::nullopt;
        return bytes;
    }

    fs::path root_;
};

// The zoom of a top-level folder named by a number alone, as the tiles'
// paths spell it ("7", not "07").
std::optional<int> ZoomFolder(const fs::directory_entry& entry) {
    const std::string name = entry.path().filename().string();
    const std::optional<int> zoom = WholeNumber(name);
    std::error_code error;
    if (!zoom || *zoom < 0 || *zoom > kMostTileZoom || name != std::to_string(*zoom) ||
        !entry.is_directory(error)) {
        return std::nullopt;
    }
    return zoom;
}

// The format of the folder's tiles: that of the first tile of the first
// column of the lowest zoom, a look at two folders' first entries.
TileFormat FolderFormat(const fs::path& zoomFolder) {
    std::error_code error;
    for (fs::directory_iterator column(zoomFolder, error), end; !error && column != end;
         column.increment(error)) {
        if (!WholeNumber(column->path().filename().string())) continue;
        fs::directory_iterator tile(column->path(), error);
        if (!error && tile != fs::directory_iterator())
            return FormatNamed(tile->path().extension().string());
        return TileFormat::kUnknown;
    }
    return TileFormat::kUnknown;
}

TileSourceOpening OpenTileFolder(const fs::path& root) {
    TileSourceOpening opening;
    TileSourceInfo info;
    info.name =
        root.filename().empty() ? root.parent_path().filename().string() : root.filename().string();
    info.attribution = info.name;
    info.minZoom = kMostTileZoom + 1;
    info.maxZoom = -1;
    std::error_code error;
    for (fs::directory_iterator entry(root, error), end; !error && entry != end;
         entry.increment(error)) {
        if (const std::optional<int> zoom = ZoomFolder(*entry)) {
            info.minZoom = std::min(info.minZoom, *zoom);
            info.maxZoom = std::max(info.maxZoom, *zoom);
        }
    }
    if (error) {
        opening.problem = TileSourceProblem::kMissing;
        opening.detail = error.message();
        return opening;
    }
    if (info.maxZoom < 0) {
        opening.problem = TileSourceProblem::kNoTiles;
        opening.detail =
            "no folder named by a zoom level (0 to " + std::to_string(kMostTileZoom) + ")";
        return opening;
    }
    info.format = FolderFormat(root / std::to_string(info.minZoom));
    opening.source = std::make_unique<TileFolder>(std::move(info), root);
    return opening;
}

}  // namespace

bool TileSource::Covers(int z, int x, int y) const {
    if (z < info_.minZoom || z > info_.maxZoom || x < 0 || y < 0 || x >= GridSide(z) ||
        y >= GridSide(z)) {
        return false;
    }
    const TileBounds& bounds = info_.bounds;
    const bool acrossTheDateLine = bounds.west > bounds.east;
    const bool longitudeMeets = acrossTheDateLine || (TileLongitude(x, z) < bounds.east &&
                                                      TileLongitude(x + 1, z) > bounds.west);
    return longitudeMeets && TileLatitude(y + 1, z) < bounds.north &&
           TileLatitude(y, z) > bounds.south;
}

TileSourceOpening OpenTileSource(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error) {
        TileSourceOpening opening;
        opening.problem = TileSourceProblem::kMissing;
        opening.detail = error.message();
        return opening;
    }
    if (fs::is_directory(status)) return OpenTileFolder(path);
    // A pipe or a device would be read without end: only a plain file can
    // be a map.
    if (!fs::is_regular_file(status)) {
        TileSourceOpening opening;
        opening.problem = TileSourceProblem::kMissing;
        opening.detail = "neither a file nor a folder";
        return opening;
    }
    return MbtilesOpening(path).Open();
}

TileFormat TileBytesFormat(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return TileFormat::kPng;
    if (bytes.starts_with("\xFF\xD8\xFF")) return TileFormat::kJpeg;
    if (bytes.size() >= 12 && bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") {
        return TileFormat::kWebp;
    }
    return TileFormat::kUnknown;
}

std::optional<Image> DecodePngTile(std::string_view bytes) {
    Image image;
    if (TileBytesFormat(bytes) != TileFormat::kPng || !DecodePng(bytes, kMostTileSide, image)) {
        return std::nullopt;
    }
    return image;
}

}  // namespace tolvane
