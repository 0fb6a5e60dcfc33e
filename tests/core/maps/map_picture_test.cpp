#include "core/maps/map_picture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace tolvane {
namespace {

// Rows of red, green and blue bytes from the picture's 0xRRGGBB pixels.
std::vector<std::uint8_t> RgbRow(const std::vector<std::uint32_t>& pixels) {
    std::vector<std::uint8_t> row;
    for (const std::uint32_t pixel : pixels) {
        row.push_back(static_cast<std::uint8_t>(pixel >> 16));
        row.push_back(static_cast<std::uint8_t>(pixel >> 8));
        row.push_back(static_cast<std::uint8_t>(pixel));
    }
    return row;
}

TEST(RowShrinkerTest, EachPixelIsTheMeanOfThePixelsItCovers) {
    // Five columns into two (three and two columns) and three rows into
    // two (two rows and one): every cell of the result averages its block.
    const std::vector<std::vector<std::uint32_t>> picture = {
        {0x000000, 0x303030, 0x606060, 0xFF0000, 0xFF0000},
        {0x0C0C0C, 0x3C3C3C, 0x6C6C6C, 0x0000FF, 0x0000FF},
        {0x102030, 0x102030, 0x102030, 0x00FF00, 0x000000},
    };
    RowShrinker shrinker(5, 3, {2, 2});
    for (const auto& row : picture) shrinker.AddRow(RgbRow(row).data());
    // A row past the picture's height changes nothing.
    shrinker.AddRow(RgbRow({0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF}).data());
    const Image image = shrinker.Take();
    ASSERT_EQ(image.width, 2);
    ASSERT_EQ(image.height, 2);
    EXPECT_EQ(image.pixels, (std::vector<std::uint32_t>{0x363636, 0x7F007F, 0x102030, 0x007F00}));
}

}  // namespace
}  // namespace tolvane
