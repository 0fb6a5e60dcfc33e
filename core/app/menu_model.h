#pragma once

#include <string>
#include <vector>

#include "core/app/program.h"

namespace tolvane {

// One entry of a menu. A pop-up has children; a separator has nothing else.
// The shell shows entries as they are and sends the id of a chosen one to
// OnCommand; it needs to know no id's meaning.
struct MenuItem {
    int id = 0;  // the command; 0 for a pop-up or a separator
    std::string text;
    bool separator = false;
    bool enabled = true;
    bool checkable = false;
    bool checked = false;
    bool radio = false;  // one of a group of which one is checked
    std::vector<MenuItem> children;
};

// The text of a soft key (40008 the views, 40007 the command menu).
std::string SoftKeyText(int id);

// The views the left soft key opens, with the current one checked.
MenuItem BuildViewsMenu(Program& program);

// The command menu of the right soft key, with the checks and greying of the
// program's state now. Built again each time a pop-up opens.
MenuItem BuildCommandMenu(Program& program);

}  // namespace tolvane
