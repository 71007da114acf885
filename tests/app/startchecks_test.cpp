// SPDX-License-Identifier: MIT
#include "app/StartChecks.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

int markPipe[2];

// Stands for the destructor of something global that another thread may still be using.
void destroySomethingGlobal()
{
    [[maybe_unused]] const auto written = ::write(markPipe[1], "x", 1);
}

struct End
{
    int status = -1;
    bool hasDestroyed = false;
    QByteArray errors;
};

/// What becomes of a process that calls exit(0) within `life`.
template <typename Life>
End endOf(Life life)
{
    int errorPipe[2];
    if (::pipe(markPipe) != 0 || ::pipe(errorPipe) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(errorPipe[1], STDERR_FILENO);
        std::atexit(&destroySomethingGlobal);
        life();
        ::_exit(99);
    }
    ::close(markPipe[1]);
    ::close(errorPipe[1]);
    int status = 0;
    ::waitpid(child, &status, 0);
    End end;
    char bytes[1000];
    end.hasDestroyed = ::read(markPipe[0], bytes, 1) == 1;
    const auto count = ::read(errorPipe[0], bytes, sizeof bytes);
    end.errors = QByteArray(bytes, std::max(count, ssize_t(0)));
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ::close(markPipe[0]);
    ::close(errorPipe[0]);
    return end;
}

} // namespace

class StartChecksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitWithinTheGuard_destroysNothing();
    void exitAfterTheGuard_isAnOrdinaryOne();
    void toolkitsOwnLine_isLeftOutAndOthersAreNot();
};

void StartChecksTest::exitWithinTheGuard_destroysNothing()
{
    const End end = endOf([] {
        const ExitsAtOnce exitsAtOnce;
        std::exit(0);
    });
    QCOMPARE(end.status, 1);
    QVERIFY(!end.hasDestroyed);
    QCOMPARE(end.errors, QByteArray("qovelmorrss: the display has gone away; the program ends.\n"));
}

void StartChecksTest::exitAfterTheGuard_isAnOrdinaryOne()
{
    const End end = endOf([] {
        {
            const ExitsAtOnce exitsAtOnce;
        }
        std::atexit([] { ::_exit(7); }); // before what is global in the test itself
        std::atexit(&destroySomethingGlobal);
        std::exit(0);
    });
    QCOMPARE(end.status, 7);
    QVERIFY(end.hasDestroyed);
    QCOMPARE(end.errors, QByteArray());
}

void StartChecksTest::toolkitsOwnLine_isLeftOutAndOthersAreNot()
{
    QStringList said;
    static QStringList *sink = nullptr;
    sink = &said;
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { *sink << text; });
    {
        const ExitsAtOnce exitsAtOnce;
        qWarning("The X11 connection broke (error 1). Did the X11 server die?");
        qWarning("another remark");
    }
    qWarning("a remark after it");
    qInstallMessageHandler(before);
    QCOMPARE(said, (QStringList{u"another remark"_s, u"a remark after it"_s}));
}

QTEST_GUILESS_MAIN(StartChecksTest)
#include "startchecks_test.moc"
