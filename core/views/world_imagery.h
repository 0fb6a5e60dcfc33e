#pragma once

#include "core/base/file_time.h"
#include "core/geo/map_projection.h"
#include "core/views/canvas.h"

namespace tolvane {

// The World Map's pictures of the earth, already in the map projection:
// each spans longitude -180 to 180 across its width and latitude 80 down to
// -80 along its height. The window loads them once; the painters only read
// them.
struct WorldImagery {
    Image day;    // the earth by day
    Image night;  // the city lights
    // The day picture with the night side taken from the city lights, for
    // the minute of shadedAt; the window refreshes it as the time moves on.
    Image shaded;
    FileTime shadedAt = -1;
};

// The projection's distance D at which a picture of this width spans the
// whole earth, one pixel to a pixel.
double ImageryDistance(const MapProjection& projection, int width);

// Re-projects an equirectangular picture (longitude -180 to 180 left to
// right, latitude 90 to -90 top to bottom) into the map projection at the
// same width, cut at 80 degrees north and south. Each row takes the source
// row of its own latitude, so a latitude lands on the row LatitudeToY gives.
Image ReprojectToMap(const Image& equirectangular, const MapProjection& projection);

// Lays the day picture in deep shade under the city lights, so that the
// land still shows on the night side; once, after both are read.
void LightNightSide(WorldImagery& imagery);

// Makes imagery.shaded for the time utc: the day picture on the sunlit
// side, the city lights on the night side and a blend across the twilight.
// Does nothing while the minute of utc is the one already shaded.
void ShadeDayAndNight(WorldImagery& imagery, const MapProjection& projection, FileTime utc);

}  // namespace tolvane
