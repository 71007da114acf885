// SPDX-License-Identifier: MIT
#include "platform/SoundFolders.h"

#include "platform/ResourceFolder.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QStandardPaths>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// A sound theme may be large, and its folders may hold links in a ring.
constexpr int mostFilesOfAFolder = 500;

QStringList filesBelow(const QString &folder)
{
    QStringList paths;
    QDirIterator files(folder, {u"*.wav"_s}, QDir::Files | QDir::Readable,
                       QDirIterator::Subdirectories);
    while (files.hasNext() && paths.size() < mostFilesOfAFolder)
        paths << files.next();
    paths.sort(); // the order of a folder on the disk differs from machine to machine
    return paths;
}

QStringList soundFiles()
{
    QStringList paths = filesBelow(resourcePath(u"sounds"_s));
    for (const QString &folder : QStandardPaths::locateAll(
             QStandardPaths::GenericDataLocation, u"sounds"_s, QStandardPaths::LocateDirectory))
        paths << filesBelow(folder);
    return paths;
}

} // namespace

QStringList soundNames()
{
    QStringList names;
    for (const QString &path : soundFiles())
        names << QFileInfo(path).completeBaseName();
    names.removeDuplicates();
    return names;
}

std::optional<QString> pathOfSound(const QString &name)
{
    for (const QString &path : soundFiles()) {
        if (QFileInfo(path).completeBaseName() == name)
            return path;
    }
    return std::nullopt;
}

} // namespace qovelmor
