#pragma once

#include <QSize>

namespace tolvane::shell {

// The screen's dots per inch as the program uses them, and the layout set
// they choose.
struct ScreenMetrics {
    int dpiX = 96;
    int dpiY = 96;
    bool largeLayout = false;
};

ScreenMetrics MetricsForScreen(QSize screen, int dpiX, int dpiY);

}  // namespace tolvane::shell
