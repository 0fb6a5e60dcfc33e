#include "shell/single_instance_lock.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

namespace tolvane::shell {
namespace {

// How long a second start waits for the first program to answer: it
// answers from its event loop, which a program busy starting up reaches a
// little later.
constexpr int kAnswerMilliseconds = 1000;
constexpr char kRequest[] = "forward\n";
constexpr char kAnswerText[] = "ok\n";

}  // namespace

SingleInstance::SingleInstance(const QString& folder) : folder_(folder) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::PathOf(const std::string& name) const {
    return QDir(folder_).filePath(QString::fromStdString(name));
}

InstanceLock::Result SingleInstance::CreateLock(const std::string& name) {
    switch (lock_.Acquire((PathOf(name) + QStringLiteral(".lock")).toStdString())) {
        case platform::LockFile::Result::kFailed:
            return Result::kFailed;
        case platform::LockFile::Result::kHeldElsewhere:
            return Result::kAlreadyExists;
        case platform::LockFile::Result::kAcquired:
            break;
    }
    if (!server_) {
        // A socket left by a program that died is stale: the lock says no
        // one else listens on it.
        QLocalServer::removeServer(PathOf(name));
        server_ = std::make_unique<QLocalServer>();
        server_->setSocketOptions(QLocalServer::UserAccessOption);
        connect(server_.get(), &QLocalServer::newConnection, this, &SingleInstance::Answer);
        server_->listen(PathOf(name));
    }
    return Result::kCreated;
}

void SingleInstance::Answer() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
            if (!socket->canReadLine()) return;
            socket->readAll();
            if (bringForward_) bringForward_();
            socket->write(kAnswerText);
            socket->flush();
        });
    }
}

bool SingleInstance::BringFirstInstanceForward(const std::string& name,
                                               const std::string& /*title*/) {
    QLocalSocket socket;
    socket.connectToServer(PathOf(name));
    if (!socket.waitForConnected(kAnswerMilliseconds)) return false;
    socket.write(kRequest);
    if (!socket.waitForBytesWritten(kAnswerMilliseconds)) return false;
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(kAnswerMilliseconds)) return false;
    }
    return socket.readLine() == kAnswerText;
}

void SingleInstance::Sleep(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace tolvane::shell
