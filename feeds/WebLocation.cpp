// SPDX-License-Identifier: MIT
#include "feeds/WebLocation.h"

#include "platform/PropertyListFile.h"
#include "platform/WholeFile.h"

#include <QFileInfo>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 largestFile = 64 * 1024;

QStringList linesOf(const QString &path)
{
    return QString::fromUtf8(readWholeFile(path, largestFile).bytes).split(u'\n');
}

/// The value of `key` in a group of lines "[group]", "key=value".
QString entryIn(const QStringList &lines, const QString &group, const QString &key,
                Qt::CaseSensitivity caseSensitivity)
{
    bool isInGroup = false;
    for (const QString &line : lines) {
        const QString text = line.trimmed();
        if (text.startsWith(u'[')) {
            isInGroup = text.compare(u'[' + group + u']', caseSensitivity) == 0;
            continue;
        }
        const qsizetype equals = text.indexOf(u'=');
        if (isInGroup && equals > 0 &&
            text.left(equals).trimmed().compare(key, caseSensitivity) == 0)
            return text.mid(equals + 1).trimmed();
    }
    return u""_s;
}

} // namespace

QString urlInWeblocFile(const QString &path)
{
    const PropertyListContent content =
        readPropertyListFile(path, {.bytes = largestFile, .depth = 8, .elements = 1000});
    const auto *dictionary = content.root ? content.root->get<PropertyDictionary>() : nullptr;
    return dictionary ? dictionary->string(u"URL"_s).value_or(u""_s) : u""_s;
}

QString urlInUrlFile(const QString &path)
{
    return entryIn(linesOf(path), u"InternetShortcut"_s, u"URL"_s, Qt::CaseInsensitive);
}

QString urlInDesktopFile(const QString &path)
{
    const QStringList lines = linesOf(path);
    const auto group = u"Desktop Entry"_s;
    if (entryIn(lines, group, u"Type"_s, Qt::CaseSensitive) != u"Link"_s)
        return u""_s;
    return entryIn(lines, group, u"URL"_s, Qt::CaseSensitive);
}

QString urlInLinkFile(const QString &path)
{
    const QString type = QFileInfo(path).suffix().toLower();
    if (type == u"webloc"_s)
        return urlInWeblocFile(path);
    if (type == u"url"_s)
        return urlInUrlFile(path);
    return type == u"desktop"_s ? urlInDesktopFile(path) : u""_s;
}

QString droppedAddress(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.isEmpty())
        return data.text().trimmed().section(u'\n', 0, 0).trimmed();
    const QUrl &first = urls.first();
    if (first.isLocalFile())
        return urlInLinkFile(first.toLocalFile()).trimmed();
    return QString::fromLatin1(first.toEncoded());
}

} // namespace qovelmor
