#pragma once

#include <QWidget>
#include <functional>

#include "core/app/menu_model.h"

class QMenu;
class QToolButton;

namespace tolvane::shell {

// The bar along the window's foot with the two soft keys: the left one opens
// the views, the right one the command menu. Each menu is built from the
// core's menu model at the moment it opens, so its checks and greying show
// the program's state then; a chosen entry goes to the command handler.
class SoftKeyBar final : public QWidget {
    Q_OBJECT

  public:
    using MenuBuilder = std::function<MenuItem()>;
    using CommandHandler = std::function<void(int id)>;

    SoftKeyBar(const QString& leftText, MenuBuilder left, const QString& rightText,
               MenuBuilder right, CommandHandler onCommand, QWidget* parent = nullptr);

    // Opens the left (views) or right (command) menu above its key and
    // waits until it closes.
    void OpenLeft();
    void OpenRight();
    // Opens the command menu with its corner at a point of the screen, for
    // a right click or a long press on the views.
    void OpenRightAt(QPoint global);

    // Colours the bar as the title bar of the views: the window's own style
    // by day, the night palette's dark bar at night.
    void FollowNightView(bool night);

    // The keys' texts in the language now loaded.
    void SetTexts(const QString& leftText, const QString& rightText);

    // The menu the bar shows now, for tests and for the keyboard; null when
    // none is open.
    QMenu* OpenMenu() const { return openMenu_; }

  private:
    // The corner above the key where its menu opens.
    QPoint KeyCorner(const QToolButton* key) const;
    // Opens the menu that build makes with its bottom-left corner at corner,
    // or its top-left corner when fromTop, and waits until it closes.
    void Open(const MenuBuilder& build, QPoint corner, bool fromTop);

    QToolButton* left_;
    QToolButton* right_;
    MenuBuilder buildLeft_;
    MenuBuilder buildRight_;
    CommandHandler onCommand_;
    QMenu* openMenu_ = nullptr;
    bool night_ = false;
};

// Fills menu with the entries of item: pop-ups as sub-menus, checkable and
// radio entries checked as the item says, greyed entries disabled. Each
// entry's action carries its command id as data.
void FillMenu(QMenu& menu, const MenuItem& item);

}  // namespace tolvane::shell
