#include "shell/view_renderer.h"

#include <QPainter>

#include "core/views/view_painter.h"
#include "shell/qt_canvas.h"

namespace tolvane::shell {

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

void ViewRenderer::Paint(QImage& image, const AppState& app, FileTime nowUtc) const {
    QPainter painter(&image);
    QtCanvas canvas(painter, fontFamily_);
    PaintView(canvas, ViewContext{app, layout_, fonts_, nowUtc});
}

QImage MakeBackBuffer(QSize size, qreal devicePixelRatio) {
    QImage image(size * devicePixelRatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

}  // namespace tolvane::shell
