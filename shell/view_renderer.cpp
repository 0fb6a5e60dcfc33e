#include "shell/view_renderer.h"

#include <QDate>
#include <QLocale>
#include <QPainter>
#include <QTime>

#include "core/views/view_painter.h"
#include "shell/dialogs/map_loader.h"
#include "shell/qt_canvas.h"

namespace tolvane::shell {
namespace {

// Dates and times as the desktop's locale writes them, the short date
// format as in file managers and clocks.
class SystemLocaleFormats final : public LocaleFormats {
  public:
    std::string ShortDate(const CivilTime& time) const override {
        const QDate date(time.year, time.month, time.day);
        return locale_.toString(date, QLocale::ShortFormat).toStdString();
    }
    std::string TimeOfDay(const CivilTime& time) const override {
        // The long format keeps the seconds, which tick with every fix.
        const QTime clock(time.hour, time.minute, time.second);
        return locale_.toString(clock, locale_.timeFormat(QLocale::LongFormat).remove(" t"))
            .toStdString();
    }

  private:
    QLocale locale_ = QLocale::system();
};

}  // namespace

ViewRenderer::ViewRenderer(int dpiY, bool largeLayout, const QString& fontFamily)
    : screenBaseHeight_(BaseFontHeight(dpiY)),
      fonts_(screenBaseHeight_),
      largeLayout_(largeLayout),
      fontFamily_(fontFamily) {}

void ViewRenderer::LayOut(QSize size, bool fullScreen) {
    // The fonts follow the window's size, so that a view's texts fit a small
    // window and fill a large one.
    fonts_ = FontSet(WindowBaseHeight(screenBaseHeight_, size.width(), size.height()));
    layout_ = LayOutViews(size.width(), size.height(), largeLayout_, fullScreen, fonts_);
}

void ViewRenderer::PrepareImagery(const AppState& app, FileTime nowUtc) const {
    if (app.currentView != kViewWorldMap) return;
    if (!imageryRead_) {
        imageryRead_ = true;
        imagery_.day = ReadWorldPicture(QStringLiteral(TOLVANE_EARTH_PICTURE), app.projection);
        imagery_.night = ReadWorldPicture(QStringLiteral(TOLVANE_NIGHT_PICTURE), app.projection);
        LightNightSide(imagery_);
    }
    // The night palette shows the city lights alone; only the day needs
    // the sun's shadow.
    if (!app.options.nightView) ShadeDayAndNight(imagery_, app.projection, nowUtc);
}

void ViewRenderer::Paint(QImage& image, const AppState& app, FileTime nowUtc) const {
    PrepareImagery(app, nowUtc);
    QPainter painter(&image);
    QtCanvas canvas(painter, fontFamily_);
    static const SystemLocaleFormats kLocale;
    PaintView(canvas, ViewContext{app, layout_, fonts_, nowUtc, &kLocale, &imagery_, tiles_});
}

Rect ViewRenderer::GpsMarkBox(const AppState& app) const {
    // The mark's width is its text's, measured in the painting's fonts.
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    QtCanvas canvas(painter, fontFamily_);
    return tolvane::GpsMarkBox(canvas, ViewContext{app, layout_, fonts_});
}

Image ReadWorldPicture(const QString& path, const MapProjection& projection) {
    const QImage read = QImage(path).convertToFormat(QImage::Format_RGB32);
    if (read.isNull()) return {};
    return ReprojectToMap(ImageFromQt(read), projection);
}

QImage MakeBackBuffer(QSize size, qreal devicePixelRatio) {
    QImage image(size * devicePixelRatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

}  // namespace tolvane::shell
