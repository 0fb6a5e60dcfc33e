// libFuzzer target of the tile map reader: an MBTiles file's tables and
// metadata, and the decoding of a tile. The first byte chooses: even, the
// rest is an MBTiles file, opened and asked for tiles at the corners of the
// grid of its three lowest zoom levels, each decoded; odd, the rest is one
// tile. A map that
// opens has a zoom range the program reads, and every tile and picture
// keeps within the size limits.

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "formats/tile_source.h"

namespace {

using tolvane::TileSource;

// The reader takes a path that SQLite can open again by its name, so the
// input goes to a real file; one file for the whole run, removed at its end.
class InputFile {
  public:
    ~InputFile() { std::remove(path_.c_str()); }
    const std::string& Path() const { return path_; }

  private:
    std::string path_ = "/tmp/tile_source_fuzz-" + std::to_string(getpid()) + ".mbtiles";
};

const std::string& InputPath() {
    static const InputFile file;
    return file.Path();
}

void CheckDecoding(std::string_view bytes) {
    const std::optional<tolvane::Image> image = tolvane::DecodePngTile(bytes);
    if (!image) return;
    if (image->width < 1 || image->height < 1 || image->width > tolvane::kMostTileSide ||
        image->height > tolvane::kMostTileSide ||
        image->pixels.size() != static_cast<std::size_t>(image->width) * image->height) {
        std::abort();
    }
}

// A grid of 2^z tiles a side is too large to walk at a high zoom, so the
// target asks for its first and last rows and columns and the ones just
// outside it: at most eight indices a side.
std::vector<int> CornerIndices(int z) {
    const int side = 1 << z;
    std::vector<int> indices;
    for (int i = -1; i < std::min(3, side - 3); ++i) indices.push_back(i);
    for (int i = std::max(-1, side - 3); i <= side; ++i) indices.push_back(i);
    return indices;
}

void CheckSource(TileSource& source) {
    const tolvane::TileSourceInfo& info = source.Info();
    if (info.minZoom < 0 || info.minZoom > info.maxZoom || info.maxZoom > tolvane::kMostTileZoom) {
        std::abort();
    }
    for (int z = info.minZoom; z <= info.maxZoom && z < info.minZoom + 3; ++z) {
        for (const int x : CornerIndices(z)) {
            for (const int y : CornerIndices(z)) {
                const std::optional<std::string> bytes = source.TileBytes(z, x, y);
                if (bytes && (!source.Covers(z, x, y) || bytes->size() > tolvane::kMostTileBytes)) {
                    std::abort();
                }
                if (bytes) CheckDecoding(*bytes);
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    if ((data[0] & 1) != 0) {
        CheckDecoding(rest);
        return 0;
    }
    {
        std::ofstream file(InputPath(), std::ios::binary | std::ios::trunc);
        file.write(rest.data(), static_cast<std::streamsize>(rest.size()));
        if (!file) std::abort();
    }
    tolvane::TileSourceOpening opening = tolvane::OpenTileSource(InputPath());
    if ((opening.source == nullptr) != (opening.problem != tolvane::TileSourceProblem::kNone)) {
        std::abort();
    }
    if (opening.source) CheckSource(*opening.source);
    return 0;
}
