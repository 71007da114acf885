// SPDX-License-Identifier: MIT
// The user's documents spoilt in every way while the real program runs on them: the pass is shown,
// the store stays whole, and the program ends in order.
#include "RunningProgram.h"
#include "tests/support/HttpServer.h"
#include "tests/support/ProcessUse.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <functional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsSoon = 60s;
constexpr int happensSoon = 60'000; // ms, on a busy machine
constexpr long mostMemory = 600;    // MiB, all of the program

using Spoiler = std::function<bool(const QString &path)>;

Spoiler linkTo(const char *target)
{
    return [target](const QString &path) { return ::symlink(target, qPrintable(path)) == 0; };
}

Spoiler holds(const QByteArray &bytes)
{
    return [bytes](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
}

std::vector<std::pair<const char *, Spoiler>> spoilers()
{
    return {
        {"a pipe", [](const QString &path) { return ::mkfifo(qPrintable(path), 0600) == 0; }},
        {"a folder", [](const QString &path) { return QDir().mkpath(path + u"/inside"_s); }},
        {"a gigabyte",
         [](const QString &path) {
             return holds({})(path) && QFile::resize(path, qint64{1} << 30);
         }},
        {"/dev/zero", linkTo("/dev/zero")},
        {"/dev/full", linkTo("/dev/full")},
        {"a link to nothing", linkTo("/nowhere/at/all")},
        {"a link to itself", [](const QString &path) { return linkTo(qPrintable(path))(path); }},
        {"control characters",
         holds(QByteArray::fromHex("000102030405060708090a0b0c0d0e0f1b9b").repeated(50))},
        {"bytes that are no Shift_JIS", holds(QByteArray(500, '\xff'))},
        {"half a character at the end", holds(QByteArray("\x93\xfa\n\x96"))},
    };
}

} // namespace

class FileFaultsTest : public QObject
{
    Q_OBJECT

private:
    HttpServer server_;

    void addFeed(RunningProgram &program)
    {
        program.addFeed(server_.address("/feed"), u"駅"_s, 2);
        program.set(u"ScrollSpeed"_s, 0); // a line goes by at once
    }

    /// A row for each name and for each spoiler, or for each third of them.
    static void addRows(const QStringList &names, std::size_t step = 1)
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("number");
        const auto list = spoilers();
        for (const QString &name : names) {
            for (std::size_t i = 0; i < list.size(); i += step)
                QTest::addRow("%s: %s", qPrintable(name), list[i].first)
                    << name << static_cast<int>(i);
        }
    }

private Q_SLOTS:
    void initTestCase()
    {
        server_.route("/feed",
                      HttpServer::document("<rss version='2.0'><channel><title>t</title><item>"
                                           "<title>a</title></item></channel></rss>"));
    }

    void document_spoilt_aPassIsShown_data() { addRows({u"Information.txt"_s, u"Logbook.txt"_s}); }
    void document_spoilt_aPassIsShown()
    {
        QFETCH(QString, name);
        QFETCH(int, number);
        RunningProgram program;
        addFeed(program);
        program.set(u"DispInfoMessages"_s, true);
        QVERIFY(QDir().mkpath(program.documents()));
        const QString path = program.documents() + u'/' + name;
        QVERIFY(spoilers()[static_cast<std::size_t>(number)].second(path));
        const int hits = server_.hits("/feed");
        QVERIFY(program.start({u"--once"_s}));
        QCOMPARE(program.waitForEnd(endsSoon), 0);
        QVERIFY(server_.hits("/feed") > hits);
        QVERIFY(program.isStoreWhole());
        if (name == u"Information.txt"_s)
            QVERIFY(program.logBook().contains(u" RSS表示:a【駅】\n"_s));
        // One complaint about the file, not one for each line.
        QVERIFY2(program.errors().count('\n') < 20, program.errors().constData());
    }

    void documentFolderThatIsAFile_aPassIsShown()
    {
        RunningProgram program;
        addFeed(program);
        QVERIFY(QDir().mkpath(QFileInfo(program.documents()).path()));
        QVERIFY(holds("x")(program.documents()));
        QVERIFY(program.start({u"--once"_s}));
        QCOMPARE(program.waitForEnd(endsSoon), 0);
    }

    void logBook_deletedAndReplacedWhileOpen_goesOn()
    {
        RunningProgram program;
        addFeed(program);
        program.set(u"DisplayAuto"_s, true);
        QVERIFY(program.start());
        const QString path = program.documents() + u"/Logbook.txt"_s;
        for (int round = 0; round < 3; ++round) {
            QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS表示:"_s), happensSoon);
            QVERIFY(QFile::remove(path));
        }
        QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS表示:"_s), happensSoon);
        // Lines of a book that was replaced by a pipe or a folder are dropped, and nothing waits.
        QVERIFY(QFile::remove(path));
        QVERIFY(::mkfifo(qPrintable(path), 0600) == 0 || QFile::remove(path));
        const int hits = server_.hits("/feed");
        QTRY_VERIFY_WITH_TIMEOUT(server_.hits("/feed") >= hits + 2, happensSoon);
        QVERIFY(isSanitized() || ProcessUse(program.processId()).memoryKiB() / 1024 < mostMemory);
        QCOMPARE(program.terminate(endsSoon), 0);
        QVERIFY(program.isStoreWhole());
    }

    void fontsSpoilt_aPassIsShown_data() { addRows({u"shnmk16.fnt"_s}, 3); }
    void fontsSpoilt_aPassIsShown()
    {
        QFETCH(QString, name);
        QFETCH(int, number);
        QTemporaryDir fonts;
        QVERIFY(spoilers()[static_cast<std::size_t>(number)].second(fonts.filePath(name)));
        RunningProgram program;
        addFeed(program);
        program.setVariable(u"QOVELMORRSS_RESOURCES"_s, fonts.path());
        program.set(u"UseBitmapFont"_s, true);
        QVERIFY(program.start({u"--once"_s}));
        QCOMPARE(program.waitForEnd(endsSoon), 0);
        QVERIFY(program.logBook().contains(u" RSS表示:a【駅】\n"_s));
        QVERIFY2(program.errors().count('\n') < 20, program.errors().constData());
    }
};

QTEST_GUILESS_MAIN(FileFaultsTest)
#include "filefaults_test.moc"
