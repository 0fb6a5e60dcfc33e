#include "tests/views/view_pictures.h"

#include <QPainter>
#include <sstream>

#include "core/views/view_painter.h"
#include "headless/replay.h"
#include "shell/qt_canvas.h"

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
    headless::RunSettings settings;
    Options options{};
    std::string error;
    headless::MakeRunOptions(settings, options, error);
    std::ostringstream messages;
    headless::ReplayTotals totals;
    int ticks = 0;
    headless::ReplayRecordingFile(
        recording, settings, options, messages,
        [&](AppState& app, FileTime /*utc*/) {
            if (++ticks == tick) use(app);
            return ticks < tick;
        },
        totals, error);
}

}  // namespace tolvane::testing
