// SPDX-License-Identifier: MIT
#include "platform/PropertyListFile.h"
#include "platform/StoreFile.h"
#include "tests/support/FailingCalls.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <map>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void fill(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

PropertyDictionary generation(int number)
{
    return {{u"generation"_s, number}, {u"list"_s, PropertyArray{u"一"_s, u"二"_s}}};
}

// A full file system that says it took everything.
class LyingCalls final : public FileCalls
{
public:
    ssize_t write(int descriptor, const void *bytes, std::size_t count) override
    {
        FileCalls::write(descriptor, bytes, count / 2);
        return static_cast<ssize_t>(count);
    }
};

// A file system without hard links.
class LinklessCalls final : public FileCalls
{
public:
    int link(const char *, const char *) override
    {
        errno = EPERM;
        return -1;
    }
};

} // namespace

class StoreFileTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;

    StoreFile::Loaded load() { return StoreFile(path_, FileCalls::system()).load(); }

    void saveTwice()
    {
        StoreFile file(path_, FileCalls::system());
        file.load();
        QCOMPARE(file.save(generation(1)), 0);
        QCOMPARE(file.save(generation(2)), 0);
    }

    QStringList names(const QStringList &patterns = {}) const
    {
        return QDir(folder_->path()).entryList(patterns, QDir::Files | QDir::Hidden);
    }

    void failEachCall(int error, bool isCut);

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        path_ = folder_->filePath(u"Store.plist"_s);
    }

    void save_keepsTheContentBefore()
    {
        saveTwice();
        QVERIFY(load().values == generation(2));
        QCOMPARE(names(), (QStringList{u"Store.plist"_s, u"Store.plist.bak"_s}));
        QCOMPARE(parsePropertyList(contentOf(path_ + u".bak"_s)),
                 std::optional<PropertyValue>(generation(1)));
    }

    void newFile_isTheOwnersAndAnOldOneKeepsItsMode()
    {
        saveTwice();
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(path_).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, 0600u);
        QCOMPARE(::chmod(QFile::encodeName(path_).constData(), 0640), 0);
        saveTwice();
        QCOMPARE(::stat(QFile::encodeName(path_).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, 0640u);
    }

    void eachFailingCall_leavesOldOrNewContent_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("isCut");
        QTest::newRow("disk full") << ENOSPC << false;
        QTest::newRow("read error") << EIO << false;
        QTest::newRow("read-only") << EROFS << false;
        QTest::newRow("power cut") << EIO << true;
    }

    void eachFailingCall_leavesOldOrNewContent()
    {
        QFETCH(int, error);
        QFETCH(bool, isCut);
        failEachCall(error, isCut);
    }

    void interruptedWrite_isTakenUpAgain()
    {
        FailingCalls calls(2, EINTR); // the first write
        StoreFile file(path_, calls);
        QCOMPARE(file.save(generation(1)), 0);
        QVERIFY(calls.hasFailed());
        QVERIFY(load().values == generation(1));
    }

    void storeThatCouldNotBeReadAgain_isNotWritten()
    {
        saveTwice();
        StoreFile file(path_, FileCalls::system());
        file.load();
        QCOMPARE(file.save({{u"huge"_s, QString(100 * 1024 * 1024, u'x')}}), EFBIG);
        QVERIFY(load().values == generation(2));
    }

    // The first-seen memory of a busy reader, within the time of a blink or two.
    void largeStore_isSavedAndLoaded()
    {
        PropertyArray messages;
        for (int i = 0; i < 20'000; ++i)
            messages.push_back(PropertyDictionary{{u"HeadlineString"_s, u"見出し %1"_s.arg(i)},
                                                  {u"DateString"_s, u"11/21 12:00"_s},
                                                  {u"LinkString"_s, u"http://example.jp/a"_s},
                                                  {u"NewRSSMessage"_s, true}});
        const PropertyDictionary values{{u"LastRSSMessages"_s, std::move(messages)}};
        const std::clock_t begin = std::clock(); // processor time: others may use the machine too
        StoreFile file(path_, FileCalls::system());
        QCOMPARE(file.save(values), 0);
        QVERIFY(load().values == values);
        QVERIFY(std::clock() - begin < 4 * CLOCKS_PER_SEC);
    }

    void shortWriteReportedAsWhole_isNoticed()
    {
        saveTwice();
        LyingCalls calls;
        StoreFile file(path_, calls);
        file.load();
        QCOMPARE(file.save(generation(3)), ENOSPC);
        QVERIFY(names({u"*.tmp"_s}).isEmpty()); // opening would clean up
        QVERIFY(load().values == generation(2));
    }

    // Else a power cut could leave the new name with nothing behind it.
    void contentIsOnTheDiskBeforeItTakesTheName()
    {
        class OrderedCalls final : public FileCalls
        {
        public:
            ssize_t write(int descriptor, const void *bytes, std::size_t count) override
            {
                isUnsynced_ = true;
                return FileCalls::write(descriptor, bytes, count);
            }
            int sync(int descriptor) override
            {
                isUnsynced_ = false;
                return FileCalls::sync(descriptor);
            }
            int rename(const char *from, const char *to) override
            {
                ++(isUnsynced_ ? tooEarly : inTime);
                return FileCalls::rename(from, to);
            }
            int tooEarly = 0;
            int inTime = 0;

        private:
            bool isUnsynced_ = false;
        } calls;
        StoreFile file(path_, calls);
        QCOMPARE(file.save(generation(1)), 0);
        QCOMPARE(file.save(generation(2)), 0);
        QCOMPARE(calls.tooEarly, 0);
        QVERIFY(calls.inTime >= 2);
    }

    void contentThatCannotBeSynced_doesNotTakeTheName()
    {
        saveTwice();
        class UnsyncedCalls final : public FileCalls
        {
        public:
            int sync(int) override
            {
                errno = EIO;
                return -1;
            }
        } calls;
        StoreFile file(path_, calls);
        file.load();
        QCOMPARE(file.save(generation(3)), EIO);
        QVERIFY(names({u"*.tmp"_s}).isEmpty());
        QVERIFY(load().values == generation(2));
    }

    void withoutHardLinks_savesStillReplaceWhole()
    {
        LinklessCalls calls;
        StoreFile file(path_, calls);
        QCOMPARE(file.save(generation(1)), 0);
        QCOMPARE(file.save(generation(2)), 0);
        QVERIFY(load().values == generation(2));
        fill(path_, "broken");
        StoreFile again(path_, calls);
        const auto loaded = again.load();
        QCOMPARE(contentOf(loaded.setAsidePath), QByteArray("broken"));
        QVERIFY(!QFile::exists(path_));
    }

    void brokenFile_isKeptAsideAndTheCopyTakesItsPlace()
    {
        saveTwice();
        const QByteArray whole = contentOf(path_).trimmed();
        for (qsizetype size = 0; size < whole.size(); size += 7) {
            fill(path_, whole.first(size));
            const auto loaded = load();
            QCOMPARE(loaded.state, StoreFile::State::broken);
            QVERIFY(loaded.isCopy && loaded.values == generation(1));
            QCOMPARE(contentOf(loaded.setAsidePath), whole.first(size));
            QCOMPARE(load().state, StoreFile::State::good); // restored on the disk too
            QVERIFY(load().values == generation(1));
            QVERIFY(QFile::exists(path_ + u".bak"_s));
        }
        QCOMPARE(names({u"*.tmp"_s}), QStringList());
    }

    void brokenFileWithoutCopy_leavesAnEmptyStore()
    {
        fill(path_, "<plist");
        const auto loaded = load();
        QCOMPARE(loaded.state, StoreFile::State::broken);
        QVERIFY(!loaded.isCopy && loaded.values.isEmpty());
        QVERIFY(loaded.setAsidePath.startsWith(path_ + u".broken-"_s));
        QCOMPARE(contentOf(loaded.setAsidePath), QByteArray("<plist"));
        QCOMPARE(load().state, StoreFile::State::missing);
    }

    void brokenCopy_isNotLoaded()
    {
        fill(path_, "x");
        fill(path_ + u".bak"_s, "y");
        const auto loaded = load();
        QVERIFY(!loaded.isCopy && loaded.values.isEmpty());
        QCOMPARE(contentOf(path_ + u".bak"_s), QByteArray("y"));
    }

    void deletedFile_isTheUsersWish()
    {
        saveTwice();
        QVERIFY(QFile::remove(path_));
        const auto loaded = load();
        QCOMPARE(loaded.state, StoreFile::State::missing);
        QVERIFY(loaded.values.isEmpty());
    }

    void brokenFileThatCannotBeMoved_isNotOverwritten()
    {
        saveTwice();
        fill(path_, "broken");
        class Unmovable final : public FileCalls
        {
        public:
            bool isLocked = true;
            int link(const char *from, const char *to) override
            {
                return isLocked ? refuse() : FileCalls::link(from, to);
            }
            int rename(const char *from, const char *to) override
            {
                return isLocked ? refuse() : FileCalls::rename(from, to);
            }

        private:
            static int refuse()
            {
                errno = EACCES;
                return -1;
            }
        } calls;
        StoreFile file(path_, calls);
        const auto loaded = file.load();
        QVERIFY(loaded.setAsidePath.isEmpty());
        QVERIFY(loaded.values == generation(1));
        QCOMPARE(file.save(generation(3)), EACCES);
        QCOMPARE(contentOf(path_), QByteArray("broken"));
        calls.isLocked = false;
        QCOMPARE(file.save(generation(3)), 0);
        QVERIFY(load().values == generation(3));
        const QStringList kept = names({u"*.broken-*"_s});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(contentOf(folder_->filePath(kept.front())), QByteArray("broken"));
        // The broken content did not take the last good copy's name.
        QCOMPARE(parsePropertyList(contentOf(path_ + u".bak"_s)),
                 std::optional<PropertyValue>(generation(1)));
    }

    void symbolicLink_staysAndItsTargetIsWritten()
    {
        QVERIFY(QDir(folder_->path()).mkdir(u"real"_s));
        const QString target = folder_->filePath(u"real/settings.plist"_s);
        QCOMPARE(::symlink("real/settings.plist", QFile::encodeName(path_).constData()), 0);
        saveTwice(); // the target does not exist at first
        QVERIFY(QFileInfo(path_).isSymbolicLink());
        QVERIFY(!QFileInfo(target).isSymbolicLink());
        QVERIFY(load().values == generation(2));
        QVERIFY(QFile::exists(target + u".bak"_s));
        fill(target, "broken");
        QVERIFY(load().setAsidePath.startsWith(target + u".broken-"_s));
    }

    void circleOfLinks_isRefused()
    {
        QCOMPARE(::symlink("Store.plist", QFile::encodeName(path_).constData()), 0);
        StoreFile file(path_, FileCalls::system());
        QCOMPARE(file.load().state, StoreFile::State::unreadable);
        QCOMPARE(file.save(generation(1)), ELOOP);
        QVERIFY(QFileInfo(path_).isSymbolicLink());
    }

    void noPlainFile_isLeftAlone_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("error");
        QTest::newRow("FIFO") << u"fifo"_s << EINVAL;
        QTest::newRow("folder") << u"folder"_s << EISDIR;
        QTest::newRow("link to a device") << u"device"_s << EINVAL;
        QTest::newRow("larger than any store") << u"huge"_s << EFBIG;
    }

    void noPlainFile_isLeftAlone()
    {
        QFETCH(QString, kind);
        const QByteArray name = QFile::encodeName(path_);
        if (kind == u"fifo")
            QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        else if (kind == u"folder")
            QVERIFY(QDir().mkdir(path_));
        else if (kind == u"device")
            QCOMPARE(::symlink("/dev/zero", name.constData()), 0);
        else {
            fill(path_, {});
            QVERIFY(QFile::resize(path_, qint64{1} << 40));
        }
        StoreFile file(path_, FileCalls::system());
        const auto loaded = file.load();
        QCOMPARE(loaded.state, StoreFile::State::unreadable);
        QTEST(loaded.error, "error");
        QTEST(file.save(generation(1)), "error");
        QVERIFY(QFileInfo::exists(path_));
    }

    void temporariesOfDeadProcesses_areCleanedAtOpening()
    {
        const int dead = 0x7ffffff0; // above any process number of the system
        const QString stray = folder_->filePath(u".Store.plist.%1-0.tmp"_s.arg(dead));
        const QString own = folder_->filePath(u".Store.plist.%1-99999.tmp"_s.arg(::getpid()));
        const QString living = folder_->filePath(u".Store.plist.1-0.tmp"_s);
        const QString stale = folder_->filePath(u".Store.plist.1-1.tmp"_s);
        const QString other = folder_->filePath(u".Other.plist.%1-0.tmp"_s.arg(dead));
        const QString unlike = folder_->filePath(u".Store.plist.mine.tmp"_s);
        for (const auto &path : {stray, own, living, stale, other, unlike})
            fill(path, "x");
        const struct timespec old[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(stale).constData(), old, 0), 0);
        load();
        QVERIFY(!QFile::exists(stray) && !QFile::exists(own) && !QFile::exists(stale));
        QVERIFY(QFile::exists(living) && QFile::exists(other) && QFile::exists(unlike));
    }
};

// Lets the first, second, … call of a save fail until a save needs no more calls.
void StoreFileTest::failEachCall(int error, bool isCut)
{
    saveTwice();
    bool wasNew = false;
    int failures = 0;
    for (int n = 1;; ++n) {
        QVERIFY(n < 100);
        int result = 0;
        FailingCalls calls(n, error, isCut);
        {
            StoreFile file(path_, FileCalls::system());
            QVERIFY(file.load().values == generation(2));
            QCOMPARE(file.save(generation(1)), 0);
            QCOMPARE(file.save(generation(2)), 0);
        }
        StoreFile file(path_, calls);
        file.load();
        result = file.save(generation(3));
        const auto after = load();
        QCOMPARE(after.state, StoreFile::State::good);
        const bool isNew = after.values == generation(3);
        QVERIFY2(isNew || after.values == generation(2), qPrintable(QString::number(n)));
        QVERIFY(isNew || result != 0); // a success is no lie
        const auto copy = parsePropertyList(contentOf(path_ + u".bak"_s));
        QVERIFY(copy && (*copy == PropertyValue(generation(1)) || *copy == generation(2)));
        // At most what the failed clean-up itself left, and opening has just removed that.
        QCOMPARE(names({u"*.tmp"_s}), QStringList());
        if (!calls.hasFailed())
            break;
        wasNew = wasNew || isNew;
        failures += result != 0 ? 1 : 0;
        StoreFile restore(path_, FileCalls::system());
        restore.load();
        QCOMPARE(restore.save(generation(2)), 0);
    }
    QVERIFY(wasNew);        // the folder's sync comes after the new name
    QVERIFY(failures >= 6); // open, writes, size, sync, close, rename, folder
}

QTEST_GUILESS_MAIN(StoreFileTest)
#include "storefile_test.moc"
