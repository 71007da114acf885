// SPDX-License-Identifier: MIT
#include "platform/Localization.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

class LocalizationTest : public QObject
{
    Q_OBJECT

    QByteArray table_;

private Q_SLOTS:
    void initTestCase()
    {
        QFile file(qEnvironmentVariable("QOVELMOR_SOURCE_DIR") +
                   u"/resources/localization/ja.json"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        table_ = file.readAll();
    }

    void everyKey_hasItsText()
    {
        QJsonParseError error;
        const QJsonObject texts = QJsonDocument::fromJson(table_, &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QVERIFY(!texts.isEmpty());
        for (auto entry = texts.begin(); entry != texts.end(); ++entry) {
            QVERIFY2(!entry.value().toString().isEmpty(), qPrintable(entry.key()));
            QCOMPARE(localized(entry.key()), entry.value().toString());
        }
    }

    // A reader of JSON keeps one of two entries of the same key without a word.
    void noKey_isThereTwice()
    {
        const QRegularExpression line(u"^  \"([^\"]+)\":"_s, QRegularExpression::MultilineOption);
        QSet<QString> keys;
        for (const auto &match : line.globalMatch(QString::fromUtf8(table_))) {
            QVERIFY2(!keys.contains(match.captured(1)), qPrintable(match.captured(1)));
            keys.insert(match.captured(1));
        }
        QCOMPARE(keys.size(), QJsonDocument::fromJson(table_).object().size());
    }

    void unknownKey_isItsOwnText()
    {
        QCOMPARE(localized(u"Communication test to LED board is succeed."_s),
                 u"Communication test to LED board is succeed."_s);
        QCOMPARE(localized(QString()), QString());
        QCOMPARE(localized(u"Understand"_s), u"了解"_s);
    }
};

QTEST_APPLESS_MAIN(LocalizationTest)
#include "localization_test.moc"
