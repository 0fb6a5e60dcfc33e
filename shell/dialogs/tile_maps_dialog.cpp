#include "shell/dialogs/tile_maps_dialog.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "core/app/program.h"
#include "core/app/tile_maps_form.h"
#include "formats/tile_source.h"
#include "shell/dialogs/dialog_parts.h"

namespace tolvane::shell {
namespace {

// Opens the map at path to describe it; this may take a while (a folder of
// many entries on a slow card, a large MBTiles without an index), so it runs
// on a worker thread.
TileMapReading ReadTileMap(const std::string& path) {
    const TileSourceOpening opening = OpenTileSource(path);
    TileMapReading reading;
    std::error_code error;
    reading.kind =
        std::filesystem::is_directory(path, error) ? TileMapKind::kFolder : TileMapKind::kMbtiles;
    reading.problem = opening.problem;
    reading.detail = opening.detail;
    if (opening.source != nullptr) reading.info = opening.source->Info();
    return reading;
}

// Where the readings go: the dialog while it is open. A worker that ends
// after the dialog closed finds no one and its reading is dropped; the
// dialog never waits for a worker.
class ReadingMailbox {
  public:
    explicit ReadingMailbox(QObject* receiver) : receiver_(receiver) {}

    // Runs handOver on the receiver's thread, unless it has closed.
    void Deliver(std::function<void()> handOver) {
        const std::lock_guard<std::mutex> guard(lock_);
        if (receiver_ != nullptr) {
            QMetaObject::invokeMethod(receiver_, std::move(handOver), Qt::QueuedConnection);
        }
    }

    void Close() {
        const std::lock_guard<std::mutex> guard(lock_);
        receiver_ = nullptr;
    }

  private:
    std::mutex lock_;
    QObject* receiver_;
};

class TileMapsDialog : public QDialog {
  public:
    TileMapsDialog(Program& program, QWidget* parent)
        : QDialog(parent),
          program_(program),
          form_(OpenTileMapsForm(program.app)),
          mailbox_(std::make_shared<ReadingMailbox>(this)) {
        setWindowTitle(Text(kTextTileMapsTitle));
        auto* order = new QLabel(Text(kTextTileMapsOrder));
        order->setWordWrap(true);
        list_ = new QListWidget;
        list_->setObjectName("tileMaps");
        list_->setWordWrap(true);
        // Each map takes two lines or more; the shades tell the maps apart.
        list_->setAlternatingRowColors(true);
        list_->setTextElideMode(Qt::ElideMiddle);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(order);
        layout->addWidget(list_, 1);
        layout->addLayout(Buttons());
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        connect(buttons, &QDialogButtonBox::accepted, this, &TileMapsDialog::Accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        layout->addWidget(buttons);
        connect(list_, &QListWidget::currentRowChanged, this, &TileMapsDialog::EnableButtons);
        for (const TileMapRow& row : form_.rows) Read(row.path);
        Refill(form_.rows.empty() ? -1 : 0);
        FitDialog(*this, parent, DialogFit::kWindowHeight);
    }

    ~TileMapsDialog() override { mailbox_->Close(); }
    TileMapsDialog(const TileMapsDialog&) = delete;
    TileMapsDialog& operator=(const TileMapsDialog&) = delete;

  private:
    QGridLayout* Buttons() {
        const auto button = [this](std::uint32_t text, void (TileMapsDialog::*run)()) {
            return CommandButton(this, text, run);
        };
        remove_ = button(kTextTileMapRemove, &TileMapsDialog::Remove);
        up_ = button(kTextTileMapMoveUp, &TileMapsDialog::Up);
        down_ = button(kTextTileMapMoveDown, &TileMapsDialog::Down);
        return ButtonGrid(
            {button(kTextTileMapAddFile, &TileMapsDialog::AddFile),
             button(kTextTileMapAddFolder, &TileMapsDialog::AddFolder), remove_, up_, down_},
            parentWidget());
    }

    void Read(const std::string& path) {
        std::thread([mailbox = mailbox_, path, this] {
            TileMapReading reading = ReadTileMap(path);
            mailbox->Deliver([this, path, reading = std::move(reading)] { Show(path, reading); });
        }).detach();
    }

    void Show(const std::string& path, const TileMapReading& reading) {
        SetTileMapReading(form_, path, reading);
        Refill(list_->currentRow());
    }

    void Refill(int select) {
        list_->clear();
        for (const TileMapRow& row : form_.rows) {
            auto* item = new QListWidgetItem(
                QString::fromStdString(TileMapNameText(row) + "\n" + TileMapDetailText(row)));
            item->setToolTip(QString::fromStdString(row.path));
            list_->addItem(item);
        }
        list_->setCurrentRow(select);
        EnableButtons();
    }

    void EnableButtons() {
        const int row = list_->currentRow();
        remove_->setEnabled(row >= 0);
        up_->setEnabled(CanMoveTileMap(form_, row, -1));
        down_->setEnabled(CanMoveTileMap(form_, row, +1));
    }

    // The chooser starts beside the last map of the list, else in "My GPS".
    std::string StartFolder() const {
        if (form_.rows.empty()) return program_.app.folders.root;
        return std::filesystem::path(form_.rows.back().path).parent_path().string();
    }

    void Add(const QString& path) {
        if (path.isEmpty()) return;
        if (!AddTileMap(form_, path.toStdString())) {
            ShowWarning(this, program_,
                        QString::fromStdString(TileMapListedText(path.toStdString())));
            return;
        }
        Read(form_.rows.back().path);
        Refill(static_cast<int>(form_.rows.size()) - 1);
    }

    void AddFile() {
        Add(ChooseFile(this, FileChoice::kOpen, Text(kTextTileMapsTitle), StartFolder(),
                       Text(kTextTileMapFiles)));
    }

    void AddFolder() {
        Add(ChooseFile(this, FileChoice::kFolder, Text(kTextTileMapsTitle), StartFolder(),
                       QString()));
    }

    void Remove() {
        const int row = list_->currentRow();
        RemoveTileMap(form_, row);
        Refill(std::min(row, static_cast<int>(form_.rows.size()) - 1));
    }

    void Move(int step) { Refill(MoveTileMap(form_, list_->currentRow(), step)); }
    void Up() { Move(-1); }
    void Down() { Move(+1); }

    void Accept() {
        accept();
        ApplyTileMapsForm(program_, form_);
    }

    Program& program_;
    TileMapsForm form_;
    std::shared_ptr<ReadingMailbox> mailbox_;
    QListWidget* list_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
};

}  // namespace

void RunTileMapsDialog(Program& program, QWidget* parent) {
    TileMapsDialog dialog(program, parent);
    dialog.exec();
}

}  // namespace tolvane::shell
