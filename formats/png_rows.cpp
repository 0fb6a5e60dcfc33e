#include "formats/png_rows.h"

#include <png.h>

#include <cstdio>
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

// One read of a PNG file: the file and libpng's two records.
class PngReading {
  public:
    explicit PngReading(const std::string& path)
        : file_(std::fopen(path.c_str(), "rb")),
          png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore)),
          info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}
    ~PngReading() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReading(const PngReading&) = delete;
    PngReading& operator=(const PngReading&) = delete;

    bool Ready() const { return file_ != nullptr && png_ != nullptr && info_ != nullptr; }
    png_structp Png() const { return png_; }
    png_infop Info() const { return info_; }
    std::FILE* File() const { return file_.get(); }

  private:
    std::unique_ptr<std::FILE, FileCloser> file_;
    png_structp png_;
    png_infop info_;
};

// Reads the header and asks for 8-bit RGBA rows. The functions that call
// into libpng hold no objects of their own, since a fault jumps over them.
bool ReadHeader(const PngReading& reading, PngShape& shape) {
    png_structp png = reading.Png();
    png_infop info = reading.Info();
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, reading.File());
    png_read_info(png, info);
    shape.width = static_cast<int>(png_get_image_width(png, info));
    shape.height = static_cast<int>(png_get_image_height(png, info));
    shape.rowByRow = png_get_interlace_type(png, info) == PNG_INTERLACE_NONE;
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    return png_get_rowbytes(png, info) == static_cast<png_size_t>(shape.width) * 4;
}

bool ReadRows(const PngReading& reading, const PngShape& shape, std::uint8_t* rgba,
              std::uint8_t* rgb, const std::function<void(const std::uint8_t*)>& row) {
    png_structp png = reading.Png();
    if (setjmp(png_jmpbuf(png))) return false;
    for (int y = 0; y < shape.height; ++y) {
        png_read_row(png, rgba, nullptr);
        for (int x = 0; x < shape.width; ++x) {
            const std::uint8_t* in = rgba + 4 * x;
            std::uint8_t* out = rgb + 3 * x;
            for (int c = 0; c < 3; ++c)
                out[c] = static_cast<std::uint8_t>((in[c] * in[3] + 127) / 255);
        }
        row(rgb);
    }
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

}  // namespace tolvane
