// SPDX-License-Identifier: MIT
#include "platform/FreedMemory.h"
#include "tests/support/ProcessUse.h"

#include <QtTest>

#include <unistd.h>

#include <memory>
#include <vector>

using namespace qovelmor;

class FreedMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A headline that is kept lies above the document it came from: the C library gives back only
    // what lies above everything in use.
    void memoryBelowAPieceInUse_goesBackToTheSystem()
    {
        constexpr std::size_t piece = 1024;
        constexpr std::size_t pieces = 64 * 1024;
        constexpr long mostKept = 16 * 1024; // KiB
        const ProcessUse use(::getpid());
        const long before = use.memoryKiB();
        std::vector<std::unique_ptr<char[]>> document;
        for (std::size_t i = 0; i < pieces; ++i)
            document.push_back(std::make_unique<char[]>(piece));
        const auto kept = std::make_unique<char[]>(piece);
        document.clear();
        QVERIFY(use.memoryKiB() - before > mostKept);

        returnFreedMemory();

        QVERIFY(use.memoryKiB() - before < mostKept);
        QCOMPARE(kept[piece - 1], '\0');
    }
};

QTEST_GUILESS_MAIN(FreedMemoryTest)
#include "freedmemory_test.moc"
