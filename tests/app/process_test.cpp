// SPDX-License-Identifier: MIT
// The program as a process among others: without what it would like to have, told to end in every
// way, and started twice.
#include "RunningProgram.h"
#include "platform/PropertyListFile.h"
#include "tests/support/HttpServer.h"
#include "tests/support/OwnMounts.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

#include <signal.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto endsSoon = 30s;      // on a busy machine
constexpr auto endsInOrder = 2s;    // after a signal, without a board
constexpr int happensSoon = 30'000; // ms

QStringList keysIn(const QString &storePath)
{
    QStringList keys;
    const auto root = readPropertyListFile(storePath).root;
    if (const auto *values = root ? root->get<PropertyDictionary>() : nullptr) {
        for (const PropertyEntry &entry : values->entries())
            keys.append(entry.key);
    }
    return keys;
}

/// Whether the process has asked to be told of SIGTERM: then its event loop is about to run.
bool isListening(const RunningProgram &program)
{
    QFile file(u"/proc/%1/status"_s.arg(program.processId()));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("SigCgt:"))
            return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
    }
    return false;
}

} // namespace

class ProcessTest : public QObject
{
    Q_OBJECT

private:
    HttpServer server_;

    void addFeed(RunningProgram &program) { program.addFeed(server_.address("/feed"), u"駅"_s, 2); }

private Q_SLOTS:
    void initTestCase()
    {
        server_.route("/feed",
                      HttpServer::document("<rss version='2.0'><channel><title>t</title>"
                                           "<item><title>a</title></item></channel></rss>"));
    }

    void noDisplay_isOneLineAndStatus1_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<QString>("display");
        QTest::newRow("none named") << QString() << QString();
        QTest::newRow("one that is not there") << QString() << u":4077"_s;
        QTest::newRow("a name that is none") << QString() << u"nonsense"_s;
        QTest::newRow("xcb without one") << u"xcb"_s << QString();
        QTest::newRow("a platform that is not there") << u"nonsense"_s << QString();
    }
    void noDisplay_isOneLineAndStatus1()
    {
        QFETCH(QString, platform);
        QFETCH(QString, display);
        RunningProgram program;
        for (const auto &name : {u"QT_QPA_PLATFORM"_s, u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
            program.removeVariable(name);
        if (!platform.isEmpty())
            program.setVariable(u"QT_QPA_PLATFORM"_s, platform);
        if (!display.isEmpty())
            program.setVariable(u"DISPLAY"_s, display);
        QVERIFY(program.start());
        QCOMPARE(program.waitForEnd(endsSoon), 1);
        QVERIFY2(program.errors().startsWith("qovelmorrss: no display"),
                 program.errors().constData());
        QCOMPARE(program.errors().count('\n'), 1);
    }

    void signal_endsInOrder_data()
    {
        QTest::addColumn<QList<int>>("signals");
        QTest::newRow("SIGTERM") << QList<int>{SIGTERM};
        QTest::newRow("SIGINT") << QList<int>{SIGINT};
        QTest::newRow("SIGHUP") << QList<int>{SIGHUP};
        QTest::newRow("all of them, twice")
            << QList<int>{SIGHUP, SIGTERM, SIGINT, SIGINT, SIGTERM, SIGHUP};
    }
    void signal_endsInOrder()
    {
        QFETCH(QList<int>, signals);
        RunningProgram program;
        addFeed(program);
        program.set(u"DisplayAuto"_s, true);
        QVERIFY(program.start());
        QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS表示:"_s), happensSoon);
        for (const int number : signals)
            program.sendSignal(number);
        QCOMPARE(program.waitForEnd(endsInOrder), 0);
        QVERIFY(program.logBook().endsWith(u" システム:QoVelmarRSS終了\n"_s));
        QVERIFY(program.isStoreWhole());
    }

    void startAndQuit_writeNoDefaults()
    {
        RunningProgram program;
        addFeed(program);
        program.set(u"DisplayAuto"_s, true);
        QVERIFY(program.writeProfile());
        QStringList expected = keysIn(program.profilePath());
        QVERIFY(!expected.isEmpty());
        QVERIFY(program.startAgain());
        QTRY_VERIFY_WITH_TIMEOUT(program.logBook().contains(u" RSS表示:"_s), happensSoon);
        QCOMPARE(program.terminate(endsSoon), 0);
        // What was read, and where the windows stood.
        expected << u"LastRSSMessages"_s << u"NoDateMessages"_s << u"MainWindowGeometry"_s
                 << u"LEDWindowGeometry"_s << u"LEDWindowDrawerHeight"_s
                 << u"LEDWindowDrawerOpen"_s;
        for (const QString &key : keysIn(program.profilePath()))
            QVERIFY2(expected.contains(key), qPrintable(key));
    }

    void severalStartsAtOnce_leaveOneProgram()
    {
        RunningProgram first;
        addFeed(first);
        QVERIFY(first.writeProfile());
        std::vector<std::unique_ptr<RunningProgram>> others;
        for (int i = 0; i < 4; ++i) {
            others.push_back(std::make_unique<RunningProgram>());
            others.back()->setVariable(u"HOME"_s, first.home());
            others.back()->setVariable(u"XDG_CONFIG_HOME"_s, first.home() + u"/config"_s);
        }
        QVERIFY(first.startAgain());
        for (const auto &other : others)
            QVERIFY(other->startAgain());
        std::vector<RunningProgram *> all{&first};
        for (const auto &other : others)
            all.push_back(other.get());
        const auto running = [&all] {
            return std::count_if(all.begin(), all.end(),
                                 [](RunningProgram *program) { return program->isRunning(); });
        };
        QTRY_COMPARE_WITH_TIMEOUT(running(), 1, happensSoon);
        for (RunningProgram *program : all) {
            if (program->isRunning()) {
                QTRY_VERIFY_WITH_TIMEOUT(isListening(*program), happensSoon);
                QCOMPARE(program->terminate(endsSoon), 0);
            } else {
                QCOMPARE(program->waitForEnd(endsSoon), 0);
                QCOMPARE(program->errors(),
                         QByteArray("qovelmorrss: the program already runs with this profile.\n"));
            }
        }
        QVERIFY(first.isStoreWhole());
        QCOMPARE(first.logBook().count(u"QoVelmarRSS開始"_s), 1);
    }

    void withoutSoundDeviceAndBus_aPassIsShown()
    {
        RunningProgram program;
        addFeed(program);
        program.set(u"PlayArrivalSound"_s, true);
        program.set(u"ArrivalSoundName"_s, u"Glass"_s);
        for (const auto &name : {u"PULSE_SERVER"_s, u"PIPEWIRE_REMOTE"_s})
            program.setVariable(name, u"unix:/nowhere"_s);
        for (const auto &name : {u"DBUS_SESSION_BUS_ADDRESS"_s, u"DBUS_SYSTEM_BUS_ADDRESS"_s})
            program.setVariable(name, u"unix:path=/nowhere"_s);
        program.setVariable(u"ALSA_CONFIG_PATH"_s, u"/nowhere"_s);
        QVERIFY(program.start({u"--once"_s}));
        QCOMPARE(program.waitForEnd(endsSoon), 0);
        QVERIFY(program.logBook().contains(u" RSS表示:a【駅】\n"_s));
    }

    void homeThatCannotBe_stillRunsAndEnds_data()
    {
        QTest::addColumn<QString>("home");
        QTest::newRow("a place where nothing can be made") << u"/proc/nobody"_s;
        QTest::newRow("a file") << u"/etc/passwd"_s;
        QTest::newRow("a device") << u"/dev/null"_s;
        QTest::newRow("an endless name") << u'/' + QString(5000, u'x');
    }
    void homeThatCannotBe_stillRunsAndEnds()
    {
        QFETCH(QString, home);
        RunningProgram program;
        program.setVariable(u"HOME"_s, home);
        program.removeVariable(u"XDG_CONFIG_HOME"_s);
        // The font library forgets what it has allocated for a path that is too long.
        program.setVariable(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        QVERIFY(program.startAgain());
        QTRY_VERIFY_WITH_TIMEOUT(isListening(program) || !program.isRunning(), happensSoon);
        QTest::qWait(500); // the launch: nothing to wait for when nothing can be written
        QVERIFY2(program.isRunning(), program.errors().constData());
        QCOMPARE(program.terminate(endsSoon), 0);
    }

    void readOnlyHome_stillShowsTheFeeds()
    {
        RunningProgram program;
        addFeed(program);
        program.set(u"DisplayAuto"_s, true);
        QVERIFY(program.writeProfile());
        const QByteArray home = program.home().toLocal8Bit();
        if (!makeFolderReadOnly(home))
            QSKIP("NOT TESTED HERE: this user may not mount anything");
        const int hits = server_.hits("/feed");
        const bool isStarted = program.startAgain();
        const bool isRead =
            QTest::qWaitFor([&] { return server_.hits("/feed") > hits; }, happensSoon);
        QTest::qWait(500);
        const bool isRunning = program.isRunning();
        const auto status = program.terminate(endsSoon);
        ::umount(home);
        QVERIFY(isStarted && isRead && isRunning);
        QCOMPARE(status, 0);
        QVERIFY(program.isStoreWhole());
    }
};

int main(int argc, char **argv)
{
    enterOwnMounts(); // where that is refused, a test says so
    const QCoreApplication application(argc, argv);
    ProcessTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "process_test.moc"
