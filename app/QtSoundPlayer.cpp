// SPDX-License-Identifier: MIT
#include "app/QtSoundPlayer.h"

#include "platform/MainThread.h"
#include "platform/SoundFolders.h"

#include <QFileInfo>
#include <QSoundEffect>
#include <QUrl>

namespace qovelmor {

/// One effect for each sound heard so far: loading a file again would delay it.
struct QtSoundPlayer::Effects
{
    QHash<QString, QSoundEffect *> byName;

    ~Effects() { qDeleteAll(byName); }

    QSoundEffect *find(const QString &name)
    {
        if (auto *known = byName.value(name))
            return known;
        const auto path = pathOfSound(name);
        if (!path)
            return nullptr;
        auto *effect = new QSoundEffect;
        effect->setSource(QUrl::fromLocalFile(*path));
        byName.insert(name, effect);
        return effect;
    }
};

QtSoundPlayer::QtSoundPlayer(MainThread &mainThread)
    : mainThread_(mainThread), effects_(std::make_shared<Effects>())
{}

QtSoundPlayer::~QtSoundPlayer() = default;

QStringList QtSoundPlayer::soundNames() const
{
    return qovelmor::soundNames();
}

void QtSoundPlayer::play(const QString &name, float volume)
{
    mainThread_.post([weak = std::weak_ptr(effects_), name, volume] {
        const auto effects = weak.lock();
        if (!effects)
            return;
        if (QSoundEffect *effect = effects->find(name)) {
            effect->setVolume(volume);
            effect->play();
        }
    });
}

} // namespace qovelmor
