// SPDX-License-Identifier: MIT
#include "platform/LogFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

// Lets files grow to `size` bytes only, as a full disk would.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const struct rlimit limit = {size, before_.rlim_max};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    struct rlimit before_ = {};
};

} // namespace

class LogFileTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        path_ = folder_->filePath(u"Logbook.txt"_s);
    }

    void create_startsAFreshFile()
    {
        {
            const auto log = LogFile::create(path_);
            QVERIFY(log && log->writeLine("old\n"));
        }
        const auto log = LogFile::create(path_);
        QVERIFY(log);
        QCOMPARE(log->path(), path_);
        QCOMPARE(contentOf(path_), QByteArray());
        QVERIFY(log->writeLine("one\n") && log->writeLine("two\n"));
        QCOMPARE(contentOf(path_), QByteArray("one\ntwo\n"));
    }

    void create_refusesWhatIsNoPlainFile()
    {
        const QString fifo = folder_->filePath(u"fifo"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QVERIFY(!LogFile::create(fifo));
        QVERIFY(QFile::exists(fifo));
        QVERIFY(!LogFile::create(folder_->path()));
        QVERIFY(!LogFile::create(folder_->filePath(u"none/Logbook.txt"_s)));
        QCOMPARE(::symlink("/dev/full", QFile::encodeName(path_).constData()), 0);
        QVERIFY(!LogFile::create(path_));
        QVERIFY(!LogFile::create(QString()));
    }

    void deletedFile_isMadeAnew()
    {
        const auto log = LogFile::create(path_);
        QVERIFY(log->writeLine("one\n"));
        QVERIFY(QFile::remove(path_));
        QVERIFY(log->writeLine("two\n"));
        QCOMPARE(contentOf(path_), QByteArray("two\n"));
    }

    void replacedFile_isContinued()
    {
        const auto log = LogFile::create(path_);
        QVERIFY(log->writeLine("one\n"));
        QVERIFY(QFile::rename(path_, path_ + u".old"_s));
        QFile edited(path_);
        QVERIFY(edited.open(QIODevice::WriteOnly) && edited.write("edited\n") > 0);
        edited.close();
        QVERIFY(log->writeLine("two\n"));
        QCOMPARE(contentOf(path_), QByteArray("edited\ntwo\n"));
        QCOMPARE(contentOf(path_ + u".old"_s), QByteArray("one\n"));
    }

    void pipeThatSomebodyReads_isNotWritten()
    {
        const auto log = LogFile::create(path_);
        QVERIFY(QFile::remove(path_));
        const QByteArray name = QFile::encodeName(path_);
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        const int reader = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader >= 0);
        QVERIFY(!log->writeLine("one\n"));
        char byte = 0;
        QVERIFY(::read(reader, &byte, 1) <= 0);
        ::close(reader);
    }

    void linkInItsPlace_isNotFollowed()
    {
        const QString other = path_ + u".other"_s;
        const auto log = LogFile::create(path_);
        QVERIFY(log->writeLine("one\n"));
        QVERIFY(QFile::remove(path_));
        QVERIFY(QFile::link(other, path_));
        QVERIFY(!log->writeLine("two\n"));
        QVERIFY(!QFile::exists(other));
    }

    void folderGone_isNoticed()
    {
        QVERIFY(QDir(folder_->path()).mkdir(u"logs"_s));
        const QString path = folder_->filePath(u"logs/Logbook.txt"_s);
        const auto log = LogFile::create(path);
        QVERIFY(log->writeLine("one\n"));
        QVERIFY(QDir(folder_->filePath(u"logs"_s)).removeRecursively());
        QVERIFY(!log->writeLine("two\n"));
        QVERIFY(QDir(folder_->path()).mkdir(u"logs"_s));
        QVERIFY(log->writeLine("three\n"));
        QCOMPARE(contentOf(path), QByteArray("three\n"));
    }

    void fileTurnedIntoADevice_isNotWritten()
    {
        const auto log = LogFile::create(path_);
        QVERIFY(QFile::remove(path_));
        QCOMPARE(::mkfifo(QFile::encodeName(path_).constData(), 0600), 0);
        QVERIFY(!log->writeLine("one\n"));
        QVERIFY(QFile::remove(path_));
        QCOMPARE(::symlink("/dev/null", QFile::encodeName(path_).constData()), 0);
        QVERIFY(!log->writeLine("two\n"));
    }

    void largeFile_isSetAside()
    {
        constexpr int count = 1000;
        constexpr qint64 largest = 4000;
        const auto log = LogFile::create(path_, largest);
        const QString aside = path_ + u".1"_s;
        QByteArray all;
        for (int i = 0; i < count; ++i) {
            const QByteArray line = "line " + QByteArray::number(i) + '\n';
            QVERIFY(log->writeLine(line));
            all += line;
            QVERIFY(QFileInfo(path_).size() <= largest);
            QVERIFY(QFileInfo(aside).size() <= largest);
        }
        // The newest lines, whole and in order, stand in the two files.
        const QByteArray kept = contentOf(aside) + contentOf(path_);
        QVERIFY(kept.size() > largest);
        QVERIFY(all.endsWith(kept));
        QVERIFY(contentOf(path_).endsWith("line 999\n"));
        QCOMPARE(QDir(folder_->path()).entryList(QDir::Files).size(), 2);
    }

    void largeFileThatCannotBeSetAside_losesItsOldLines()
    {
        QVERIFY(QDir(folder_->path()).mkpath(u"Logbook.txt.1/kept"_s));
        const auto log = LogFile::create(path_, 20);
        for (int i = 0; i < 100; ++i) {
            QVERIFY(log->writeLine("0123456789\n"));
            QVERIFY(QFileInfo(path_).size() <= 20);
        }
        QCOMPARE(contentOf(path_), QByteArray("0123456789\n"));
        QVERIFY(QFile::exists(path_ + u".1/kept"_s));
    }

    void lineLargerThanTheBound_isStillOneLine()
    {
        const auto log = LogFile::create(path_, 5);
        QVERIFY(log->writeLine("0123456789\n"));
        QVERIFY(log->writeLine("abcdefghij\n"));
        QCOMPARE(contentOf(path_), QByteArray("abcdefghij\n"));
    }

    void fullDisk_leavesNoHalfLine()
    {
        const auto log = LogFile::create(path_);
        QVERIFY(log->writeLine("one\n"));
        {
            const FileSizeLimit limit(10);
            QVERIFY(!log->writeLine("two and more\n"));
            QCOMPARE(contentOf(path_), QByteArray("one\n"));
        }
        QVERIFY(log->writeLine("three\n"));
        QCOMPARE(contentOf(path_), QByteArray("one\nthree\n"));
    }

    void linesOfManyThreads_neverMix()
    {
        const auto log = LogFile::create(path_);
        constexpr int threads = 4;
        constexpr int lines = 50;
        {
            std::vector<std::jthread> workers;
            for (int thread = 0; thread < threads; ++thread) {
                workers.emplace_back([log, thread] {
                    const QByteArray line(100 + thread, static_cast<char>('a' + thread));
                    for (int i = 0; i < lines; ++i)
                        log->writeLine(line + '\n');
                });
            }
        }
        const QList<QByteArray> written = contentOf(path_).split('\n');
        QCOMPARE(written.size(), threads * lines + 1);
        for (const QByteArray &line : written.first(threads * lines))
            QCOMPARE(line, QByteArray(100 + (line[0] - 'a'), line[0]));
    }
};

QTEST_GUILESS_MAIN(LogFileTest)
#include "logfile_test.moc"
