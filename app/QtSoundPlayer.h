// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Sounds.h"

#include <QHash>

#include <memory>

class QSoundEffect;

namespace qovelmor {

class MainThread;

/// Plays the WAV files of the sound folders through Qt Multimedia, on the main thread. The sound
/// system is not touched before the first sound is asked for.
class QtSoundPlayer final : public SoundPlayer
{
public:
    explicit QtSoundPlayer(MainThread &mainThread);
    ~QtSoundPlayer() override;

    QStringList soundNames() const override;
    void play(const QString &name, float volume) override;

private:
    struct Effects;

    MainThread &mainThread_;
    std::shared_ptr<Effects> effects_; // shared with posted calls, which may come late
};

} // namespace qovelmor
