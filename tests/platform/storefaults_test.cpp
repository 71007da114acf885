// SPDX-License-Identifier: MIT
// What can happen to the defaults store from outside: cut files, flipped bits, failing system
// calls, power cuts, full and read-only disks. Each time there is the old or the new content,
// whole.
#include "platform/PropertyListFile.h"
#include "platform/UserDefaults.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/OwnMounts.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <set>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

bool fill(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

PropertyDictionary generation(int number)
{
    PropertyArray feeds;
    for (int i = 0; i < 5; ++i)
        feeds.push_back(PropertyDictionary{{u"RSSValidate"_s, i % 2 == 0},
                                           {u"RSSAddressString"_s, u"http://h/%1"_s.arg(i)},
                                           {u"RSSNameString"_s, u"町の知らせ %1"_s.arg(i)},
                                           {u"RSSFormat"_s, 2}});
    return {{u"generation"_s, number},
            {u"RSSSiteAddresses"_s, feeds},
            {u"ScrollSpeed"_s, 3},
            {u"Volume"_s, 0.5},
            {u"a key of another version"_s, QByteArray("\1\2\3")}};
}

/// Syncing costs most of a save's time and decides nothing where nobody cuts the power.
class UnsyncedCalls final : public FileCalls
{
public:
    int sync(int) override { return 0; }
};

/// Keeps what would be on the disk if the power went now and nothing were written by itself: the
/// folder as it was at its last sync.
class RememberingCalls final : public FileCalls
{
public:
    RememberingCalls(QString folder, int cutAt) : folder_(std::move(folder)), left_(cutAt)
    {
        remember();
    }
    bool isCut() const { return left_ <= 0; }

    int open(const char *path, int flags, mode_t mode) override
    {
        return isDead() ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const void *bytes, std::size_t count) override
    {
        return isDead() ? -1 : FileCalls::write(descriptor, bytes, count);
    }
    int sync(int descriptor) override
    {
        if (isDead())
            return -1;
        struct stat status = {};
        if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode))
            remember();
        return 0;
    }
    int rename(const char *from, const char *to) override
    {
        return isDead() ? -1 : FileCalls::rename(from, to);
    }
    int link(const char *from, const char *to) override
    {
        return isDead() ? -1 : FileCalls::link(from, to);
    }
    int unlink(const char *path) override { return isDead() ? -1 : FileCalls::unlink(path); }

    void goBack() const
    {
        const QDir folder(folder_);
        for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
            QFile::remove(folder.filePath(name));
        for (const auto &[name, bytes] : kept_)
            fill(folder.filePath(name), bytes);
    }

private:
    bool isDead()
    {
        errno = EIO;
        return --left_ <= 0;
    }
    void remember()
    {
        kept_.clear();
        const QDir folder(folder_);
        for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
            kept_[name] = contentOf(folder.filePath(name));
    }

    QString folder_;
    int left_;
    std::map<QString, QByteArray> kept_;
};

/// A file system of its own; needs the right to mount one.
class SmallDisk
{
public:
    explicit SmallDisk(const char *options)
        : isMounted_(::mount("none", qPrintable(folder_.path()), "tmpfs", 0, options) == 0)
    {}
    ~SmallDisk()
    {
        if (isMounted_)
            ::umount(qPrintable(folder_.path()));
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return isMounted_; }
    QString path(const QString &name) const { return folder_.filePath(name); }
    bool makeReadOnly() const
    {
        return ::mount("none", qPrintable(folder_.path()), "tmpfs", MS_REMOUNT | MS_RDONLY, "") ==
               0;
    }

private:
    QTemporaryDir folder_;
    bool isMounted_;
};

} // namespace

class StoreFaultsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;
    UnsyncedCalls unsynced_;

    void save(int number)
    {
        UserDefaults store(path_, unsynced_);
        const PropertyDictionary values = generation(number);
        for (const PropertyEntry &entry : values.entries())
            store.setValue(entry.value, entry.key);
        QVERIFY(store.synchronize());
    }
    PropertyDictionary stored() const
    {
        const auto content = readPropertyListFile(path_);
        const auto *values = content.root ? content.root->get<PropertyDictionary>() : nullptr;
        return values ? *values : PropertyDictionary();
    }
    void startAnew()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        path_ = folder_->filePath(u"Store.plist"_s);
        save(1);
        save(2);
    }
    /// A save of generation 3 through `calls`; gives whether it says that it succeeded.
    bool saveThrough(FileCalls &calls)
    {
        UserDefaults store(path_, calls);
        store.setInteger(3, u"generation"_s);
        return store.synchronize();
    }

private Q_SLOTS:
    void init() { startAnew(); }

    void cutAtEveryByte_theLastGoodCopyIsLoadedAndTheUserTold()
    {
        const QByteArray whole = contentOf(path_);
        const QByteArray copy = contentOf(path_ + u".bak"_s);
        const qsizetype end = whole.trimmed().size();
        for (qsizetype size = 0; size < end; ++size) {
            QVERIFY(fill(path_, whole.first(size)));
            const UserDefaults store(path_, unsynced_);
            const auto &report = store.openReport();
            QVERIFY2(report.wasBroken && report.wasRestored, qPrintable(QString::number(size)));
            QVERIFY(!report.message.isEmpty());
            QCOMPARE(contentOf(report.setAsidePath), whole.first(size));
            QCOMPARE(store.integerForKey(u"generation"_s), 1);
            QCOMPARE(store.arrayForKey(u"RSSSiteAddresses"_s)->size(), std::size_t{5});
            QFile::remove(report.setAsidePath);
            QVERIFY(fill(path_ + u".bak"_s, copy));
        }
        qInfo("%lld cuts", static_cast<long long>(end));
    }

    // Only what was hit differs: a key that is now another, or the value of one key.
    void flippedBit_damagesOneValueAtMost()
    {
        const QByteArray whole = contentOf(path_);
        const PropertyDictionary before = stored();
        int read = 0;
        for (qsizetype at = 0; at < whole.size(); ++at) {
            for (int bit = 0; bit < 8; ++bit) {
                QByteArray damaged = whole;
                damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
                const auto root = parsePropertyList(damaged);
                const auto *values = root ? root->get<PropertyDictionary>() : nullptr;
                if (values == nullptr)
                    continue;
                ++read;
                int differences = 0;
                for (const PropertyEntry &entry : before.entries()) {
                    const PropertyValue *now = values->find(entry.key);
                    differences += now != nullptr && *now == entry.value ? 0 : 1;
                }
                QVERIFY2(differences <= 1, damaged.mid(std::max<qsizetype>(at - 30, 0), 60));
            }
        }
        QVERIFY(read > 0);
        qInfo("%lld flips, %d of them still a store", static_cast<long long>(whole.size() * 8),
              read);
    }

    void everyFailingCall_leavesOldOrNewContent()
    {
        int faults = 0;
        for (const int error : {ENOSPC, EIO, EROFS, EACCES, EDQUOT, ENOMEM, EMFILE, EPERM, EFBIG}) {
            for (const bool isCut : {false, true}) {
                for (const bool isBroken : {false, true}) {
                    for (int n = 1;; ++n) {
                        QVERIFY(n < 200);
                        startAnew();
                        if (isBroken)
                            QVERIFY(fill(path_, "broken"));
                        FailingCalls calls(n, error, isCut);
                        const bool isSaved = saveThrough(calls);
                        if (!calls.hasFailed())
                            break;
                        ++faults;
                        const UserDefaults after(path_, unsynced_);
                        const auto number = after.integerForKey(u"generation"_s);
                        const auto old = isBroken ? 1 : 2;
                        const auto what = u"call %1, error %2, cut %3, broken %4: %5"_s.arg(n)
                                              .arg(error)
                                              .arg(isCut)
                                              .arg(isBroken)
                                              .arg(number);
                        QVERIFY2(number == 3 || number == old, qPrintable(what));
                        QVERIFY2(number == 3 || !isSaved, qPrintable(what)); // no lie
                        QCOMPARE(after.arrayForKey(u"RSSSiteAddresses"_s)->size(), std::size_t{5});
                        QVERIFY(after.hasKey(u"a key of another version"_s));
                    }
                }
            }
        }
        qInfo("%d faults", faults);
        QVERIFY(faults >= 400);
    }

    // The other end of what a power cut can leave: no name has reached the disk since the folder
    // was synced last.
    void powerCutBeforeAnyNameIsWritten_leavesOldOrNewContent()
    {
        for (int n = 1;; ++n) {
            QVERIFY(n < 200);
            startAnew();
            RememberingCalls calls(folder_->path(), n);
            const bool isSaved = saveThrough(calls);
            const bool isCut = calls.isCut();
            calls.goBack();
            const UserDefaults after(path_, unsynced_);
            QCOMPARE(after.integerForKey(u"generation"_s), isSaved ? 3 : 2);
            QVERIFY(after.openReport().message.isEmpty());
            if (!isCut)
                break;
        }
    }

    void wrongTypes_areNoAnswer()
    {
        UserDefaults store(path_, unsynced_);
        store.registerDefaults({{u"RSSSiteAddresses"_s, PropertyArray{}}, {u"ScrollSpeed"_s, 7}});
        store.setValue(PropertyDictionary{{u"x"_s, 1}}, u"ScrollSpeed"_s);
        store.setString(u"no list"_s, u"RSSSiteAddresses"_s);
        QCOMPARE(store.integerForKey(u"ScrollSpeed"_s), 7);
        QVERIFY(!store.arrayForKey(u"RSSSiteAddresses"_s));
    }

    void realFullDisk_isSaidAndTheOldContentStays()
    {
        const SmallDisk disk("size=64k");
        if (!disk.isMounted())
            QSKIP("NOT TESTED HERE: this user may not mount anything");
        const QString path = disk.path(u"Store.plist"_s);
        {
            UserDefaults store(path);
            store.setInteger(2, u"generation"_s);
            QVERIFY(store.synchronize());
        }
        for (const int size : {4'000, 30'000, 60'000, 300'000, 3'000'000}) {
            UserDefaults store(path);
            store.setString(QString(size, u'x'), u"large"_s);
            store.setInteger(size, u"generation"_s);
            const bool isSaved = store.synchronize();
            QCOMPARE(store.lastError().isEmpty(), isSaved);
            const UserDefaults after(path);
            QVERIFY(after.openReport().message.isEmpty());
            QCOMPARE(after.integerForKey(u"generation"_s) == size, isSaved);
            QCOMPARE(after.stringForKey(u"large"_s).size() == size, isSaved);
            QVERIFY(size < 60'000 || !isSaved);
        }
        QVERIFY(QDir(disk.path({})).entryList({u"*.tmp"_s}, QDir::Files | QDir::Hidden).isEmpty());
    }

    void readOnlyDisk_isSaidAndNothingIsLost()
    {
        const SmallDisk disk("size=1m");
        if (!disk.isMounted())
            QSKIP("NOT TESTED HERE: this user may not mount anything");
        const QString path = disk.path(u"Store.plist"_s);
        {
            UserDefaults store(path);
            store.setInteger(2, u"generation"_s);
            QVERIFY(store.synchronize());
        }
        QVERIFY(disk.makeReadOnly());
        UserDefaults store(path);
        store.setInteger(3, u"generation"_s);
        QVERIFY(!store.synchronize());
        QVERIFY2(store.lastError().contains(u"読み込み専用"_s), qPrintable(store.lastError()));
        QCOMPARE(store.integerForKey(u"generation"_s), 3); // memory keeps it
        QCOMPARE(UserDefaults(path).integerForKey(u"generation"_s), 2);
    }
};

int main(int argc, char **argv)
{
    enterOwnMounts(); // where that is refused, two tests say so
    const QCoreApplication application(argc, argv);
    StoreFaultsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "storefaults_test.moc"
