#include "core/views/map_layers.h"

#include <cmath>

namespace tolvane {

void DrawMapLayers(Canvas& canvas, const ViewContext& context, const MapPlacement& placement) {
    const MapFollow& place = context.app.mapFollow;
    if (!place.havePosition) return;
    const MapProjection::Point at = context.app.projection.ProjectToScreen(
        place.latitude, place.longitude, placement.x0, placement.y0, placement.distance);
    const int x = static_cast<int>(std::lround(at.x));
    const int y = static_cast<int>(std::lround(at.y));
    const int arm = context.layout.barHeight / 2;
    const Color color = PaletteOf(context).accent;
    canvas.DrawLine({x - arm, y}, {x + arm, y}, color, 2);
    canvas.DrawLine({x, y - arm}, {x, y + arm}, color, 2);
}

}  // namespace tolvane
