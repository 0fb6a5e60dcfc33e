#include "shell/dialogs/dialog_placement.h"

#include <QScreen>
#include <algorithm>

namespace tolvane::shell {
namespace {

int ClampStart(int start, int length, int areaStart, int areaLength) {
    return std::clamp(start, areaStart, std::max(areaStart, areaStart + areaLength - length));
}

}  // namespace

void CoverWindowOnScreen(QDialog& dialog, QWidget* parent) {
    const QWidget* window = parent != nullptr ? parent->window() : nullptr;
    const QScreen* screen = window != nullptr ? window->screen() : dialog.screen();
    const QRect area = screen->availableGeometry();
    const QRect over = window != nullptr ? window->frameGeometry() : area;
    const QSize size = over.size().boundedTo(area.size());
    dialog.resize(size);
    QRect placed(QPoint(), size);
    placed.moveCenter(over.center());
    dialog.move(ClampStart(placed.left(), size.width(), area.left(), area.width()),
                ClampStart(placed.top(), size.height(), area.top(), area.height()));
}

}  // namespace tolvane::shell
