// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace qovelmor {

/// Plays short sounds by name. Any thread; playing never waits.
class SoundPlayer
{
public:
    virtual ~SoundPlayer() = default;

    /// The names that can be played: the WAV files of the sound folders, without their extension,
    /// in the order in which the folders list them.
    virtual QStringList soundNames() const = 0;

    /// Starts the named sound at a volume from 0.0 to 1.0. An unknown name plays nothing, silently.
    virtual void play(const QString &name, float volume) = 0;
};

} // namespace qovelmor
