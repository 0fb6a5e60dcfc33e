#include "shell/sound_player.h"

#include <QAudioDevice>
#include <QFileInfo>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

namespace tolvane::shell {
namespace {

constexpr char kLimitBeep[] = "qrc:/sounds/limit-beep.wav";

}  // namespace

SoundPlayer::SoundPlayer() = default;
SoundPlayer::~SoundPlayer() = default;

bool SoundPlayer::HaveAudioOutput() {
    // Asked once: the device list is the slow part of Qt Multimedia, and a
    // machine without a sound card keeps none for the program's lifetime.
    if (audioOutputKnown_ < 0) audioOutputKnown_ = QMediaDevices::audioOutputs().isEmpty() ? 0 : 1;
    return audioOutputKnown_ == 1;
}

QSoundEffect& SoundPlayer::Effect(std::unique_ptr<QSoundEffect>& effect) {
    if (!effect) effect = std::make_unique<QSoundEffect>();
    return *effect;
}

bool SoundPlayer::PlaySoundFile(const std::string& file, SoundMode mode) {
    const QString path = QString::fromStdString(file);
    if (!HaveAudioOutput() || !QFileInfo::exists(path)) return true;
    QSoundEffect& effect = Effect(file_);
    effect.stop();
    // Qt Multimedia keeps loaded sounds by their address; the voice guide
    // writes each spoken text over the same file, so every play asks for
    // the file by an address of its own and is read afresh.
    QUrl source = QUrl::fromLocalFile(path);
    source.setQuery(QStringLiteral("play=%1").arg(++plays_));
    effect.setSource(source);
    // The alarm holds whole periods of its tones, so the effect's own loop
    // plays it without a gap.
    effect.setLoopCount(mode == SoundMode::kLoop ? QSoundEffect::Infinite : 1);
    effect.play();
    return true;
}

bool SoundPlayer::StopSound() {
    if (file_) file_->stop();
    return true;
}

bool SoundPlayer::PlayLimitBeep() {
    if (!HaveAudioOutput()) return true;
    QSoundEffect& effect = Effect(beep_);
    if (effect.source().isEmpty()) effect.setSource(QUrl(QString::fromLatin1(kLimitBeep)));
    effect.play();
    return true;
}

}  // namespace tolvane::shell
