#include "shell/dialogs/file_chooser.h"

#include <QFileDialog>
#include <QStringList>

namespace tolvane::shell {

std::string ChooseFileToOpen(QWidget* parent, const std::string& caption, const std::string& folder,
                             const std::string& filter) {
    QFileDialog chooser(parent, QString::fromStdString(caption), QString::fromStdString(folder),
                        QString::fromStdString(filter));
    chooser.setFileMode(QFileDialog::ExistingFile);
    chooser.setAcceptMode(QFileDialog::AcceptOpen);
    // Qt's own chooser sizes itself to the window; a desktop's native one
    // would open at a size of its own choosing, too large for a handheld.
    chooser.setOption(QFileDialog::DontUseNativeDialog);
    if (parent != nullptr) chooser.resize(parent->window()->size());
    if (chooser.exec() != QDialog::Accepted) return {};
    const QStringList files = chooser.selectedFiles();
    return files.isEmpty() ? std::string() : files.front().toStdString();
}

}  // namespace tolvane::shell
