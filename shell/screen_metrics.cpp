#include "shell/screen_metrics.h"

#include "core/views/font_set.h"

namespace tolvane::shell {

ScreenMetrics MetricsForScreen(QSize screen, int dpiX, int dpiY) {
    const bool square320 = screen == QSize(320, 320);
    ScreenMetrics metrics{square320 ? 110 : dpiX, square320 ? 110 : dpiY, false};
    metrics.largeLayout = BaseFontHeight(metrics.dpiY) != 15 && !square320;
    return metrics;
}

}  // namespace tolvane::shell
