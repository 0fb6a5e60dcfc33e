#include "shell/dialogs/map_dialogs.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/map_commands.h"
#include "core/base/csv_text.h"
#include "core/base/string_manager.h"
#include "core/geo/coordinate_text.h"
#include "core/geo/formatting.h"
#include "shell/dialogs/dialog_parts.h"
#include "shell/dialogs/map_loader.h"

namespace tolvane::shell {
namespace {

constexpr std::uint32_t kTextRefPointTitle = 14510;
constexpr std::uint32_t kTextLatitude = 14511;
constexpr std::uint32_t kTextLongitude = 14512;
constexpr std::uint32_t kTextDropPoint = 14513;
constexpr std::uint32_t kTextCoordinateHint = 14514;
constexpr std::uint32_t kTextLoadingMap = 14515;
constexpr std::uint32_t kTextMapPictures = 14516;

// The picture formats of "Load Map" in the cases their names come in.
constexpr const char* kMapPatterns[] = {"bmp", "gif", "png", "jpg", "jpeg", "tif", "tiff"};

QString MapFilter() {
    QStringList patterns;
    for (const char* pattern : kMapPatterns) {
        const QString name = QString::fromLatin1(pattern);
        QString capital = name;
        capital[0] = capital[0].toUpper();
        patterns << "*." + name << "*." + name.toUpper() << "*." + capital;
    }
    return Text(kTextMapPictures) + " (" + patterns.join(' ') + ")";
}

// The one loader of the window, made on first use and found by its name
// (the loader has no meta-object of its own to be found by).
MapLoader& LoaderOf(QWidget* parent) {
    static const QString kName = QStringLiteral("mapLoader");
    QWidget* window = parent->window();
    for (QObject* child : window->children()) {
        if (child->objectName() == kName) return *static_cast<MapLoader*>(child);
    }
    auto* loader = new MapLoader(window);
    loader->setObjectName(kName);
    return *loader;
}

class RefPointDialog final : public QDialog {
  public:
    static constexpr int kDrop = 2;

    RefPointDialog(const Program& program, QWidget* parent) : QDialog(parent) {
        const MapState& map = program.app.map;
        setWindowTitle(Text(kTextRefPointTitle, std::to_string(map.placing + 1)));
        auto* form = new QFormLayout;
        form->addRow(new QLabel(
            QString::fromStdString(FormatText("X : %0.1f   Y : %0.1f", map.crossX, map.crossY))));
        form->addRow(Text(kTextLatitude), latitude_);
        form->addRow(Text(kTextLongitude), longitude_);
        std::string latitude;
        std::string longitude;
        if (OfferedRefPositionText(program.app, latitude, longitude)) {
            latitude_->setText(QString::fromStdString(latitude));
            longitude_->setText(QString::fromStdString(longitude));
        }
        hint_->setWordWrap(true);
        auto* residuals = new QLabel(QString::fromStdString(RefPointResidualsText(map)));
        residuals->setWordWrap(true);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        if (map.calibration.points[map.placing].set) {
            QPushButton* drop =
                buttons->addButton(Text(kTextDropPoint), QDialogButtonBox::DestructiveRole);
            connect(drop, &QPushButton::clicked, this, [this] { done(kDrop); });
        }
        connect(buttons, &QDialogButtonBox::accepted, this, [this] { Accept(); });
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto* layout = new QVBoxLayout(this);
        layout->addLayout(form);
        layout->addWidget(hint_);
        layout->addWidget(residuals);
        layout->addWidget(buttons);
    }

    double Latitude() const { return latitudeValue_; }
    double Longitude() const { return longitudeValue_; }

  private:
    // Takes the two texts when both read as coordinates, else says how to
    // write them and stays open.
    void Accept() {
        const auto lat = ParseCoordinate(latitude_->text().toStdString(), true);
        const auto lon = ParseCoordinate(longitude_->text().toStdString(), false);
        if (!lat || !lon) {
            hint_->setText(Text(kTextCoordinateHint));
            return;
        }
        latitudeValue_ = *lat;
        longitudeValue_ = *lon;
        accept();
    }

    QLineEdit* latitude_ = new QLineEdit;
    QLineEdit* longitude_ = new QLineEdit;
    QLabel* hint_ = new QLabel;
    double latitudeValue_ = 0;
    double longitudeValue_ = 0;
};

}  // namespace

void ChooseMapFile(Program& program, QWidget* parent) {
    const QString path = ChooseFile(parent, FileChoice::kOpen, QString(), program.app.folders.root,
                                    MapFilter(), DialogFit::kOwnSize);
    if (!path.isEmpty()) OpenMapFile(program, path.toStdString());
}

void LoadRecentMap(Program& program, QWidget* parent, int index) {
    const std::string path = TakeRecentMap(program, index);
    if (path.empty()) return;
    auto* progress = new QProgressDialog(Text(kTextLoadingMap), QString(), 0, 0, parent);
    progress->setWindowModality(Qt::NonModal);
    progress->setMinimumDuration(300);
    progress->setAttribute(Qt::WA_DeleteOnClose);
    LoaderOf(parent).Load(
        QString::fromStdString(path),
        [progress](int done, int steps) {
            progress->setMaximum(steps);
            progress->setValue(done);
        },
        [&program, progress](const QString& file, std::shared_ptr<const MapPicture> picture) {
            progress->close();
            if (picture) {
                OnMapLoaded(program, file.toStdString(), std::move(picture));
            } else {
                OnMapUnreadable(program, file.toStdString());
            }
        });
}

void AskRefPointPosition(Program& program, QWidget* parent) {
    RefPointDialog dialog(program, parent);
    const int result = dialog.exec();
    if (result == QDialog::Accepted) {
        PlaceRefPoint(program, dialog.Latitude(), dialog.Longitude());
    } else if (result == RefPointDialog::kDrop) {
        DropRefPoint(program, program.app.map.placing);
    } else {
        CancelRefPoint(program);
    }
}

}  // namespace tolvane::shell
