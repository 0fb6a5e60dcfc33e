#pragma once

#include <QFont>
#include <QHash>
#include <QPainter>
#include <QString>

#include "core/views/canvas.h"

namespace tolvane::shell {

// The painters' canvas on a QPainter: the window's back buffer, or a
// picture for a screenshot. Fonts are of one family, made once per size
// and weight.
class QtCanvas final : public Canvas {
  public:
    QtCanvas(QPainter& painter, const QString& fontFamily);

    void DrawRectangle(const Rect& box, Color fill, Color outline, int penWidth) override;
    void DrawEllipse(const Rect& box, Color fill, Color outline, int penWidth) override;
    void DrawPolygon(const std::vector<Point>& points, Color fill, Color outline,
                     int penWidth) override;
    void DrawLine(Point from, Point to, Color color, int penWidth) override;
    void DrawPolyline(const std::vector<Point>& points, Color color, int penWidth) override;

    TextSize MeasureText(const std::string& text, const Font& font) override;
    void DrawText(const std::string& text, const Font& font, const Rect& box, unsigned align,
                  Color color) override;

    void DrawImage(const Image& image, const Rect& source, const Rect& target) override;
    void DrawImageMapped(const Image& image, const Rect& source, Point topLeft, Point topRight,
                         Point bottomLeft, double brightness) override;

    void SetClip(const Rect& box) override;
    void ResetClip() override;

  private:
    void UsePenAndBrush(Color fill, Color outline, int penWidth);
    const QFont& FontFor(const Font& font);

    QPainter& painter_;
    QString fontFamily_;
    QHash<quint64, QFont> fonts_;
};

}  // namespace tolvane::shell
