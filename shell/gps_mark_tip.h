#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

namespace tolvane::shell {

class ViewArea;

// The title bar's GPS mark names the GPS source in use: as the tooltip of
// the mark's box, and, since a touch screen has no pointer that rests, when
// the mark is held down for a moment.
class GpsMarkTip final : public QObject {
    Q_OBJECT

  public:
    // Watches the events of views, whose current layout says where the
    // mark stands.
    explicit GpsMarkTip(ViewArea& views);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool OnMark(QPoint at) const;
    // A press at a point of the view area: held on the mark, it shows the
    // tip; moving away or letting go before then does not.
    void Press(QPoint at);
    void Move(QPoint at);
    void Release();
    void Show(QPoint at);

    ViewArea& views_;
    QTimer hold_;
    QPoint pressedAt_;
    bool shownByHold_ = false;
};

}  // namespace tolvane::shell
