#include "shell/dialogs/map_loader.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <memory>

namespace tolvane::shell {
namespace {

// Larger than the largest level, so that every picture is shrunk.
constexpr int kSide = 4200;

// A picture in the given format: its left half black, its right half
// white.
QImage HalvesPicture(QImage::Format format) {
    QImage picture(kSide, kSide, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter(&picture).fillRect(kSide / 2, 0, kSide / 2, kSide, Qt::white);
    return picture.convertToFormat(format, Qt::ThresholdDither);
}

std::shared_ptr<MapPicture> Load(const QString& path) {
    return ReadMapPicture(path, [](int, int) {});
}

TEST(MapLoaderTest, LargePngsOfEveryPixelFormatBecomeTheirLevels) {
    const QTemporaryDir folder;
    const LevelSize largest = LargestLevelSize(kSide, kSide);
    for (const QImage::Format format : {QImage::Format_Grayscale8, QImage::Format_Mono,
                                        QImage::Format_Indexed8, QImage::Format_RGB32}) {
        const QString path = folder.filePath(QStringLiteral("picture-%1.png").arg(format));
        ASSERT_TRUE(HalvesPicture(format).save(path));
        const std::shared_ptr<MapPicture> picture = Load(path);
        ASSERT_NE(picture, nullptr) << format;
        EXPECT_EQ(picture->width, kSide);
        EXPECT_EQ(picture->height, kSide);
        const Image& top = picture->levels.front();
        EXPECT_EQ(top.width, largest.width);
        EXPECT_EQ(top.height, largest.height);
        EXPECT_EQ(top.pixels[10], 0x000000u) << format;
        EXPECT_EQ(top.pixels.back(), 0xFFFFFFu) << format;
        // Halved down to the smallest level.
        EXPECT_EQ(picture->levels.back().width, kSmallestLevelSide) << format;
    }
}

TEST(MapLoaderTest, ALargePngThatBreaksOffIsNoMap) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cut.png"));
    ASSERT_TRUE(HalvesPicture(QImage::Format_Grayscale8).save(path));
    QFile file(path);
    ASSERT_TRUE(file.resize(file.size() / 2));
    EXPECT_EQ(Load(path), nullptr);
}

}  // namespace
}  // namespace tolvane::shell
