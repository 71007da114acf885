// SPDX-License-Identifier: MIT
#include "SetupParts.h"
#include "platform/LogFile.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

/// The log file: when it is opened, closed and begun anew, and what is said when it fails.
class SetupLogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void log_staysOpenWhileOneSwitchIsOn();
    void log_startsFreshEachTime();
    void log_opensAtStart_data();
    void log_opensAtStart();
    void log_newPathWhileOpen_makesOnlyTheFolder();
    void log_thatCannotBeMade_isNoted();
    void log_thatFails_isSaidOnce();
    void log_closesAtTheEnd();
};

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no file)");
}

} // namespace

void SetupLogTest::log_staysOpenWhileOneSwitchIsOn()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    QVERIFY(!setup.logFileHandle());

    setup.setLogRSSRead(true);
    const std::shared_ptr<LogFile> handle = setup.logFileHandle();
    QVERIFY(handle);
    QVERIFY(handle->writeLine("first\n"));
    setup.setLogTimer(true);
    QCOMPARE(setup.logFileHandle(), handle);
    setup.setLogRSSRead(false);
    QCOMPARE(setup.logFileHandle(), handle);
    setup.setLogTimer(false);
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(contentOf(parts.logPath()), "first\n"_ba);
}

void SetupLogTest::log_startsFreshEachTime()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    QVERIFY(setup.logFileHandle()->writeLine("old\n"));
    setup.setLogSystem(false);
    QCOMPARE(contentOf(parts.logPath()), "old\n"_ba);
    setup.setLogSystem(true);
    QCOMPARE(contentOf(parts.logPath()), ""_ba);
}

void SetupLogTest::log_opensAtStart_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("no switch") << u"DisplayAuto"_s << false;
    for (const char *key : {"LogRSSRead", "LogRSSDisp", "LogTimer", "LogSystem"})
        QTest::newRow(key) << QString::fromLatin1(key) << true;
}

void SetupLogTest::log_opensAtStart()
{
    QFETCH(QString, key);
    QFETCH(bool, isOpen);

    SetupParts parts;
    parts.defaults.setBool(true, key);
    QCOMPARE(parts.startWithoutBoard().logFileHandle() != nullptr, isOpen);
    QCOMPARE(QFile::exists(parts.logPath()), isOpen);
}

void SetupLogTest::log_newPathWhileOpen_makesOnlyTheFolder()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    setup.setLogFilePath(parts.folder.filePath(u"other/log.txt"_s));
    setup.setLogTimer(true);

    QCOMPARE(setup.logFileHandle()->path(), parts.logPath());
    QVERIFY(QDir(parts.folder.filePath(u"other"_s)).exists());
    QVERIFY(!QFile::exists(setup.logFilePath()));
}

void SetupLogTest::log_thatCannotBeMade_isNoted()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogFilePath(parts.storePath() + u"/log.txt"_s); // a file stands where a folder should
    setup.setDispAuto(true);                                 // makes the store's file
    parts.window.calls.clear();

    setup.setLogSystem(true);
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(setup.logSystem(), true);
    QCOMPARE(parts.window.calls, QStringList{u"show log 0"_s});
    QVERIFY(!parts.window.logNotes.last().isEmpty());
    QVERIFY(parts.window.alerts.isEmpty());

    setup.setLogFilePath(parts.logPath());
    setup.setLogTimer(true);
    QVERIFY(setup.logFileHandle());
    QVERIFY(parts.window.logNotes.last().isEmpty());
}

void SetupLogTest::log_thatFails_isSaidOnce()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.setLogSystem(true);
    parts.window.logNotes.clear();

    std::thread writer([&] {
        for (int i = 0; i < 100; ++i)
            setup.logFileFailed();
    });
    writer.join();
    parts.mainThread.drain();
    setup.logFileFailed();
    parts.mainThread.drain();
    QCOMPARE(parts.window.logNotes.size(), 1);

    setup.setLogSystem(false);
    setup.setLogSystem(true); // another file, another chance to fail
    setup.logFileFailed();
    parts.mainThread.drain();
    QCOMPARE(parts.window.logNotes.size(), 3); // failed, cleared, failed
}

void SetupLogTest::log_closesAtTheEnd()
{
    SetupParts parts;
    Setup &setup = parts.startWithoutBoard();
    setup.applicationWillTerminate(); // nothing open, nothing done
    setup.setLogSystem(true);
    parts.window.calls.clear();
    setup.applicationWillTerminate();
    QVERIFY(!setup.logFileHandle());
    QCOMPARE(parts.window.calls, QStringList{u"show log 0"_s});
    QCOMPARE(setup.logSystem(), true); // logged again by the next run
}

QTEST_GUILESS_MAIN(SetupLogTest)
#include "setuplog_test.moc"
