// SPDX-License-Identifier: MIT
// The power switch: the real program is killed at any moment while feeds are edited and read, and
// each time the store holds the list of before or after the edit, whole.
#include "RunningProgram.h"
#include "platform/UserDefaults.h"
#include "tests/support/HttpServer.h"

#include <QTest>

#include <random>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int feedCount = 30;
constexpr int happensSoon = 60'000; // ms, on a busy machine

QByteArray feed(int number)
{
    return "<rss version='2.0'><channel><title>t</title><item><title>a" +
           QByteArray::number(number) + "</title></item></channel></rss>";
}

QString listIn(const UserDefaults &store)
{
    QStringList lines;
    for (const PropertyValue &entry :
         store.arrayForKey(u"RSSSiteAddresses"_s).value_or(PropertyArray())) {
        const auto *feed = entry.get<PropertyDictionary>();
        const PropertyValue *validate = feed ? feed->find(u"RSSValidate"_s) : nullptr;
        const PropertyValue *address = feed ? feed->find(u"RSSAddressString"_s) : nullptr;
        if (validate && address)
            lines << (validate->toBool() ? u'+' : u'-') + address->toText().value_or(QString());
    }
    return lines.join(u' ');
}

} // namespace

class KillsTest : public QObject
{
    Q_OBJECT

private:
    int kills_ = std::max(qEnvironmentVariableIntValue("QOVELMOR_KILLS"), 20);
    std::mt19937 random_{static_cast<unsigned>(qEnvironmentVariableIntValue("QOVELMOR_SEED"))};
    HttpServer server_;

    /// Edits go on until the switch is thrown; gives what was said.
    QByteArray runAndKill(RunningProgram &program, const QStringList &arguments)
    {
        if (!program.startAgain(arguments))
            return {};
        if (!QTest::qWaitFor([&] { return program.output().contains("do "); }, happensSoon))
            return {};
        QTest::qWait(static_cast<int>(random_() % 300)); // any moment: the purpose of the test
        program.kill();
        const QByteArray said = program.output();
        program.forgetOutput();
        return said;
    }

private Q_SLOTS:
    void initTestCase()
    {
        qInfo("%d kills, seed %d (QOVELMOR_KILLS, QOVELMOR_SEED)", kills_,
              qEnvironmentVariableIntValue("QOVELMOR_SEED"));
        for (int i = 0; i < feedCount; ++i)
            server_.route("/" + QByteArray::number(i), HttpServer::document(feed(i)));
        for (int i = 0; i < 5000; ++i)
            server_.route("/new" + QByteArray::number(i), HttpServer::document(feed(i)));
    }

    void list_isNeverTornAndNeverLost();
    void writerThatCutsTheFile_isCaught();
};

void KillsTest::list_isNeverTornAndNeverLost()
{
    RunningProgram program;
    program.setProgram(u"tests/edited_program"_s);
    for (int i = 0; i < feedCount; ++i)
        program.addFeed(server_.address("/" + QByteArray::number(i)), u"名%1"_s.arg(i), 2);
    program.set(u"DisplayAuto"_s, true);
    program.set(u"ScrollSpeed"_s, 0);
    program.set(u"a key of another version"_s, u"kept"_s);
    QVERIFY(program.writeProfile());
    QString before = listIn(UserDefaults(program.profilePath()));
    int edits = 0;
    int caughtInAnEdit = 0;
    for (int i = 0; i < kills_; ++i) {
        const QByteArray said =
            runAndKill(program, {server_.address(""), QString::number(random_())});
        QVERIFY2(!said.isEmpty(), program.errors().constData());
        QStringList allowed{before};
        for (const QByteArray &line : said.split('\n')) {
            const bool isWhole = said.contains(line + '\n');
            if (line.startsWith("do ") && isWhole) {
                allowed << QString::fromUtf8(line.mid(3));
            } else if (line.startsWith("done ") && isWhole) {
                allowed = {QString::fromUtf8(line.mid(5))}; // what a person sees by now
                ++edits;
            }
        }
        caughtInAnEdit += allowed.size() > 1 ? 1 : 0;
        const UserDefaults store(program.profilePath());
        QVERIFY2(store.openReport().message.isEmpty(), qPrintable(store.openReport().message));
        before = listIn(store);
        if (!allowed.contains(before))
            qWarning("kill %d:\n%s\nnone of\n%s", i, qPrintable(before),
                     qPrintable(allowed.join(u'\n')));
        QVERIFY(allowed.contains(before));
        QCOMPARE(store.stringForKey(u"a key of another version"_s), u"kept"_s);
    }
    qInfo("%d kills, %d of them in an edit; %d edits; 0 torn, 0 lost", kills_, caughtInAnEdit,
          edits);
    const QDir folder(QFileInfo(program.profilePath()).path());
    QVERIFY(folder.entryList({u"*.tmp"_s}, QDir::Files | QDir::Hidden).size() <=
            1); // the last one's
    QVERIFY(folder.entryList({u"*broken*"_s}).isEmpty());
}

// The control: these eyes see a torn file.
void KillsTest::writerThatCutsTheFile_isCaught()
{
    RunningProgram program;
    program.setProgram(u"tests/edited_program"_s);
    for (int i = 0; i < 2000; ++i)
        program.addFeed(u"http://127.0.0.1/%1"_s.arg(i), u"名"_s, 2);
    QVERIFY(program.writeProfile());
    int torn = 0;
    for (int i = 0; i < 50 && torn == 0; ++i) {
        QVERIFY(!runAndKill(program, {u"torn"_s}).isEmpty());
        const UserDefaults store(program.profilePath());
        torn += store.openReport().wasBroken || listIn(store).count(u' ') != 1999 ? 1 : 0;
    }
    QVERIFY(torn > 0);
}

QTEST_GUILESS_MAIN(KillsTest)
#include "kills_test.moc"
