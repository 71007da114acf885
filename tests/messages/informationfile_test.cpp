// SPDX-License-Identifier: MIT
#include "messages/InformationFile.h"
#include "platform/TextEncoding.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

using Kind = InformationFile::Interleaved::Kind;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

struct InformationHouse
{
    QTemporaryDir folder;
    QString documents = folder.filePath(u"home/Documents/QoVelmorRSS"_s);
    QString userFile = documents + u"/Information.txt"_s;
    QString templateFile = folder.filePath(u"template.txt"_s);
    InformationFile information{documents, templateFile};

    InformationHouse() { writeFile(templateFile, "title\nfirst"); }
    void writeUserFile(const QByteArray &bytes)
    {
        QDir().mkpath(documents);
        writeFile(userFile, bytes);
    }
};

} // namespace

class InformationFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beforeLoadingThereIsNothing()
    {
        InformationHouse house;
        QVERIFY(house.information.infoMessages().isEmpty());
        QCOMPARE(house.information.presentInfo(), 1);
        QCOMPARE(house.information.titleLine(), QString());
        QVERIFY(house.information.interleaved().kind == Kind::Nothing);
    }

    void missingFolderAndFileAreMade()
    {
        InformationHouse house;
        QVERIFY(QFile::setPermissions(house.templateFile, QFileDevice::ReadOwner));
        QVERIFY(house.information.prepareInfoMessages(true));
        QCOMPARE(house.information.infoMessages(), QStringList({u"title"_s, u"first"_s}));
        QVERIFY(QFileInfo(house.userFile).permission(QFileDevice::WriteOwner));
    }

    void usersOwnFileIsKept()
    {
        InformationHouse house;
        house.writeUserFile("mine");
        QVERIFY(house.information.prepareInfoMessages(true));
        QCOMPARE(house.information.infoMessages(), QStringList(u"mine"_s));
        QCOMPARE(house.information.titleLine(), u"mine"_s);
    }

    void lines_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("Shift_JIS")
            << encodeShiftJisLossy(u"お知らせ\n表示"_s) << QStringList{u"お知らせ"_s, u"表示"_s};
        // The two bytes are one character of UTF-8, but none of Japanese.
        QTest::newRow("Shift_JIS that could be UTF-8")
            << QByteArray("\xC2\xB1") << QStringList{u"ﾂｱ"_s};
        QTest::newRow("line end at the end gives an empty line")
            << QByteArray("a\nb\n") << QStringList{u"a"_s, u"b"_s, u""_s};
        QTest::newRow("CR LF keeps the CR")
            << QByteArray("a\r\nb") << QStringList{u"a\r"_s, u"b"_s};
        QTest::newRow("empty file") << QByteArray() << QStringList{u""_s};
        QTest::newRow("empty lines stay")
            << QByteArray("a\n\nb") << QStringList{u"a"_s, u""_s, u"b"_s};
    }

    void lines()
    {
        QFETCH(QByteArray, bytes);
        InformationHouse house;
        house.writeUserFile(bytes);
        QVERIFY(house.information.prepareInfoMessages(true));
        QTEST(house.information.infoMessages(), "lines");
    }

    void droppingLeavesOneEmptyLine()
    {
        InformationHouse house;
        QVERIFY(house.information.prepareInfoMessages(true));
        QVERIFY(house.information.prepareInfoMessages(false));
        QCOMPARE(house.information.infoMessages(), QStringList(QString()));
        QVERIFY(house.information.interleaved().kind == Kind::Nothing);
    }

    void droppingTouchesNoFile()
    {
        InformationHouse house;
        QVERIFY(house.information.prepareInfoMessages(false));
        QVERIFY(!QFileInfo::exists(house.documents));
    }

    void linesTakeTurnsWithoutTheTitle()
    {
        InformationHouse house;
        house.writeUserFile("T\nA\n\nB");
        QVERIFY(house.information.prepareInfoMessages(true));
        QStringList turns;
        for (int i = 0; i < 5; ++i) {
            turns.append(house.information.interleaved().line);
            house.information.advance();
        }
        QCOMPARE(turns, QStringList({u"A"_s, u""_s, u"B"_s, u"A"_s, u""_s}));
    }

    void loadingBeginsAgainAtLineOne()
    {
        InformationHouse house;
        house.writeUserFile("T\nA\nB");
        QVERIFY(house.information.prepareInfoMessages(true));
        house.information.advance();
        QCOMPARE(house.information.presentInfo(), 2);
        QVERIFY(house.information.prepareInfoMessages(true));
        QCOMPARE(house.information.presentInfo(), 1);
    }

    // Loading and taking turns keep the index inside; a test alone can move it out.
    void indexBehindTheLinesIsAnError_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("isError");
        QTest::newRow("last line") << 2 << false;
        QTest::newRow("behind it") << 3 << true;
        QTest::newRow("negative") << -1 << true;
    }

    void indexBehindTheLinesIsAnError()
    {
        QFETCH(int, index);
        QFETCH(bool, isError);
        InformationHouse house;
        house.writeUserFile("T\nA\nB");
        QVERIFY(house.information.prepareInfoMessages(true));
        house.information.setPresentInfo(index);
        QCOMPARE(house.information.interleaved().kind == Kind::IndexError, isError);
    }

    // Shown as it stands it would be a line of wrong characters on the sign.
    void textInAnotherEncodingIsNotRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("UTF-8") << u"お知らせです\n本日休業"_s.toUtf8();
        // Every pair of these bytes is a character of Shift_JIS too.
        QTest::newRow("UTF-8 that could be Shift_JIS") << u"お知らせ"_s.toUtf8();
        QTest::newRow("UTF-8 with its mark") << "\xEF\xBB\xBF" + u"お知らせ"_s.toUtf8();
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE\x4A\x30",
                                              4); // "お" behind the byte order mark
        QTest::newRow("half a character at the end") << QByteArray("\x82\xA8\x82");
    }

    void textInAnotherEncodingIsNotRead()
    {
        QFETCH(QByteArray, bytes);
        InformationHouse house;
        house.writeUserFile(bytes);
        QVERIFY(!house.information.prepareInfoMessages(true));
        QVERIFY(house.information.infoMessages().isEmpty());
    }

    void whatIsNoPlainSmallFileIsNotRead_data()
    {
        using Make = std::function<void(const QString &)>;
        QTest::addColumn<Make>("make");
        QTest::newRow("folder") << Make([](const QString &path) { QDir().mkpath(path); });
        QTest::newRow("pipe") << Make([](const QString &path) {
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        });
        QTest::newRow("endless device")
            << Make([](const QString &path) { QVERIFY(QFile::link(u"/dev/zero"_s, path)); });
        QTest::newRow("one byte too large") << Make([](const QString &path) {
            writeFile(path, QByteArray(InformationFile::sizeLimit + 1, 'x'));
        });
    }

    void whatIsNoPlainSmallFileIsNotRead()
    {
        QFETCH(std::function<void(const QString &)>, make);
        InformationHouse house;
        QDir().mkpath(house.documents);
        make(house.userFile);
        QVERIFY(!house.information.prepareInfoMessages(true));
        QVERIFY(house.information.infoMessages().isEmpty());
        QCOMPARE(house.information.titleLine(), QString());
        QVERIFY(house.information.interleaved().kind == Kind::Nothing);
    }

    void largestFileIsRead()
    {
        InformationHouse house;
        house.writeUserFile(QByteArray(InformationFile::sizeLimit, 'x'));
        QVERIFY(house.information.prepareInfoMessages(true));
    }

    void missingTemplateGivesNoLines()
    {
        InformationHouse house;
        QVERIFY(QFile::remove(house.templateFile));
        QVERIFY(!house.information.prepareInfoMessages(true));
        QVERIFY(house.information.infoMessages().isEmpty());
    }
};

QTEST_APPLESS_MAIN(InformationFileTest)
#include "informationfile_test.moc"
