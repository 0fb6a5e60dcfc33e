#pragma once

#include <string>
#include <vector>

#include "core/views/canvas.h"

namespace tolvane::testing {

// A canvas that keeps every call in order. Texts measure half their font
// height per byte across and one font height down, so layouts are exact.
class RecordingCanvas final : public Canvas {
  public:
    enum class Kind { kRectangle, kEllipse, kPolygon, kLine, kPolyline, kText, kImage };
    struct Call {
        Kind kind;
        Rect box;  // rectangles, ellipses, texts; a line's ends as left/top and right/bottom
        Color fill = kNoColor;
        Color outline = kNoColor;  // also the colour of lines and texts
        std::string text;
        Font font;
    };

    std::vector<Call> calls;

    void DrawRectangle(const Rect& box, Color fill, Color outline, int) override {
        calls.push_back({Kind::kRectangle, box, fill, outline, {}, {}});
    }
    void DrawEllipse(const Rect& box, Color fill, Color outline, int) override {
        calls.push_back({Kind::kEllipse, box, fill, outline, {}, {}});
    }
    void DrawPolygon(const std::vector<Point>&, Color fill, Color outline, int) override {
        calls.push_back({Kind::kPolygon, {}, fill, outline, {}, {}});
    }
    void DrawLine(Point from, Point to, Color color, int) override {
        calls.push_back({Kind::kLine, {from.x, from.y, to.x, to.y}, kNoColor, color, {}, {}});
    }
    void DrawPolyline(const std::vector<Point>&, Color color, int) override {
        calls.push_back({Kind::kPolyline, {}, kNoColor, color, {}, {}});
    }
    TextSize MeasureText(const std::string& text, const Font& font) override {
        return {static_cast<int>(text.size()) * font.height / 2, font.height};
    }
    void DrawText(const std::string& text, const Font& font, const Rect& box, unsigned,
                  Color color) override {
        calls.push_back({Kind::kText, box, kNoColor, color, text, font});
    }
    void DrawImage(const Image&, const Rect&, const Rect& target) override {
        calls.push_back({Kind::kImage, target, kNoColor, kNoColor, {}, {}});
    }
    // A mapped image records its top-left and bottom-right corners.
    void DrawImageMapped(const Image&, const Rect&, Point topLeft, Point topRight,
                         Point bottomLeft, double) override {
        const Point bottomRight{topRight.x + bottomLeft.x - topLeft.x,
                                topRight.y + bottomLeft.y - topLeft.y};
        calls.push_back({Kind::kImage,
                         {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y},
                         kNoColor,
                         kNoColor,
                         {},
                         {}});
    }
    void SetClip(const Rect&) override {}
    void ResetClip() override {}

    std::vector<Call> Of(Kind kind) const {
        std::vector<Call> found;
        for (const Call& call : calls) {
            if (call.kind == kind) found.push_back(call);
        }
        return found;
    }
    // The texts drawn, in order.
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const Call& call : Of(Kind::kText)) texts.push_back(call.text);
        return texts;
    }
};

}  // namespace tolvane::testing
