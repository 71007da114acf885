// SPDX-License-Identifier: MIT
#include "platform/UserDefaults.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

class UserDefaultsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        path_ = folder_->filePath(u"config/QoVelmorRSS/QoVelmorRSS.plist"_s);
    }

    void missingFile_isAnEmptyStore()
    {
        const UserDefaults store(path_);
        QVERIFY(store.openReport().message.isEmpty());
        QVERIFY(!store.hasKey(u"OlderHours"_s));
        QVERIFY(!store.boolForKey(u"OlderHours"_s));
        QCOMPARE(store.integerForKey(u"OlderHours"_s), 0);
        QCOMPARE(store.floatForKey(u"OlderHours"_s), 0.0);
        QCOMPARE(store.stringForKey(u"OlderHours"_s), QString());
        QCOMPARE(store.dataForKey(u"OlderHours"_s), QByteArray());
        QVERIFY(!store.arrayForKey(u"OlderHours"_s));
        QVERIFY(!store.dictionaryForKey(u"OlderHours"_s));
        QVERIFY(!store.valueForKey(u"OlderHours"_s));
    }

    void registeredDefaults_answerUntilWrittenAndAreNotWritten()
    {
        UserDefaults store(path_);
        store.registerDefaults({{u"OlderHours"_s, 72}, {u"Browser"_s, u"none"_s}});
        store.registerDefaults({{u"OlderHours"_s, 48}}); // the later one holds
        QVERIFY(store.hasKey(u"OlderHours"_s));
        QCOMPARE(store.integerForKey(u"OlderHours"_s), 48);
        QVERIFY(store.synchronize());
        QVERIFY(!QFile::exists(path_)); // nothing was set
        store.setInteger(5, u"OlderHours"_s);
        QVERIFY(store.synchronize());
        const UserDefaults again(path_);
        QCOMPARE(again.integerForKey(u"OlderHours"_s), 5);
        QVERIFY(!again.hasKey(u"Browser"_s));
        store.removeKey(u"OlderHours"_s);
        QCOMPARE(store.integerForKey(u"OlderHours"_s), 48);
    }

    void registeredDefaults_areWrittenWhenTheyChange()
    {
        UserDefaults store(path_);
        store.registerDefaults({{u"OlderHours"_s, 72}});
        store.setValueIfChanged(72, u"OlderHours"_s);
        QVERIFY(store.synchronize());
        QVERIFY(!QFile::exists(path_));
        store.setValueIfChanged(48, u"OlderHours"_s);
        store.setValueIfChanged(72, u"OlderHours"_s); // back, and so it is one
        QVERIFY(store.synchronize());
        QVERIFY(UserDefaults(path_).hasKey(u"OlderHours"_s));
    }

    void everyType_survivesTheFile()
    {
        const PropertyArray list{1, u"二"_s, PropertyDictionary{{u"k"_s, 0.5}}};
        {
            UserDefaults store(path_);
            store.setBool(true, u"bool"_s);
            store.setInteger(-3, u"integer"_s);
            store.setFloat(0.1, u"float"_s);
            store.setString(u"文字 <&>\r\n"_s, u"string"_s);
            store.setData(QByteArray("\0\xff", 2), u"data"_s);
            store.setArray(list, u"array"_s);
            store.setDictionary({{u"a"_s, 1}}, u"dictionary"_s);
            store.setValue(QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC), u"date"_s);
            QVERIFY(store.synchronize());
            QVERIFY(store.lastError().isEmpty());
        }
        const UserDefaults store(path_);
        QVERIFY(store.boolForKey(u"bool"_s));
        QCOMPARE(store.integerForKey(u"integer"_s), -3);
        QCOMPARE(store.floatForKey(u"float"_s), 0.1);
        QCOMPARE(store.stringForKey(u"string"_s), u"文字 <&>\r\n"_s);
        QCOMPARE(store.dataForKey(u"data"_s), QByteArray("\0\xff", 2));
        QVERIFY(store.arrayForKey(u"array"_s) == list);
        QVERIFY(store.dictionaryForKey(u"dictionary"_s) == PropertyDictionary({{u"a"_s, 1}}));
        QCOMPARE(store.valueForKey(u"date"_s)->get<QDateTime>()->toSecsSinceEpoch(), 1'700'000'000);
    }

    void writtenValuesOfAWrongType_giveWayToTheRegisteredOnes()
    {
        UserDefaults store(path_);
        store.registerDefaults({{u"hours"_s, 72},
                                {u"volume"_s, 0.5},
                                {u"on"_s, true},
                                {u"word"_s, u"PR"_s},
                                {u"color"_s, QByteArray("red")},
                                {u"list"_s, PropertyArray{1}}});
        for (const auto &key : {u"hours"_s, u"volume"_s, u"on"_s, u"word"_s, u"color"_s})
            store.setDictionary({}, key);
        store.setString(u"no list"_s, u"list"_s);
        QCOMPARE(store.integerForKey(u"hours"_s), 72);
        QCOMPARE(store.floatForKey(u"volume"_s), 0.5);
        QVERIFY(store.boolForKey(u"on"_s));
        QCOMPARE(store.stringForKey(u"word"_s), u"PR"_s);
        QCOMPARE(store.dataForKey(u"color"_s), QByteArray("red"));
        QVERIFY(!store.arrayForKey(u"list"_s));
        store.setString(u"12"_s, u"hours"_s); // a scalar of another type is converted
        QCOMPARE(store.integerForKey(u"hours"_s), 12);
    }

    void unknownKeys_surviveInTheirOrder()
    {
        {
            UserDefaults store(path_);
            store.setString(u"from a later version"_s, u"Zukunft"_s);
            store.setInteger(1, u"ScrollSpeed"_s);
            store.setArray({PropertyDictionary{{u"odd"_s, QByteArray("x")}}}, u"Another"_s);
            QVERIFY(store.synchronize());
        }
        UserDefaults store(path_);
        store.setInteger(3, u"ScrollSpeed"_s);
        QVERIFY(store.synchronize());
        QFile file(path_);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.indexOf("Zukunft") < bytes.indexOf("ScrollSpeed"));
        QVERIFY(bytes.indexOf("ScrollSpeed") < bytes.indexOf("Another"));
        QVERIFY(bytes.contains("from a later version"));
        QCOMPARE(UserDefaults(path_).integerForKey(u"ScrollSpeed"_s), 3);
    }

    void unchangedStore_isNotWrittenAgain()
    {
        UserDefaults store(path_);
        store.setInteger(3, u"ScrollSpeed"_s);
        QVERIFY(store.synchronize());
        QVERIFY(QFile::remove(path_));
        store.setInteger(3, u"ScrollSpeed"_s);
        store.removeKey(u"absent"_s);
        QVERIFY(store.synchronize());
        QVERIFY(!QFile::exists(path_));
        store.setInteger(4, u"ScrollSpeed"_s);
        QVERIFY(store.synchronize());
        QVERIFY(QFile::exists(path_));
    }

    void saveThatCannotBe_keepsTheValuesAndSaysWhy()
    {
        UserDefaults store(u"/proc/self/none/QoVelmorRSS.plist"_s);
        store.setInteger(3, u"ScrollSpeed"_s);
        QVERIFY(!store.synchronize());
        QVERIFY2(store.lastError().contains(u"/proc/self/none"), qPrintable(store.lastError()));
        QCOMPARE(store.integerForKey(u"ScrollSpeed"_s), 3);
        QVERIFY(!store.synchronize()); // still to be saved
    }

    void reports_speakToTheUser_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("says");
        QTest::newRow("cut file") << QByteArray("<plist version=\"1.0\"><dict>")
                                  << u"壊れていたため「QoVelmorRSS.plist.broken-"_s;
        QTest::newRow("empty file") << QByteArray() << u"初期設定で始めます。"_s;
        QTest::newRow("an array") << QByteArray("<plist version=\"1.0\"><array/></plist>")
                                  << u"初期設定で始めます。"_s;
    }

    void reports_speakToTheUser()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, says);
        QVERIFY(QDir().mkpath(QFileInfo(path_).path()));
        QFile file(path_);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const UserDefaults store(path_);
        QVERIFY(store.openReport().wasBroken && !store.openReport().wasRestored);
        QVERIFY2(store.openReport().message.contains(says), qPrintable(store.openReport().message));
        QFile kept(store.openReport().setAsidePath);
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), content);
        QVERIFY(UserDefaults(path_).openReport().message.isEmpty()); // said once
    }

    void unreadableStore_isSaidAndLeftAlone()
    {
        QVERIFY(QDir().mkpath(path_)); // a folder in the store's place
        UserDefaults store(path_);
        QVERIFY(!store.openReport().wasBroken);
        QVERIFY2(store.openReport().message.contains(path_) &&
                     store.openReport().message.contains(u"変更は保存されません"_s),
                 qPrintable(store.openReport().message));
        store.setInteger(1, u"ScrollSpeed"_s);
        QVERIFY(!store.synchronize());
        QVERIFY(store.lastError().contains(u"通常のファイルではありません"_s));
    }

    void brokenStore_startsFromTheContentBeforeTheLastSave()
    {
        {
            UserDefaults store(path_);
            store.setInteger(1, u"ScrollSpeed"_s);
            QVERIFY(store.synchronize());
            store.setInteger(2, u"ScrollSpeed"_s);
            QVERIFY(store.synchronize());
        }
        QVERIFY(QFile::resize(path_, 100));
        const UserDefaults store(path_);
        QVERIFY(store.openReport().wasBroken && store.openReport().wasRestored);
        QVERIFY(store.openReport().message.endsWith(u"ひとつ前に保存した設定を使います。"_s));
        QCOMPARE(store.integerForKey(u"ScrollSpeed"_s), 1);
    }

    void defaultPath_followsTheEnvironment()
    {
        qputenv("HOME", "/home/somebody");
        qunsetenv("XDG_CONFIG_HOME");
        QCOMPARE(UserDefaults::defaultPath(),
                 u"/home/somebody/.config/QoVelmorRSS/QoVelmorRSS.plist"_s);
        qputenv("XDG_CONFIG_HOME", "relative");
        QCOMPARE(UserDefaults::defaultPath(),
                 u"/home/somebody/.config/QoVelmorRSS/QoVelmorRSS.plist"_s);
        qputenv("XDG_CONFIG_HOME", "/etc/mine/");
        QCOMPARE(UserDefaults::defaultPath(), u"/etc/mine/QoVelmorRSS/QoVelmorRSS.plist"_s);
    }

    // An older state that is saved beside a newer one could take its place.
    void savesOfTwoThreads_goOneAfterTheOther()
    {
        class MeetingCalls final : public FileCalls
        {
        public:
            ssize_t write(int descriptor, const void *bytes, std::size_t count) override
            {
                isWriting = true;
                if (++inside_ > 1)
                    haveMet = true;
                for (int i = 0; i < 30 && !haveMet; ++i) // time for the other one to come in
                    std::this_thread::sleep_for(std::chrono::milliseconds(10));
                --inside_;
                ++writes;
                return FileCalls::write(descriptor, bytes, count);
            }
            std::atomic<bool> isWriting = false;
            std::atomic<bool> haveMet = false;
            std::atomic<int> writes = 0;

        private:
            std::atomic<int> inside_ = 0;
        } calls;
        UserDefaults store(path_, calls);
        {
            std::vector<std::jthread> workers;
            for (int thread = 0; thread < 2; ++thread) {
                workers.emplace_back([&store, &calls, thread] {
                    // The second one has something to save while the first one writes.
                    while (thread == 1 && !calls.isWriting)
                        std::this_thread::yield();
                    store.setInteger(thread, u"key%1"_s.arg(thread));
                    store.synchronize();
                });
            }
        }
        QVERIFY(!calls.haveMet);
        QCOMPARE(calls.writes, 2);
    }

    void manyThreads_loseNothing()
    {
        UserDefaults store(path_);
        constexpr int threads = 4;
        constexpr int rounds = 50;
        {
            std::vector<std::jthread> workers;
            for (int thread = 0; thread < threads; ++thread) {
                workers.emplace_back([&store, thread] {
                    const QString key = u"key%1"_s.arg(thread);
                    for (int i = 1; i <= rounds; ++i) {
                        store.setInteger(i, key);
                        store.setString(QString::number(i), key + u'-' + QString::number(i));
                        if (i % 10 == thread)
                            store.synchronize();
                        if (store.integerForKey(key) != i)
                            store.setBool(true, u"wrong"_s);
                    }
                });
            }
        }
        QVERIFY(store.synchronize());
        const UserDefaults again(path_);
        QVERIFY(!again.hasKey(u"wrong"_s));
        for (int thread = 0; thread < threads; ++thread) {
            const QString key = u"key%1"_s.arg(thread);
            QCOMPARE(again.integerForKey(key), rounds);
            for (int i = 1; i <= rounds; ++i)
                QCOMPARE(again.stringForKey(key + u'-' + QString::number(i)), QString::number(i));
        }
    }
};

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "userdefaults_test.moc"
