// SPDX-License-Identifier: MIT
#include "platform/Localization.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

// Outside the namespace: a static library's resources are registered by hand.
static void registerResources()
{
    Q_INIT_RESOURCE(qovelmor);
}

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

QHash<QString, QString> readTable()
{
    registerResources();
    QFile file(u":/localization/ja.json"_s);
    QHash<QString, QString> texts;
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
    for (auto entry = table.begin(); entry != table.end(); ++entry)
        texts.insert(entry.key(), entry.value().toString());
    return texts;
}

} // namespace

QString localized(const QString &key)
{
    static const QHash<QString, QString> table = readTable();
    return table.value(key, key);
}

QString spokenText(const QString &key)
{
    static const QRegularExpression marks(u"\\(&.\\)|…"_s);
    return localized(key).remove(marks);
}

} // namespace qovelmor
