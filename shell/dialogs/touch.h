#pragma once

#include <QProxyStyle>

class QWidget;

namespace tolvane::shell {

// The smallest thing a finger hits reliably is about 7 mm across; this is
// that length in the logical pixels of the screen widget lies on (the
// primary screen without a widget), from the screen's logical dots per inch.
int TouchTargetPixels(const QWidget* widget);

// The application's style for fingers. On a screen of at least 360 pixels
// each way, every control a finger taps is at least TouchTargetPixels high: push and tool buttons
// (the soft keys), menu entries, list and tree rows, tabs, check boxes, radio buttons, combo boxes,
// spin boxes and text fields. Every list and scroll area (the dialogs' and the file chooser's)
// scrolls under a flicking finger, as on a phone, and under a dragging mouse alike. Everything else
// is drawn and sized as the style underneath does it.
class TouchStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    TouchStyle();

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void polish(QWidget* widget) override;
    using QProxyStyle::polish;
};

// Puts the touch style on the application, once.
void InstallTouchStyle();

}  // namespace tolvane::shell
