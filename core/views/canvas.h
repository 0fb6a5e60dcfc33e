#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/base/pixels.h"

namespace tolvane {

// Colours as 0xRRGGBB. kNoColor leaves an outline or a fill out.
using Color = std::uint32_t;
inline constexpr Color kNoColor = 0xFF000000u;

struct TextSize {
    int width = 0;
    int height = 0;
};

// A font as the painters ask for it: a pixel height and a weight (400
// normal, 600 semi-bold, 700 bold, 0 the family's default). The family is
// the canvas's business.
struct Font {
    int height = 0;
    int weight = 400;
    friend bool operator==(const Font&, const Font&) = default;
};

// Where a text stands in its box; one horizontal and one vertical flag.
enum TextAlign : unsigned {
    kAlignLeft = 0x0,
    kAlignHCenter = 0x1,
    kAlignRight = 0x2,
    kAlignTop = 0x0,
    kAlignVCenter = 0x4,
    kAlignBottom = 0x8,
    kAlignCenter = kAlignHCenter | kAlignVCenter,
};

// What the painters draw on. The window draws through Qt into a back
// buffer; the tests record the calls. Texts are UTF-8.
class Canvas {
  public:
    virtual ~Canvas() = default;

    virtual void DrawRectangle(const Rect& box, Color fill, Color outline, int penWidth = 1) = 0;
    // The ellipse inscribed in box.
    virtual void DrawEllipse(const Rect& box, Color fill, Color outline, int penWidth = 1) = 0;
    virtual void DrawPolygon(const std::vector<Point>& points, Color fill, Color outline,
                             int penWidth = 1) = 0;
    virtual void DrawLine(Point from, Point to, Color color, int penWidth = 1) = 0;
    virtual void DrawPolyline(const std::vector<Point>& points, Color color, int penWidth = 1) = 0;

    virtual TextSize MeasureText(const std::string& text, const Font& font) = 0;
    virtual void DrawText(const std::string& text, const Font& font, const Rect& box,
                          unsigned align, Color color) = 0;

    // Draws the source part of image scaled into target.
    virtual void DrawImage(const Image& image, const Rect& source, const Rect& target) = 0;
    // Draws the source part of image onto the parallelogram whose corners
    // the source's top-left, top-right and bottom-left corners go to: a
    // map picture turned and stretched by its calibration. Below a brightness
    // of 1 the picture is drawn darker, so that it does not dazzle at night.
    virtual void DrawImageMapped(const Image& image, const Rect& source, Point topLeft,
                                 Point topRight, Point bottomLeft, double brightness) = 0;

    // Limits drawing to box until the clip is reset.
    virtual void SetClip(const Rect& box) = 0;
    virtual void ResetClip() = 0;
};

}  // namespace tolvane
