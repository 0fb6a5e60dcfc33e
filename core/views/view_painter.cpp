#include "core/views/view_painter.h"

#include "core/views/compass_view.h"
#include "core/views/gps_info_view.h"
#include "core/views/instrument_parts.h"
#include "core/views/map_view.h"
#include "core/views/satellites_view.h"
#include "core/views/speed_view.h"
#include "core/views/trip_stat_view.h"
#include "core/views/world_map_view.h"

namespace tolvane {
namespace {

// The map views come with their own painters; until then their area says
// which view it is.
void PaintPlaceholder(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteOf(context);
    canvas.DrawRectangle(context.layout.body, palette.background, kNoColor);
    canvas.DrawText(ViewTitle(context.app.currentView), context.fonts.Slot(kInstrumentTextSlot),
                    context.layout.body, kAlignCenter, palette.dim);
    PaintCoordinateStrip(canvas, context);
}

}  // namespace

void PaintView(Canvas& canvas, const ViewContext& context) {
    PaintTitleBar(canvas, context);
    switch (context.app.currentView) {
        case kViewGpsInfo:
            return PaintGpsInfoView(canvas, context);
        case kViewSatellites:
            return PaintSatellitesView(canvas, context);
        case kViewCompass:
            return PaintCompassView(canvas, context);
        case kViewSpeed:
            return PaintSpeedView(canvas, context);
        case kViewTripStat:
            return PaintTripStatView(canvas, context);
        case kViewMap:
            return PaintMapView(canvas, context);
        case kViewWorldMap:
            return PaintWorldMapView(canvas, context);
        default:
            return PaintPlaceholder(canvas, context);
    }
}

}  // namespace tolvane
