#pragma once

#include <QComboBox>
#include <QDialog>
#include <QWidget>

#include "core/app/program.h"
#include "core/data/point_import.h"

namespace tolvane::shell {

// The preview of an import: what the file holds and, when it has
// waypoints, whether they go to the waypoint list or to a POI category.
// OK (Enter) imports, Cancel (Escape) leaves everything as it was.
class GpxImportDialog : public QDialog {
    Q_OBJECT

  public:
    GpxImportDialog(const ImportContents& contents, QWidget* parent);

    // kImportToWaypointList or the chosen POI category 1..30.
    int PoiCategory() const;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QComboBox* target_ = nullptr;
};

// "Import": chooses a GPX file, reads it whole, refuses it with the reason
// when it can't be read whole, else shows the preview and imports on OK.
void RunGpxImport(Program& program, QWidget* parent);

}  // namespace tolvane::shell
