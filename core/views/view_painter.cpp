#include "core/views/view_painter.h"

#include "core/views/compass_view.h"
#include "core/views/gps_info_view.h"
#include "core/views/map_view.h"
#include "core/views/satellites_view.h"
#include "core/views/speed_view.h"
#include "core/views/trip_stat_view.h"
#include "core/views/world_map_view.h"

namespace tolvane {

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
            // No view has another number; its area stays plain.
            return canvas.DrawRectangle(context.layout.body, PaletteOf(context).background,
                                        kNoColor);
    }
}

}  // namespace tolvane
