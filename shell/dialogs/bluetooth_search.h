#pragma once

#include <QObject>
#include <QString>
#include <QThread>

namespace tolvane::shell {

class BluetoothSearchWorker;

// The search for Bluetooth receivers that offer the Serial Port service. It
// runs on a thread of its own, so the dialog stays responsive however long
// BlueZ takes; the answers come back as queued signals.
class BluetoothSearch final : public QObject {
    Q_OBJECT

  public:
    explicit BluetoothSearch(QObject* parent = nullptr);
    ~BluetoothSearch() override;

    void Start();
    void Cancel();

  signals:
    void Found(const QString& name, quint64 address, int channel);
    // An empty problem when the search ran to its end or was cancelled.
    void Finished(const QString& problem);

  private:
    QThread thread_;
    BluetoothSearchWorker* worker_;
};

}  // namespace tolvane::shell
