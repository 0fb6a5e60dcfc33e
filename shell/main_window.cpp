#include "shell/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <QTouchEvent>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "core/app/commands.h"
#include "core/app/map_commands.h"
#include "core/app/menu_model.h"
#include "core/app/startup.h"
#include "core/base/debug_trace.h"
#include "core/placement/tile_placement.h"
#include "shell/gps_mark_tip.h"
#include "shell/qt_translations.h"
#include "shell/soft_key_bar.h"

namespace tolvane::shell {
namespace {

// A finger held this long without moving opens the command menu.
constexpr int kLongPressMs = 600;

}  // namespace

ViewArea::ViewArea(Program& program, ViewRenderer renderer, MenuOpener openCommandMenu,
                   QWidget* parent)
    : QWidget(parent),
      program_(program),
      openCommandMenu_(std::move(openCommandMenu)),
      renderer_(std::move(renderer)) {
    // Every pixel is painted from the back buffer: nothing to erase first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    // The fingers come as touch events, not as a mouse made up from them.
    setAttribute(Qt::WA_AcceptTouchEvents);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    longPress_.setSingleShot(true);
    longPress_.setInterval(kLongPressMs);
    connect(&longPress_, &QTimer::timeout, this, [this] {
        // A finger held on the GPS mark asks for its note, not the menu.
        const Rect mark = GpsMarkBox();
        if (touchedAt_.x() >= mark.left && touchedAt_.x() < mark.right &&
            touchedAt_.y() >= mark.top && touchedAt_.y() < mark.bottom) {
            return;
        }
        pointer_.Held();
        openCommandMenu_(mapToGlobal(touchedAt_));
    });
    renderer_.SetTiles(&tiles_.Images());
    connect(&tiles_, &TileLayer::SourcesOpened, this, [this](TileZooms zooms) {
        program_.app.tileZooms = zooms;
        FitWorldMapZoom();
        update();
    });
    connect(&tiles_, &TileLayer::TileArrived, this, qOverload<>(&QWidget::update));
    tiles_.Open(program_.app.runtime.tileSources);
}

void ViewArea::LayOut() {
    renderer_.LayOut(size(), IsFullScreenShown(program_.app));
    FitWorldMapZoom();
}

void ViewArea::ReloadTileSources() {
    tiles_.Open(program_.app.runtime.tileSources);
}

void ViewArea::FitWorldMapZoom() {
    MapKeys& keys = program_.app.mapKeys;
    keys.worldMapCeiling = WorldMapZoomCeiling(program_.app, renderer_.Layout().body);
    keys.worldMapZoom = std::min(keys.worldMapZoom, keys.worldMapCeiling);
}

void ViewArea::resizeEvent(QResizeEvent* /*event*/) {
    // A resize or a rotation lays the views out again, as the rotation
    // notice does.
    LayOut();
}

void ViewArea::paintEvent(QPaintEvent* /*event*/) {
    const qreal ratio = devicePixelRatioF();
    if (backBuffer_.size() != size() * ratio || backBuffer_.devicePixelRatio() != ratio) {
        backBuffer_ = MakeBackBuffer(size(), ratio);
    }
    renderer_.Paint(backBuffer_, program_.app, program_.host.Time().NowUtc());
    QPainter(this).drawImage(0, 0, backBuffer_);
    // The tiles the World Map lacks are asked for after each painting, so
    // the worker always reads for the map as it now lies.
    if (program_.app.currentView == kViewWorldMap) {
        tiles_.Want(WantedTiles(program_.app, renderer_.Layout().body, tiles_.Images()));
    }
    if (!paintedOnce_) {
        paintedOnce_ = true;
        // The start-up benchmark measures up to this moment.
        DebugTrace("first frame painted at " + std::to_string(QDateTime::currentMSecsSinceEpoch()) +
                   " ms\n");
    }
}

void ViewArea::mousePressEvent(QMouseEvent* event) {
    // The right button opens the command menu instead.
    if (!IsMapView(program_.app.currentView) || event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    pointer_.Press(event->position().toPoint());
}

void ViewArea::mouseMoveEvent(QMouseEvent* event) {
    if (!IsMapView(program_.app.currentView) || !(event->buttons() & Qt::LeftButton)) {
        return QWidget::mouseMoveEvent(event);
    }
    pointer_.Move(event->position().toPoint(), renderer_.Layout());
}

void ViewArea::mouseReleaseEvent(QMouseEvent* event) {
    if (IsMapView(program_.app.currentView) && pointer_.Release()) Tap(event->position().toPoint());
}

void ViewArea::Tap(QPoint at) {
    // A tap on the picture places the reference point being placed; taken
    // on release, so that its dialog opens with the pointer let go.
    if (TapRefPoint(program_, renderer_.Layout().body, at.x(), at.y())) return;
    const QString text = TappedPointText(program_.app, renderer_.Layout(), at);
    if (text.isEmpty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(mapToGlobal(at), text, this);
    }
}

void ViewArea::wheelEvent(QWheelEvent* event) {
    if (!IsMapView(program_.app.currentView)) return QWidget::wheelEvent(event);
    pointer_.Wheel(event->angleDelta().y());
}

void ViewArea::contextMenuEvent(QContextMenuEvent* event) {
    openCommandMenu_(event->globalPos());
}

void ViewArea::Touch(const QTouchEvent& event) {
    QList<QPointF> down;
    for (const QEventPoint& point : event.points()) {
        if (point.state() != QEventPoint::Released) down << point.position();
    }
    const bool map = IsMapView(program_.app.currentView);
    if (down.size() >= 2) {
        longPress_.stop();
        if (map) pointer_.TwoFingers(down[0], down[1], renderer_.Layout());
    } else if (down.size() == 1) {
        const QPoint at = down[0].toPoint();
        if (event.type() == QEvent::TouchBegin) {
            touchedAt_ = at;
            longPress_.start();
            pointer_.Press(at);
        } else {
            // A finger that slides is panning or scrolling, not being held.
            if ((at - touchedAt_).manhattanLength() >= QApplication::startDragDistance())
                longPress_.stop();
            if (map) pointer_.Move(at, renderer_.Layout());
        }
    } else {
        // A finger that was held, slid or joined by another is no tap.
        longPress_.stop();
        if (pointer_.Release() && map && event.type() == QEvent::TouchEnd)
            Tap(event.points().first().position().toPoint());
    }
}

bool ViewArea::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            Touch(*static_cast<QTouchEvent*>(event));
            return true;
        default:
            break;
    }
    if (event->type() == QEvent::NativeGesture && IsMapView(program_.app.currentView)) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            pointer_.Pinch(gesture->value());
            return true;
        }
    }
    return QWidget::event(event);
}

std::optional<Key> KeyFromQt(int qtKey) {
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) {
        return static_cast<Key>(static_cast<int>(Key::kDigit0) + (qtKey - Qt::Key_0));
    }
    switch (qtKey) {
        case Qt::Key_Asterisk:
        case Qt::Key_F8:
            return Key::kStar;
        case Qt::Key_NumberSign:
        case Qt::Key_F9:
            return Key::kHash;
        case Qt::Key_Left:
            return Key::kLeft;
        case Qt::Key_Up:
            return Key::kUp;
        case Qt::Key_Right:
            return Key::kRight;
        case Qt::Key_Down:
            return Key::kDown;
        case Qt::Key_Enter:
        case Qt::Key_Return:
            return Key::kEnter;
        default:
            return std::nullopt;
    }
}

MainWindow::MainWindow(Program& program, const WindowSetup& setup, const QString& fontFamily,
                       CommandHandler runCommand)
    : program_(program), runCommand_(std::move(runCommand)) {
    setWindowTitle(QString::fromStdString(program.title));
    setObjectName(QStringLiteral("Tolvane_GPS_Utilities"));
    views_ = new ViewArea(
        program, ViewRenderer(program.screen.dpiY, setup.largeLayout, fontFamily),
        [this](QPoint global) { softKeys_->OpenRightAt(global); }, this);
    new GpsMarkTip(*views_);
    softKeys_ = new SoftKeyBar(
        QString::fromStdString(setup.leftSoftKey), [&program] { return BuildViewsMenu(program); },
        QString::fromStdString(setup.rightSoftKey),
        [&program] { return BuildCommandMenu(program); }, runCommand_, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(views_, 1);
    layout->addWidget(softKeys_);
    setFocusPolicy(Qt::StrongFocus);
    // A phone's, a car computer's or a netbook's screen cannot hold the
    // default size: there the window takes all the room the desktop leaves
    // it, so that no band of the screen stays unused.
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen != nullptr && screen->availableSize().boundedTo(kDefaultSize) != kDefaultSize) {
        setGeometry(screen->availableGeometry());
        setWindowState(Qt::WindowMaximized);
    } else {
        resize(kDefaultSize);
    }
    FollowFullScreen();
    softKeys_->FollowNightView(program.app.options.nightView != 0);
}

bool MainWindow::FollowFullScreen() {
    const bool fullScreen = IsFullScreenShown(program_.app);
    if (softKeys_->isHidden() == fullScreen) return false;
    softKeys_->setHidden(fullScreen);
    return true;
}

void MainWindow::RepaintNow() {
    softKeys_->FollowNightView(program_.app.options.nightView != 0);
    if (FollowFullScreen()) {
        layout()->activate();
        views_->LayOut();
    }
    views_->repaint();
}

void MainWindow::Relabel() {
    SpeakQtLanguage(LanguageToLoad(program_.app.runtime.language));
    setWindowTitle(QString::fromStdString(program_.title));
    softKeys_->SetTexts(QString::fromStdString(SoftKeyText(kCommandLeftSoftKey)),
                        QString::fromStdString(SoftKeyText(kCommandRightSoftKey)));
    RepaintNow();
}

void MainWindow::CloseForGood() {
    closingForGood_ = true;
    // Closed from the event loop, not from inside the Exit command that
    // asked for it.
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

void MainWindow::BringForward() {
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    raise();
    activateWindow();
    emit BroughtForward();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // The phone's two soft keys, which still open their menus while full
    // screen hides the bar.
    if (event->key() == Qt::Key_F1 || event->key() == Qt::Key_Context1)
        return softKeys_->OpenLeft();
    if (event->key() == Qt::Key_F2 || event->key() == Qt::Key_Context2)
        return softKeys_->OpenRight();
    const std::optional<Key> key = KeyFromQt(event->key());
    if (!key) return QWidget::keyPressEvent(event);
    OnKeyDown(program_, *key);
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
    const std::optional<Key> key = KeyFromQt(event->key());
    // A held key repeats as release and press pairs; only the real release
    // lets the next press of an arrow key through at once.
    if (!key || event->isAutoRepeat()) return QWidget::keyReleaseEvent(event);
    OnKeyUp(program_, *key);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (closingForGood_) return event->accept();
    // Closing the window is the Exit command, question included; the core
    // closes the window when the answer is yes.
    event->ignore();
    BringForward();
    runCommand_(kCommandExit);
}

}  // namespace tolvane::shell
