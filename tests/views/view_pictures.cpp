#include "tests/views/view_pictures.h"

#include <QPainter>

#include "core/views/view_painter.h"
#include "shell/qt_canvas.h"
#include "tests/core/test_support.h"
#include "tests/headless/replay_text.h"

namespace tolvane::testing {

QImage PaintViewPicture(const AppState& app, int width, int height) {
    const FontSet fonts(WindowBaseHeight(BaseFontHeight(96), width, height));
    const ViewLayout layout = LayOutViews(width, height, false, app.options.fullScreen != 0, fonts);
    QImage picture(width, height, QImage::Format_RGB32);
    QPainter painter(&picture);
    shell::QtCanvas canvas(painter, "DejaVu Sans");
    // The tests run in UTC, where the fix's local time is the time itself.
    PaintView(canvas, ViewContext{app, layout, fonts, app.gps.fixTime});
    return picture;
}

void ReplayToTick(const std::string& recording, int tick,
                  const std::function<void(AppState&)>& use) {
    int ticks = 0;
    ReplayText(ReadFileBytes(recording), {}, [&](AppState& app, FileTime /*utc*/) {
        if (++ticks == tick) use(app);
        return ticks < tick;
    });
}

}  // namespace tolvane::testing
