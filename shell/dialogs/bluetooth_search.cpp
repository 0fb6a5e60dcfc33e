#include "shell/dialogs/bluetooth_search.h"

#include <QBluetoothLocalDevice>
#include <QBluetoothServiceDiscoveryAgent>
#include <QBluetoothServiceInfo>
#include <QBluetoothUuid>

#include "core/app/gps_setup_form.h"

namespace tolvane::shell {

// Lives on the search thread, where its discovery agent is made, runs and
// is destroyed.
class BluetoothSearchWorker final : public QObject {
    Q_OBJECT

  public:
    void Start() {
        Stop();
        if (QBluetoothLocalDevice::allDevices().isEmpty()) {
            emit Finished(ProblemText({true, 0, {}}));
            return;
        }
        agent_ = new QBluetoothServiceDiscoveryAgent(this);
        agent_->setUuidFilter(QBluetoothUuid(QBluetoothUuid::ServiceClassUuid::SerialPort));
        connect(agent_, &QBluetoothServiceDiscoveryAgent::serviceDiscovered, this,
                [this](const QBluetoothServiceInfo& service) {
                    emit Found(service.device().name(), service.device().address().toUInt64(),
                               service.serverChannel());
                });
        connect(agent_, &QBluetoothServiceDiscoveryAgent::finished, this,
                [this] { emit Finished({}); });
        connect(agent_, &QBluetoothServiceDiscoveryAgent::canceled, this,
                [this] { emit Finished({}); });
        connect(agent_, &QBluetoothServiceDiscoveryAgent::errorOccurred, this,
                [this](QBluetoothServiceDiscoveryAgent::Error error) {
                    emit Finished(ProblemText(
                        {error == QBluetoothServiceDiscoveryAgent::InvalidBluetoothAdapterError ||
                             error == QBluetoothServiceDiscoveryAgent::PoweredOffError,
                         error, agent_->errorString().toStdString()}));
                });
        agent_->start(QBluetoothServiceDiscoveryAgent::FullDiscovery);
    }

    void Stop() {
        if (agent_ == nullptr) return;
        agent_->stop();
        agent_->deleteLater();
        agent_ = nullptr;
    }

  signals:
    void Found(const QString& name, quint64 address, int channel);
    void Finished(const QString& problem);

  private:
    static QString ProblemText(const SearchProblem& problem) {
        return QString::fromStdString(SearchProblemText(problem));
    }

    QBluetoothServiceDiscoveryAgent* agent_ = nullptr;
};

BluetoothSearch::BluetoothSearch(QObject* parent)
    : QObject(parent), worker_(new BluetoothSearchWorker) {
    worker_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    connect(worker_, &BluetoothSearchWorker::Found, this, &BluetoothSearch::Found);
    connect(worker_, &BluetoothSearchWorker::Finished, this, &BluetoothSearch::Finished);
    thread_.start();
}

BluetoothSearch::~BluetoothSearch() {
    Cancel();
    thread_.quit();
    thread_.wait();
}

void BluetoothSearch::Start() {
    QMetaObject::invokeMethod(
        worker_, [this] { worker_->Start(); }, Qt::QueuedConnection);
}

void BluetoothSearch::Cancel() {
    QMetaObject::invokeMethod(
        worker_, [this] { worker_->Stop(); }, Qt::QueuedConnection);
}

}  // namespace tolvane::shell

#include "bluetooth_search.moc"
