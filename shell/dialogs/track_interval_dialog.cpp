#include "shell/dialogs/track_interval_dialog.h"

#include "core/app/value_dialogs.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/number_fields_dialog.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextTrackInterval = 10667;  // the menu's "Track Interval"
constexpr std::uint32_t kTextSecondsRange = 13701;

}  // namespace

bool RunTrackIntervalDialog(Program& program, QWidget* parent) {
    Options& options = program.app.options;
    TrackIntervalFields fields = TrackIntervalFieldsOf(options);
    if (!EditNumberFields(Text(kTextTrackInterval), Text(kTextSecondsRange), fields, parent)) {
        return false;
    }
    StoreTrackIntervalFields(options, fields);
    return true;
}

}  // namespace tolvane::shell
