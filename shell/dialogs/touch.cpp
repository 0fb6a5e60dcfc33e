#include "shell/dialogs/touch.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QScrollArea>
#include <QScroller>
#include <QStyleOptionMenuItem>
#include <QWidget>
#include <algorithm>

namespace tolvane::shell {
namespace {

constexpr double kTouchTargetMillimetres = 7.0;
constexpr double kMillimetresPerInch = 25.4;
// Qt's own dots per inch where there is no screen to ask.
constexpr double kDefaultDotsPerInch = 96.0;

bool IsTapped(QStyle::ContentsType type, const QStyleOption* option) {
    switch (type) {
        case QStyle::CT_MenuItem: {
            // A separator is a line between entries, not an entry to tap.
            const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            return item == nullptr || item->menuItemType != QStyleOptionMenuItem::Separator;
        }
        case QStyle::CT_PushButton:
        case QStyle::CT_ToolButton:
        case QStyle::CT_ItemViewItem:
        case QStyle::CT_TabBarTab:
        case QStyle::CT_CheckBox:
        case QStyle::CT_RadioButton:
        case QStyle::CT_ComboBox:
        case QStyle::CT_SpinBox:
        case QStyle::CT_LineEdit:
            return true;
        default:
            return false;
    }
}

// The smallest screen, across its shorter side, that is worked with
// fingers; a smaller one (240 x 320) is a stylus device's, whose dialogs
// need every pixel and keep the style's own sizes.
constexpr int kSmallestFingerScreen = 360;

const QScreen* ScreenOf(const QWidget* widget) {
    return widget != nullptr ? widget->screen() : QGuiApplication::primaryScreen();
}

bool IsForFingers(const QWidget* widget) {
    const QScreen* screen = ScreenOf(widget);
    if (screen == nullptr) return true;
    const QSize size = screen->geometry().size();
    return std::min(size.width(), size.height()) >= kSmallestFingerScreen;
}

bool IsInComboBox(const QWidget* widget) {
    for (const QWidget* up = widget; up != nullptr; up = up->parentWidget()) {
        if (qobject_cast<const QComboBox*>(up) != nullptr) return true;
    }
    return false;
}

// A finger reaches the scroller as the mouse Qt makes of it: scrollers
// that take the touch events themselves swallow every other tap on the
// controls of a scrolled page. Kinetic scrolling moves the contents by
// pixels, not by whole rows.
void ScrollByFinger(QAbstractScrollArea* area) {
    if (auto* view = qobject_cast<QAbstractItemView*>(area)) {
        view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    }
    QScroller::grabGesture(area->viewport(), QScroller::LeftMouseButtonGesture);
}

}  // namespace

int TouchTargetPixels(const QWidget* widget) {
    const QScreen* screen = ScreenOf(widget);
    const double dotsPerInch =
        screen != nullptr ? screen->logicalDotsPerInchY() : kDefaultDotsPerInch;
    return qRound(kTouchTargetMillimetres / kMillimetresPerInch * dotsPerInch);
}

TouchStyle::TouchStyle() : QProxyStyle(QApplication::style()->name()) {}

QSize TouchStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (IsTapped(type, option) && IsForFingers(widget))
        wanted.setHeight(std::max(wanted.height(), TouchTargetPixels(widget)));
    return wanted;
}

void TouchStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    // A combo box's pop-up list keeps choosing by press, drag and release,
    // a list's header sorting and sizing its columns, and text fields the
    // finger for selecting their text.
    const bool list = qobject_cast<QAbstractItemView*>(widget) != nullptr &&
                      qobject_cast<QHeaderView*>(widget) == nullptr && !IsInComboBox(widget);
    if (list || qobject_cast<QScrollArea*>(widget) != nullptr) {
        ScrollByFinger(static_cast<QAbstractScrollArea*>(widget));
    }
}

void InstallTouchStyle() {
    if (qobject_cast<TouchStyle*>(QApplication::style()) == nullptr)
        QApplication::setStyle(new TouchStyle);
}

}  // namespace tolvane::shell
