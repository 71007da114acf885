// SPDX-License-Identifier: MIT
#include "ListHouse.h"
#include "messages/CalendarText.h"
#include "messages/FirstSeenMemory.h"
#include "platform/Worker.h"

#include <QtTest>

#include <barrier>
#include <random>

using namespace qovelmor;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto storeKey = u"NoDateMessages"_s;

struct MemoryHouse
{
    QTemporaryDir folder;
    SimulatedClock clock{localMoment(u"2026-11-14T12:00:30"_s)};
    UserDefaults defaults{folder.filePath(u"store.plist"_s)};
    FirstSeenMemory memory{clock, defaults};

    void remember(const std::vector<FirstSeenMemory::Entry> &entries)
    {
        PropertyArray stored;
        for (const auto &[headline, date] : entries)
            stored.emplace_back(
                PropertyDictionary{{u"PastMessage"_s, headline}, {u"PastDate"_s, date}});
        defaults.setArray(stored, storeKey);
        memory.load();
    }
    QString headlines() const
    {
        QStringList all;
        for (const auto &entry : memory.noDateMessages())
            all.append(entry.headline);
        return all.join(u' ');
    }
};

// The memory as a plain list that is walked from its end with each question.
class WalkedMemory
{
public:
    std::vector<FirstSeenMemory::Entry> entries;

    QString ask(const QString &headline, Clock::CalendarTime now)
    {
        std::optional<QString> found;
        auto copy = entries;
        for (auto i = std::ptrdiff_t(entries.size()) - 1; i >= 0; --i) {
            const auto &entry = entries[std::size_t(i)];
            if (entry.headline == headline)
                found = entry.date;
            if (isTooOldDate(entry.date, now))
                copy.erase(copy.begin() + i);
        }
        if (!found)
            copy.push_back({headline, dateText(now)});
        entries = copy;
        return found.value_or(dateText(now));
    }
};

} // namespace

class FirstSeenMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The user's lists stand in the same file.
    void headlinesOfAnySize_leaveTheStoreSavable()
    {
        MemoryHouse house;
        house.memory.dateStringWithMessage(u"old"_s);
        for (int i = 0; i < 80; ++i)
            house.memory.dateStringWithMessage(QString::number(i) + QString(1'000'000, u'x'));
        for (int i = 0; i < 1000; ++i)
            house.memory.dateStringWithMessage(u"new %1"_s.arg(i));
        QVERIFY(house.memory.storeChanges());
        QVERIFY(house.defaults.synchronize());
        QVERIFY(QFileInfo(house.defaults.path()).size() <= firstSeenBytes + 500);
        QCOMPARE(house.memory.noDateMessages().size(), std::size_t(1081));

        FirstSeenMemory next(house.clock, house.defaults);
        next.load();
        const auto kept = next.noDateMessages(); // the newest, in their order
        QCOMPARE(kept.size(), std::size_t(1008));
        QVERIFY(kept.front().headline.startsWith(u"72x"_s));
        QCOMPARE(kept.back().headline, u"new 999"_s);
    }

    void firstQuestionIsTheFirstSight()
    {
        MemoryHouse house;
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 12:00"_s);
        house.clock.sleepFor(5h);
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 12:00"_s);
        QCOMPARE(house.memory.dateStringWithMessage(u"b"_s), u"11/14 17:00"_s);
    }

    // The stored minute began 30 s before the first sight.
    void tenDaysLaterItIsForgottenWithItsLastAnswer()
    {
        MemoryHouse house;
        house.memory.dateStringWithMessage(u"a"_s);
        house.clock.sleepFor(240h - 30s);
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 12:00"_s);
        QCOMPARE(house.headlines(), u"a"_s);
        house.clock.sleepFor(1s);
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 12:00"_s);
        QCOMPARE(house.headlines(), QString());
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/24 12:00"_s);
    }

    void anyQuestionForgetsWhatIsTooOld()
    {
        MemoryHouse house;
        house.remember({{u"old"_s, u"11/04 11:59"_s}, {u"young"_s, u"11/04 12:01"_s}});
        house.memory.dateStringWithMessage(u"young"_s);
        QCOMPARE(house.headlines(), u"young"_s);
    }

    void firstOfTwoEntriesCounts()
    {
        MemoryHouse house;
        house.remember({{u"a"_s, u"11/14 08:00"_s}, {u"a"_s, u"11/14 07:00"_s}});
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 08:00"_s);
    }

    void entryWithoutAMomentIsNeverForgotten()
    {
        MemoryHouse house;
        house.remember({{u"a"_s, u"some day"_s}, {u"old"_s, u"11/01 00:00"_s}});
        house.clock.sleepFor(24h * 400);
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"some day"_s);
        QCOMPARE(house.headlines(), u"a"_s);
    }

    void timesThatLieAheadAreLastYears()
    {
        MemoryHouse house;
        house.memory.dateStringWithMessage(u"a"_s);
        house.clock.setCalendar(localMoment(u"2026-11-14T11:59:00"_s));
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"11/14 12:00"_s);
        QCOMPARE(house.headlines(), QString());
    }

    void newYearKeepsDecember()
    {
        MemoryHouse house;
        house.clock.setCalendar(localMoment(u"2026-12-31T23:00:00"_s));
        house.memory.dateStringWithMessage(u"a"_s);
        house.clock.sleepFor(3h);
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), u"12/31 23:00"_s);
        QCOMPARE(house.headlines(), u"a"_s);
    }

    void answersEqualTheWalkedMemory()
    {
        const unsigned seed = std::random_device()();
        qInfo("seed %u", seed);
        std::mt19937 random(seed);
        MemoryHouse house;
        WalkedMemory walked;
        std::uniform_int_distribution<int> kind(0, 15);
        std::uniform_int_distribution<int> minutes(0, 60 * 24);
        std::uniform_int_distribution<int> rare(0, 40);
        for (int step = 0; step < 1500; ++step) {
            const QString headline = QString::number(kind(random));
            const auto now = house.clock.calendarNow();
            const QString expected = walked.ask(headline, now);
            QCOMPARE(house.memory.dateStringWithMessage(headline), expected);
            QVERIFY(house.memory.noDateMessages() == walked.entries);
            house.clock.sleepFor(std::chrono::minutes(minutes(random)) + 7s);
            if (rare(random) == 0)
                house.clock.setCalendar(now - std::chrono::minutes(minutes(random)));
        }
    }

    void onlyChangesAreStored()
    {
        MemoryHouse house;
        QVERIFY(!house.memory.storeChanges());
        house.memory.dateStringWithMessage(u"a"_s);
        QVERIFY(!house.defaults.hasKey(storeKey)); // a question writes nothing
        QVERIFY(house.memory.storeChanges());
        QCOMPARE(house.defaults.arrayForKey(storeKey)->size(), 1U);
        house.memory.dateStringWithMessage(u"a"_s);
        QVERIFY(!house.memory.storeChanges());
        house.clock.sleepFor(24h * 11);
        house.memory.dateStringWithMessage(u"a"_s);
        QVERIFY(house.memory.storeChanges()); // forgetting is a change too
        QVERIFY(house.defaults.arrayForKey(storeKey)->empty());
    }

    void memorySurvivesARestart()
    {
        MemoryHouse house;
        house.memory.dateStringWithMessage(u"見出し"_s);
        QVERIFY(house.memory.storeChanges());
        QVERIFY(house.defaults.synchronize());
        house.clock.sleepFor(1h);
        UserDefaults defaults(house.defaults.path());
        FirstSeenMemory next(house.clock, defaults);
        next.load();
        QCOMPARE(next.dateStringWithMessage(u"見出し"_s), u"11/14 12:00"_s);
        QVERIFY(!next.storeChanges());
    }

    void storedEntriesOfAWrongShapeDoNoHarm()
    {
        MemoryHouse house;
        house.defaults.setArray(
            {PropertyValue(3), PropertyValue(PropertyDictionary{}),
             PropertyValue(PropertyDictionary{{u"PastMessage"_s, u"a"_s}, {u"PastDate"_s, 7}})},
            storeKey);
        house.memory.load();
        QCOMPARE(house.memory.dateStringWithMessage(u"a"_s), QString());
    }

    // A walk through the memory for each question would run into the test's time limit.
    void hundredThousandHeadlinesAreNotQuadratic()
    {
        MemoryHouse house;
        for (int round = 0; round < 2; ++round)
            for (int i = 0; i < 100'000; ++i)
                house.memory.dateStringWithMessage(QString::number(i));
        QCOMPARE(house.memory.noDateMessages().size(), 100'000U);
    }

    // Of two who save at one moment none puts an older list over a newer one. The list is long: the
    // longer it takes to copy, the nearer they meet.
    void manyThreadsMayAskAndSave()
    {
        constexpr std::size_t before = 10'000;
        constexpr std::size_t rounds = 100;
        MemoryHouse house;
        for (std::size_t i = 0; i < before; ++i)
            house.memory.dateStringWithMessage(QString::number(i));
        std::barrier bothAreThere(2);
        const auto askAndSave = [&](const QString &who, const auto &check) {
            for (std::size_t i = 0; i < rounds; ++i) {
                bothAreThere.arrive_and_wait();
                house.memory.dateStringWithMessage(who + QString::number(i));
                house.memory.storeChanges();
                bothAreThere.arrive_and_wait();
                check(before + 2 * (i + 1));
            }
        };
        int older = 0;
        Worker other(house.clock);
        other.start([&] { askAndSave(u"other"_s, [](std::size_t) {}); });
        askAndSave(u"own"_s, [&](std::size_t asked) {
            if (house.defaults.arrayForKey(storeKey)->size() != asked)
                ++older;
        });
        other.join();
        QCOMPARE(older, 0);
        QCOMPARE(house.memory.noDateMessages().size(), before + 2 * rounds);
    }
};

QTEST_APPLESS_MAIN(FirstSeenMemoryTest)
#include "firstseenmemory_test.moc"
