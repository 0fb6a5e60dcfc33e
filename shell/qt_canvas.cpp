#include "shell/qt_canvas.h"

#include <QImage>
#include <QPolygon>
#include <QTransform>
#include <algorithm>

namespace tolvane::shell {
namespace {

QColor ToQColor(Color color) {
    return QColor::fromRgb(color & 0xFFFFFFu);
}

QRect ToQRect(const Rect& box) {
    return QRect(box.left, box.top, box.Width(), box.Height());
}

QPolygon ToQPolygon(const std::vector<Point>& points) {
    QPolygon polygon;
    polygon.reserve(static_cast<int>(points.size()));
    for (const Point& point : points) polygon << QPoint(point.x, point.y);
    return polygon;
}

Qt::Alignment ToQtAlignment(unsigned align) {
    Qt::Alignment result = Qt::AlignLeft;
    if (align & kAlignHCenter) result = Qt::AlignHCenter;
    if (align & kAlignRight) result = Qt::AlignRight;
    if (align & kAlignVCenter) return result | Qt::AlignVCenter;
    if (align & kAlignBottom) return result | Qt::AlignBottom;
    return result | Qt::AlignTop;
}

// A weight of 0 asks for the family's default.
QFont::Weight ToQtWeight(int weight) {
    return weight == 0 ? QFont::Normal : static_cast<QFont::Weight>(weight);
}

}  // namespace

QtCanvas::QtCanvas(QPainter& painter, const QString& fontFamily)
    : painter_(painter), fontFamily_(fontFamily) {
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::TextAntialiasing);
}

void QtCanvas::UsePenAndBrush(Color fill, Color outline, int penWidth) {
    painter_.setBrush(fill == kNoColor ? QBrush(Qt::NoBrush) : QBrush(ToQColor(fill)));
    if (outline == kNoColor) {
        painter_.setPen(Qt::NoPen);
    } else {
        painter_.setPen(QPen(ToQColor(outline), penWidth));
    }
}

void QtCanvas::DrawRectangle(const Rect& box, Color fill, Color outline, int penWidth) {
    if (outline == kNoColor && fill != kNoColor) {
        painter_.fillRect(ToQRect(box), ToQColor(fill));
        return;
    }
    UsePenAndBrush(fill, outline, penWidth);
    // Qt strokes a rectangle on its edge; keep the outline inside the box
    // as the fill is.
    painter_.drawRect(ToQRect(box).adjusted(0, 0, -1, -1));
}

void QtCanvas::DrawEllipse(const Rect& box, Color fill, Color outline, int penWidth) {
    UsePenAndBrush(fill, outline, penWidth);
    painter_.drawEllipse(ToQRect(box));
}

void QtCanvas::DrawPolygon(const std::vector<Point>& points, Color fill, Color outline,
                           int penWidth) {
    UsePenAndBrush(fill, outline, penWidth);
    painter_.drawPolygon(ToQPolygon(points));
}

void QtCanvas::DrawLine(Point from, Point to, Color color, int penWidth) {
    painter_.setPen(QPen(ToQColor(color), penWidth, Qt::SolidLine, Qt::RoundCap));
    painter_.drawLine(from.x, from.y, to.x, to.y);
}

void QtCanvas::DrawPolyline(const std::vector<Point>& points, Color color, int penWidth) {
    painter_.setPen(QPen(ToQColor(color), penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.drawPolyline(ToQPolygon(points));
}

const QFont& QtCanvas::FontFor(const Font& font) {
    const quint64 key =
        (static_cast<quint64>(font.height) << 32) | static_cast<quint32>(font.weight);
    auto found = fonts_.find(key);
    if (found != fonts_.end()) return *found;
    QFont made(fontFamily_);
    made.setPixelSize(font.height > 0 ? font.height : 1);
    made.setWeight(ToQtWeight(font.weight));
    return *fonts_.insert(key, made);
}

TextSize QtCanvas::MeasureText(const std::string& text, const Font& font) {
    const QFontMetrics metrics(FontFor(font));
    const QString wide = QString::fromStdString(text);
    return {metrics.horizontalAdvance(wide), metrics.height()};
}

void QtCanvas::DrawText(const std::string& text, const Font& font, const Rect& box, unsigned align,
                        Color color) {
    painter_.setFont(FontFor(font));
    painter_.setPen(ToQColor(color));
    painter_.drawText(ToQRect(box), static_cast<int>(ToQtAlignment(align)) | Qt::TextDontClip,
                      QString::fromStdString(text));
}

namespace {

// The picture's pixels are borrowed, not copied: 0xRRGGBB words are what
// QImage's RGB32 format reads (and 0xAARRGGBB its ARGB32), so drawing a
// large map costs no conversion.
QImage BorrowedImage(const Image& image) {
    return QImage(reinterpret_cast<const uchar*>(image.pixels.data()), image.width, image.height,
                  image.width * 4, image.alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

}  // namespace

void QtCanvas::DrawImage(const Image& image, const Rect& source, const Rect& target) {
    if (image.width <= 0 || image.height <= 0) return;
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(ToQRect(target), BorrowedImage(image), ToQRect(source));
}

void QtCanvas::DrawImageMapped(const Image& image, const Rect& source, Point topLeft,
                               Point topRight, Point bottomLeft, double brightness) {
    if (image.width <= 0 || image.height <= 0 || source.Width() <= 0 || source.Height() <= 0) {
        return;
    }
    const double width = source.Width();
    const double height = source.Height();
    // A transform of scale and offset alone keeps Qt's fast scaling path.
    const QTransform transform((topRight.x - topLeft.x) / width, (topRight.y - topLeft.y) / width,
                               (bottomLeft.x - topLeft.x) / height,
                               (bottomLeft.y - topLeft.y) / height, topLeft.x, topLeft.y);
    // The picture is darkened by a veil of black over it rather than drawn
    // translucent; over a picture with see-through parts the veil lies on
    // its own pixels alone, so that what shows through is not darkened twice.
    const QColor veil(0, 0, 0, qRound(255 * (1 - std::clamp(brightness, 0.0, 1.0))));
    painter_.save();
    painter_.setTransform(transform, true);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    if (image.alpha && veil.alpha() > 0) {
        QImage part = BorrowedImage(image)
                          .copy(ToQRect(source))
                          .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QPainter veiled(&part);
        veiled.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        veiled.fillRect(part.rect(), veil);
        veiled.end();
        painter_.drawImage(QRectF(0, 0, width, height), part);
    } else {
        painter_.drawImage(QRectF(0, 0, width, height), BorrowedImage(image), ToQRect(source));
        if (veil.alpha() > 0) painter_.fillRect(QRectF(0, 0, width, height), veil);
    }
    painter_.restore();
}

void QtCanvas::SetClip(const Rect& box) {
    painter_.setClipRect(ToQRect(box));
}

void QtCanvas::ResetClip() {
    painter_.setClipping(false);
}

}  // namespace tolvane::shell
