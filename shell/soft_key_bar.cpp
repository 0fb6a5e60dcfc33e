#include "shell/soft_key_bar.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

#include "core/views/view_frame.h"

namespace tolvane::shell {
namespace {

QToolButton* MakeKey(const QString& text, QWidget* parent) {
    auto* key = new QToolButton(parent);
    key->setText(text);
    key->setToolButtonStyle(Qt::ToolButtonTextOnly);
    key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoRaise(true);
    return key;
}

QAction* AddCommand(QMenu& menu, const MenuItem& item, QActionGroup*& radioGroup) {
    QAction* action = menu.addAction(QString::fromStdString(item.text));
    action->setData(item.id);
    action->setEnabled(item.enabled);
    if (item.radio) {
        // Neighbouring radio entries form one group, as in the menu resource;
        // a separator between them ("Off" and the speed limits) keeps it.
        if (radioGroup == nullptr) radioGroup = new QActionGroup(&menu);
        radioGroup->addAction(action);
    }
    action->setCheckable(item.checkable || item.radio);
    action->setChecked(item.checked);
    return action;
}

}  // namespace

void FillMenu(QMenu& menu, const MenuItem& item) {
    QActionGroup* radioGroup = nullptr;
    for (const MenuItem& child : item.children) {
        if (!child.radio && !child.separator) radioGroup = nullptr;
        if (child.separator) {
            menu.addSeparator();
        } else if (!child.children.empty()) {
            QMenu* popup = menu.addMenu(QString::fromStdString(child.text));
            FillMenu(*popup, child);
        } else {
            AddCommand(menu, child, radioGroup);
        }
    }
}

SoftKeyBar::SoftKeyBar(const QString& leftText, MenuBuilder left, const QString& rightText,
                       MenuBuilder right, CommandHandler onCommand, QWidget* parent)
    : QWidget(parent),
      left_(MakeKey(leftText, this)),
      right_(MakeKey(rightText, this)),
      buildLeft_(std::move(left)),
      buildRight_(std::move(right)),
      onCommand_(std::move(onCommand)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(left_);
    layout->addWidget(right_);
    connect(left_, &QToolButton::clicked, this, &SoftKeyBar::OpenLeft);
    connect(right_, &QToolButton::clicked, this, &SoftKeyBar::OpenRight);
}

void SoftKeyBar::SetTexts(const QString& leftText, const QString& rightText) {
    left_->setText(leftText);
    right_->setText(rightText);
}

void SoftKeyBar::FollowNightView(bool night) {
    if (night == night_) return;
    night_ = night;
    if (!night) {
        setPalette(QPalette());
        setAutoFillBackground(false);
        return;
    }
    // A light bar under a dark view would dazzle at night.
    const Palette& colours = PaletteFor(true);
    QPalette dark = palette();
    const QColor background = QColor::fromRgb(colours.titleBackground);
    const QColor text = QColor::fromRgb(colours.titleText);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Button}) {
        dark.setColor(role, background);
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText}) {
        dark.setColor(role, text);
    }
    setPalette(dark);
    setAutoFillBackground(true);
}

void SoftKeyBar::OpenLeft() {
    Open(buildLeft_, KeyCorner(left_), false);
}

void SoftKeyBar::OpenRight() {
    Open(buildRight_, KeyCorner(right_), false);
}

void SoftKeyBar::OpenRightAt(QPoint global) {
    Open(buildRight_, global, true);
}

QPoint SoftKeyBar::KeyCorner(const QToolButton* key) const {
    // The menu opens upwards from the key, as a handheld's soft-key menu
    // does; with the bar hidden in full screen, from the window's foot.
    if (!isHidden()) return key->mapToGlobal(QPoint(0, 0));
    const QWidget* window = this->window();
    const bool left = key == left_;
    return window->mapToGlobal(QPoint(left ? 0 : window->width() / 2, window->height()));
}

void SoftKeyBar::Open(const MenuBuilder& build, QPoint corner, bool fromTop) {
    if (openMenu_ != nullptr) return;
    QMenu menu(this);
    FillMenu(menu, build());
    openMenu_ = &menu;
    // Qt moves a menu that would leave the screen back onto it.
    QAction* chosen = menu.exec(fromTop ? corner : corner - QPoint(0, menu.sizeHint().height()));
    openMenu_ = nullptr;
    if (chosen != nullptr && chosen->data().toInt() != 0) onCommand_(chosen->data().toInt());
}

}  // namespace tolvane::shell
