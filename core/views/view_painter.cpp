#include "core/views/view_painter.h"

namespace tolvane {

void PaintView(Canvas& canvas, const ViewContext& context) {
    const Palette& palette = PaletteFor(context.app.options.nightView != 0);
    canvas.DrawRectangle(context.layout.client, palette.background, kNoColor);
    canvas.DrawText("View " + std::to_string(context.app.currentView), context.fonts.Slot(27),
                    context.layout.view, kAlignCenter, palette.text);
}

}  // namespace tolvane
