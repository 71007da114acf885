// SPDX-License-Identifier: MIT
#include "platform/InstanceLock.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class InstanceLockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstStartHoldsTheProfile_secondDoesNot();
    void profilesDoNotDisturbEachOther();
    void folderIsMade();
    void folderThatTakesNoFile_keepsNobodyOut();
    void startedPrograms_doNotInheritTheLock();
    void linkInTheLocksPlace_isNotFollowed();
};

void InstanceLockTest::firstStartHoldsTheProfile_secondDoesNot()
{
    const QTemporaryDir folder;
    auto first = std::make_unique<InstanceLock>(folder.path());
    QVERIFY(!first->isHeldByAnother());
    QVERIFY(InstanceLock(folder.path()).isHeldByAnother());
    QVERIFY(InstanceLock(folder.path()).isHeldByAnother());
    first.reset();
    QVERIFY(!InstanceLock(folder.path()).isHeldByAnother());
}

void InstanceLockTest::profilesDoNotDisturbEachOther()
{
    const QTemporaryDir a;
    const QTemporaryDir b;
    const InstanceLock first(a.path());
    QVERIFY(!InstanceLock(b.path()).isHeldByAnother());
}

void InstanceLockTest::folderIsMade()
{
    const QTemporaryDir folder;
    const QString deep = folder.filePath(u"config/QoVelmorRSS"_s);
    const InstanceLock lock(deep);
    QVERIFY(QFileInfo(deep).isDir());
    QVERIFY(!lock.isHeldByAnother());
}

void InstanceLockTest::folderThatTakesNoFile_keepsNobodyOut()
{
    const InstanceLock lock(u"/proc/self/no such folder"_s);
    QVERIFY(!lock.isHeldByAnother());
}

void InstanceLockTest::startedPrograms_doNotInheritTheLock()
{
    const QTemporaryDir folder;
    QProcess browser;
    {
        const InstanceLock lock(folder.path());
        browser.start(u"sleep"_s, {u"60"_s});
        QVERIFY(browser.waitForStarted());
    }
    QVERIFY(!InstanceLock(folder.path()).isHeldByAnother()); // although the browser lives on
    browser.kill();
    QVERIFY(browser.waitForFinished());
}

void InstanceLockTest::linkInTheLocksPlace_isNotFollowed()
{
    const QTemporaryDir folder;
    const QString elsewhere = folder.filePath(u"elsewhere"_s);
    QVERIFY(QFile::link(elsewhere, folder.filePath(u"lock"_s)));
    const InstanceLock lock(folder.path());
    QVERIFY(!lock.isHeldByAnother());
    QVERIFY(!QFileInfo::exists(elsewhere));
}

QTEST_GUILESS_MAIN(InstanceLockTest)
#include "instancelock_test.moc"
