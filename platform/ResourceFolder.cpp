// SPDX-License-Identifier: MIT
#include "platform/ResourceFolder.h"

#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

namespace {

QStringList candidateFolders()
{
    QStringList folders;
    const QString named = qEnvironmentVariable("QOVELMORRSS_RESOURCES");
    if (!named.isEmpty())
        folders << named;
    // Asked of the system and not of the application object: fonts are also read before one exists.
    const QString program = QFileInfo(u"/proc/self/exe"_s).symLinkTarget();
    const QString folder = QFileInfo(program).path();
    folders << folder + u"/resources"_s << folder + u"/../resources"_s
            << folder + u"/../share/qovelmorrss"_s;
    return folders;
}

} // namespace

QString resourcePath(const QString &fileName)
{
    const QStringList folders = candidateFolders();
    for (const QString &folder : folders) {
        const QString path = folder + u'/' + fileName;
        if (QFileInfo::exists(path))
            return path;
    }
    return folders.first() + u'/' + fileName;
}

} // namespace qovelmor
