// SPDX-License-Identifier: MIT
#include "platform/SoundFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

class SoundFoldersTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder_;

    QString path(const QString &name) const { return folder_->filePath(name); }

    void make(const QString &name) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        qputenv("QOVELMORRSS_RESOURCES", QFile::encodeName(path(u"own"_s)));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"user"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"system"_s)));
    }

    void names_comeFromTheOwnFolderFirstInOrder()
    {
        for (const auto &file :
             {u"own/sounds/Blow.wav"_s, u"own/sounds/Basso.wav"_s, u"own/sounds/README.txt"_s,
              u"own/sounds/Ping.ogg"_s, u"user/sounds/Mine.WAV"_s, u"user/sounds/Basso.wav"_s,
              u"system/sounds/theme/stereo/bell.two.wav"_s, u"system/other/no.wav"_s})
            make(file);
        QCOMPARE(soundNames(), (QStringList{u"Basso"_s, u"Blow"_s, u"Mine"_s, u"bell.two"_s}));
        QCOMPARE(pathOfSound(u"Basso"_s), std::optional(path(u"own/sounds/Basso.wav"_s)));
        QCOMPARE(pathOfSound(u"bell.two"_s),
                 std::optional(path(u"system/sounds/theme/stereo/bell.two.wav"_s)));
        QVERIFY(!pathOfSound(u"Ping"_s));
        QVERIFY(!pathOfSound(QString()));
        QVERIFY(!pathOfSound(u"../sounds/Basso"_s));
    }

    void withoutFolders_thereAreNoNames()
    {
        qputenv("QOVELMORRSS_RESOURCES", QFile::encodeName(path(u"none"_s)));
        make(u"none/sounds/x"_s);
        QCOMPARE(soundNames(), QStringList());
    }

    void ringOfLinksAndHugeThemes_areBounded()
    {
        make(u"own/sounds/Basso.wav"_s);
        QVERIFY(QFile::link(path(u"own/sounds"_s), path(u"own/sounds/ring"_s)));
        for (int i = 0; i < 600; ++i)
            make(u"user/sounds/%1.wav"_s.arg(i));
        QCOMPARE(soundNames().size(), 501);
    }

    void ownSounds_areShortWavFiles()
    {
        const QDir built(qEnvironmentVariable("QOVELMOR_BUILD_DIR") + u"/resources/sounds"_s);
        const QFileInfoList files = built.entryInfoList({u"*.wav"_s}, QDir::Files);
        QVERIFY(files.size() >= 5);
        QVERIFY(built.exists(u"Basso.wav"_s) && built.exists(u"Blow.wav"_s));
        for (const QFileInfo &info : files) {
            QFile file(info.filePath());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            QVERIFY2(bytes.size() > 1000 && bytes.size() < 40'000, qPrintable(info.fileName()));
            QVERIFY(bytes.startsWith("RIFF") && bytes.sliced(8, 8) == "WAVEfmt ");
            // Heard, and not cut off at full volume at either end.
            const auto sampleAt = [&](qsizetype at) {
                return std::abs(qFromLittleEndian<qint16>(bytes.constData() + at));
            };
            int loudest = 0;
            for (qsizetype at = 44; at + 1 < bytes.size(); at += 2)
                loudest = std::max(loudest, sampleAt(at));
            QVERIFY(loudest > 3000 && loudest < 32767);
            QVERIFY(sampleAt(44) < 300 && sampleAt(bytes.size() - 2) < 300);
        }
    }
};

QTEST_GUILESS_MAIN(SoundFoldersTest)
#include "soundfolders_test.moc"
