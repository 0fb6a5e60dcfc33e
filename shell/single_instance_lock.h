#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "core/app/single_instance_rule.h"
#include "platform/lock_file.h"

class QLocalServer;

namespace tolvane::shell {

// The single-instance lock on this machine: a lock file in the session's
// runtime folder, and a local socket of the same name on which the first
// program listens. A second start connects to it to ask the first to come
// forward; the first answers once it has done so.
class SingleInstance final : public QObject, public InstanceLock {
    Q_OBJECT

  public:
    // folder: where the lock file and the socket live.
    explicit SingleInstance(const QString& folder);
    ~SingleInstance() override;

    // What the first program does when a second one asks it to come forward.
    void SetBringForward(std::function<void()> bringForward) {
        bringForward_ = std::move(bringForward);
    }

    Result CreateLock(const std::string& name) override;
    bool BringFirstInstanceForward(const std::string& name, const std::string& title) override;
    void Sleep(int milliseconds) override;

  private:
    void Answer();
    QString PathOf(const std::string& name) const;

    QString folder_;
    platform::LockFile lock_;
    std::unique_ptr<QLocalServer> server_;
    std::function<void()> bringForward_;
};

}  // namespace tolvane::shell
