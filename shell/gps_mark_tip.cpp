#include "shell/gps_mark_tip.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QStyleHints>
#include <QToolTip>
#include <QTouchEvent>

#include "core/app/gps_source_name.h"
#include "core/gps/port_source.h"
#include "platform/receiver_setup.h"
#include "shell/main_window.h"

namespace tolvane::shell {
namespace {

QRect ToQRect(const Rect& box) {
    return {box.left, box.top, box.Width(), box.Height()};
}

// The source's name with where it leads, as the system says now: the port's
// link may have been changed by GPS Setup since the start.
QString SourceText(const AppState& app) {
    const SourcePlaces places{platform::GpsdAddressText(),
                              platform::ReadPortLink(PortDeviceName(app.options.portIndex))};
    return QString::fromStdString(GpsSourceName(app, places));
}

}  // namespace

GpsMarkTip::GpsMarkTip(ViewArea& views) : QObject(&views), views_(views) {
    hold_.setSingleShot(true);
    hold_.setInterval(QGuiApplication::styleHints()->mousePressAndHoldInterval());
    connect(&hold_, &QTimer::timeout, this, [this] {
        shownByHold_ = true;
        Show(pressedAt_);
    });
    views.installEventFilter(this);
}

bool GpsMarkTip::OnMark(QPoint at) const {
    return ToQRect(views_.GpsMarkBox()).contains(at);
}

void GpsMarkTip::Press(QPoint at) {
    shownByHold_ = false;
    if (!OnMark(at)) return;
    pressedAt_ = at;
    hold_.start();
}

void GpsMarkTip::Move(QPoint at) {
    if ((at - pressedAt_).manhattanLength() > QApplication::startDragDistance()) hold_.stop();
}

void GpsMarkTip::Release() {
    hold_.stop();
    // Letting go hides a tooltip; the one the hold showed comes back once
    // the view area has taken the release, and stays its usual while.
    if (shownByHold_) QTimer::singleShot(0, this, [this] { Show(pressedAt_); });
}

void GpsMarkTip::Show(QPoint at) {
    QToolTip::showText(views_.mapToGlobal(at), SourceText(views_.App()), &views_,
                       ToQRect(views_.GpsMarkBox()));
}

bool GpsMarkTip::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ToolTip: {
            const QPoint at = static_cast<QHelpEvent*>(event)->pos();
            if (!OnMark(at)) break;
            Show(at);
            return true;
        }
        case QEvent::MouseButtonPress:
            if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
                Press(static_cast<QMouseEvent*>(event)->position().toPoint());
            }
            break;
        case QEvent::TouchBegin:
            Press(static_cast<QTouchEvent*>(event)->points().first().position().toPoint());
            break;
        case QEvent::MouseMove:
            Move(static_cast<QMouseEvent*>(event)->position().toPoint());
            break;
        case QEvent::TouchUpdate:
            Move(static_cast<QTouchEvent*>(event)->points().first().position().toPoint());
            break;
        case QEvent::MouseButtonRelease:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            Release();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tolvane::shell
