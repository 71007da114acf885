// SPDX-License-Identifier: MIT
#include "settings/ColorArchive.h"

#include <QDataStream>
#include <QIODevice>

namespace qovelmor {

QByteArray archivedColor(const QColor &color)
{
    QByteArray archive;
    QDataStream stream(&archive, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << color;
    return archive;
}

QColor unarchivedColor(const QByteArray &archive)
{
    // The first byte is the colour space. The stream operator takes any value for it, and a colour
    // with an unknown one must not even be looked at.
    const bool isKnown = !archive.isEmpty() && archive.front() >= QColor::Rgb &&
                         archive.front() <= QColor::ExtendedRgb;
    if (!isKnown)
        return Qt::red;
    QDataStream stream(archive);
    stream.setVersion(QDataStream::Qt_6_0);
    QColor color;
    stream >> color;
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole ? color : QColor(Qt::red);
}

} // namespace qovelmor
