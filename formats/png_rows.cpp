#include "formats/png_rows.h"

#include <png.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace tolvane {
namespace {

// libpng reports a fault by jumping back to the setjmp of the call that met
// it; nothing is printed, the caller says what went wrong.
void Fail(png_structp png, png_const_charp /*message*/) {
    png_longjmp(png, 1);
}
void Ignore(png_structp /*png*/, png_const_charp /*message*/) {}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Hands libpng the next bytes of a PNG held in memory; running past its end
// is a fault like a cut file.
void ReadFromMemory(png_structp png, png_bytep out, png_size_t count) {
    auto* rest = static_cast<std::string_view*>(png_get_io_ptr(png));
    if (count > rest->size()) png_error(png, "cut short");
    std::memcpy(out, rest->data(), count);
    rest->remove_prefix(count);
}

// One read of a PNG, from a file or from memory: the source and libpng's two
// records.
class PngReading {
  public:
    explicit PngReading(const std::string& path) : file_(std::fopen(path.c_str(), "rb")) {
        if (Ready()) png_init_io(png_, file_.get());
    }
    explicit PngReading(std::string_view bytes) : rest_(bytes) {
        if (Ready()) png_set_read_fn(png_, &rest_, ReadFromMemory);
    }
    ~PngReading() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReading(const PngReading&) = delete;
    PngReading& operator=(const PngReading&) = delete;

    bool Ready() const {
        return (file_ != nullptr || rest_.data() != nullptr) && png_ != nullptr && info_ != nullptr;
    }
    png_structp Png() const { return png_; }
    png_infop Info() const { return info_; }

  private:
    std::unique_ptr<std::FILE, FileCloser> file_;
    std::string_view rest_;
    png_structp png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore);
    png_infop info_ = png_ != nullptr ? png_create_info_struct(png_) : nullptr;
};

// Reads the header and asks for 8-bit RGBA rows. The functions that call
// into libpng hold no objects of their own, since a fault jumps over them.
bool ReadHeader(const PngReading& reading, PngShape& shape) {
    png_structp png = reading.Png();
    png_infop info = reading.Info();
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_info(png, info);
    shape.width = static_cast<int>(png_get_image_width(png, info));
    shape.height = static_cast<int>(png_get_image_height(png, info));
    shape.rowByRow = png_get_interlace_type(png, info) == PNG_INTERLACE_NONE;
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    return png_get_rowbytes(png, info) == static_cast<png_size_t>(shape.width) * 4;
}

// One channel of a pixel laid over black by its transparency.
std::uint8_t OverBlack(const std::uint8_t* rgba, int channel) {
    return static_cast<std::uint8_t>((rgba[channel] * rgba[3] + 127) / 255);
}

bool ReadRows(const PngReading& reading, const PngShape& shape, std::uint8_t* rgba,
              std::uint8_t* rgb, const std::function<void(const std::uint8_t*)>& row) {
    png_structp png = reading.Png();
    if (setjmp(png_jmpbuf(png))) return false;
    for (int y = 0; y < shape.height; ++y) {
        png_read_row(png, rgba, nullptr);
        for (int x = 0; x < shape.width; ++x) {
            for (int c = 0; c < 3; ++c) rgb[3 * x + c] = OverBlack(rgba + 4 * x, c);
        }
        row(rgb);
    }
    return true;
}

// Reads every row, each pass of an interlaced picture over the last, into
// rows, which points at height rows of width RGBA pixels.
bool ReadWhole(const PngReading& reading, png_bytepp rows) {
    png_structp png = reading.Png();
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_image(png, rows);
    return true;
}

}  // namespace

bool ReadPngShape(const std::string& path, PngShape& shape) {
    const PngReading reading(path);
    return reading.Ready() && ReadHeader(reading, shape);
}

bool ReadPngRows(const std::string& path, const std::function<void(const std::uint8_t*)>& row) {
    const PngReading reading(path);
    PngShape shape;
    if (!reading.Ready() || !ReadHeader(reading, shape) || !shape.rowByRow) return false;
    std::vector<std::uint8_t> rgba(static_cast<std::size_t>(shape.width) * 4);
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(shape.width) * 3);
    return ReadRows(reading, shape, rgba.data(), rgb.data(), row);
}

bool DecodePng(std::string_view bytes, int mostSide, Image& image) {
    const PngReading reading(bytes);
    PngShape shape;
    if (!reading.Ready() || !ReadHeader(reading, shape) || shape.width > mostSide ||
        shape.height > mostSide) {
        return false;
    }
    const auto width = static_cast<std::size_t>(shape.width);
    std::vector<std::uint8_t> rgba(width * 4 * static_cast<std::size_t>(shape.height));
    std::vector<png_bytep> rows(static_cast<std::size_t>(shape.height));
    for (std::size_t y = 0; y < rows.size(); ++y) rows[y] = rgba.data() + y * width * 4;
    if (!ReadWhole(reading, rows.data())) return false;
    image.width = shape.width;
    image.height = shape.height;
    image.pixels.resize(width * rows.size());
    image.alpha = false;
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const std::uint8_t* in = rgba.data() + 4 * i;
        image.pixels[i] = static_cast<std::uint32_t>(in[3]) << 24 |
                          static_cast<std::uint32_t>(in[0]) << 16 |
                          static_cast<std::uint32_t>(in[1]) << 8 | in[2];
        image.alpha = image.alpha || in[3] != 0xFF;
    }
    // An opaque picture drops its alpha byte, as the pictures without one have none.
    if (!image.alpha) {
        for (std::uint32_t& pixel : image.pixels) pixel &= 0xFFFFFFu;
    }
    return true;
}

}  // namespace tolvane
