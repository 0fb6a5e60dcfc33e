#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include "core/maps/tile_images.h"
#include "core/state/app_state.h"
#include "core/views/font_set.h"
#include "core/views/view_frame.h"
#include "core/views/world_imagery.h"

namespace tolvane::shell {

// Paints the current view of the application state through the Qt canvas:
// the window's back buffer and the screenshots both come from here. It
// keeps the fonts and the layout for the screen's dots per inch and the
// client area's size, made again only when the size changes.
class ViewRenderer {
  public:
    ViewRenderer(int dpiY, bool largeLayout, const QString& fontFamily);

    // Lays the views out for a client area of size logical pixels.
    void LayOut(QSize size, bool fullScreen);
    const ViewLayout& Layout() const { return layout_; }
    const FontSet& Fonts() const { return fonts_; }

    // Paints the current view into image, whose device pixel ratio says how
    // many pixels a logical pixel takes.
    // The World Map's pictures are read and re-projected the first time it
    // is painted, and its night side shaded again each minute.
    void Paint(QImage& image, const AppState& app, FileTime nowUtc) const;

    // Where the title bar's GPS mark stands in the current layout, in
    // logical pixels; empty in full screen.
    Rect GpsMarkBox(const AppState& app) const;

    // The pictures of the earth as the World Map last drew them.
    const WorldImagery& Imagery() const { return imagery_; }

    // The tiles of the user's tile maps the World Map draws; none without.
    void SetTiles(const TileImages* tiles) { tiles_ = tiles; }

  private:
    void PrepareImagery(const AppState& app, FileTime nowUtc) const;

    int screenBaseHeight_;
    FontSet fonts_;
    bool largeLayout_;
    QString fontFamily_;
    ViewLayout layout_;
    mutable WorldImagery imagery_;
    mutable bool imageryRead_ = false;
    const TileImages* tiles_ = nullptr;
};

// A picture file as the core's image, re-projected into the map
// projection; empty when the file cannot be read.
Image ReadWorldPicture(const QString& path, const MapProjection& projection);

// A back buffer of size logical pixels at a device pixel ratio.
QImage MakeBackBuffer(QSize size, qreal devicePixelRatio);

}  // namespace tolvane::shell
