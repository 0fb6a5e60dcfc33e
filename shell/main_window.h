#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "core/app/keys.h"
#include "core/app/program.h"
#include "core/app/startup.h"
#include "shell/map_pointer.h"
#include "shell/qt_host.h"
#include "shell/tile_layer.h"
#include "shell/view_renderer.h"

class QTouchEvent;

namespace tolvane::shell {

class SoftKeyBar;

// The area above the soft keys where the current view is painted: through
// the Qt canvas into a back buffer at the screen's pixel ratio, then copied
// in one piece, so nothing flickers.
class ViewArea final : public QWidget {
    Q_OBJECT

  public:
    // Opens the command menu at a point of the screen.
    using MenuOpener = std::function<void(QPoint global)>;

    ViewArea(Program& program, ViewRenderer renderer, MenuOpener openCommandMenu,
             QWidget* parent = nullptr);

    // Lays the views out again for the current size and full-screen state.
    void LayOut();
    const ViewLayout& Layout() const { return renderer_.Layout(); }
    const AppState& App() const { return program_.app; }
    // Where the title bar's GPS mark stands; empty in full screen.
    Rect GpsMarkBox() const { return renderer_.GpsMarkBox(program_.app); }
    // Opens the tile maps of the settings again: the user changed them.
    void ReloadTileSources();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    // The mouse, stylus and touchpad pan and zoom the map views.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    // A right click, the menu key or a long press opens the command menu.
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

  private:
    // Fingers on a touch screen: one drags and taps as the mouse does and,
    // held still, opens the command menu; two pinch and pan the map views.
    void Touch(const QTouchEvent& event);
    // A tap or click that did not move, at a point of the view.
    void Tap(QPoint at);
    // Keeps the World Map's zoom within what its tile maps offer in the
    // current layout.
    void FitWorldMapZoom();

    Program& program_;
    MapPointer pointer_{program_};
    MenuOpener openCommandMenu_;
    // Runs out when a single finger is held still long enough.
    QTimer longPress_;
    QPoint touchedAt_;
    ViewRenderer renderer_;
    TileLayer tiles_;
    QImage backBuffer_;
    bool paintedOnce_ = false;
};

// The Qt key of a key event as the core's key, when it is one the program
// answers.
std::optional<Key> KeyFromQt(int qtKey);

// The program's one window: the view area above the soft-key bar. Key
// presses and releases, closing and resizing become calls on the core; the
// core repaints and closes it through the host.
class MainWindow final : public QWidget, public HostWindow {
    Q_OBJECT

  public:
    using CommandHandler = std::function<void(int id)>;

    // Commands go to runCommand, which sends them on to the core.
    MainWindow(Program& program, const WindowSetup& setup, const QString& fontFamily,
               CommandHandler runCommand);

    QWidget* Widget() override { return this; }
    void RepaintNow() override;
    void CloseForGood() override;
    void ReloadTileSources() override { views_->ReloadTileSources(); }
    void Relabel() override;

    // Shows the window in front of the others, as a second start asks.
    void BringForward();

    SoftKeyBar& SoftKeys() { return *softKeys_; }
    ViewArea& Views() { return *views_; }

    // The window's default size: a portrait handheld.
    static constexpr QSize kDefaultSize{480, 640};

  signals:
    // The window came forward: a second start asked, or it is being closed.
    void BroughtForward();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    // Shows or hides the soft keys as full screen asks; true when that
    // changed.
    bool FollowFullScreen();

    Program& program_;
    CommandHandler runCommand_;
    ViewArea* views_;
    SoftKeyBar* softKeys_;
    bool closingForGood_ = false;
};

}  // namespace tolvane::shell
