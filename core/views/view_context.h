#pragma once

#include <string>

#include "core/base/file_time.h"
#include "core/state/app_state.h"
#include "core/views/font_set.h"
#include "core/views/view_frame.h"

namespace tolvane {

struct WorldImagery;
class TileImages;

// The user's own ways of writing a date and a time of day; the window asks
// the desktop's locale.
class LocaleFormats {
  public:
    virtual ~LocaleFormats() = default;
    virtual std::string ShortDate(const CivilTime& time) const = 0;
    virtual std::string TimeOfDay(const CivilTime& time) const = 0;
};

// What a painter reads: the application state, the layout of the window's
// current size, the fonts and the current time (for the sun and the ages
// of figures).
struct ViewContext {
    const AppState& app;
    const ViewLayout& layout;
    const FontSet& fonts;
    FileTime nowUtc = 0;
    // Without the user's formats, dates and times are written as ISO 8601.
    const LocaleFormats* locale = nullptr;
    // The World Map's pictures of the earth; without them it draws only
    // its graticule.
    const WorldImagery* worldImagery = nullptr;
    // The tiles of the user's tile maps that are in memory, drawn on the
    // World Map over its pictures; none without tile maps.
    const TileImages* tiles = nullptr;
};

}  // namespace tolvane
