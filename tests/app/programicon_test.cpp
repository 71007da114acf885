// SPDX-License-Identifier: MIT
#include "app/ProgramIcon.h"

#include <QImage>
#include <QPixmap>
#include <QTest>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

class ProgramIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachSize_isDrawnForIt_data();
    void eachSize_isDrawnForIt();
};

void ProgramIconTest::eachSize_isDrawnForIt_data()
{
    QTest::addColumn<int>("side");
    for (const int side : {16, 24, 32, 48, 64, 128})
        QTest::addRow("%d", side) << side;
}

// An icon scales another picture when one is missing, and nobody is told.
void ProgramIconTest::eachSize_isDrawnForIt()
{
    QFETCH(int, side);
    const QIcon icon = programIcon();
    QVERIFY(icon.availableSizes().contains(QSize(side, side)));
    const QImage drawn(u":/desktop/qovelmorrss-%1.png"_s.arg(side));
    QCOMPARE(drawn.size(), QSize(side, side));
    const auto format = QImage::Format_ARGB32_Premultiplied;
    QCOMPARE(icon.pixmap(side).toImage().convertToFormat(format), drawn.convertToFormat(format));
}

QTEST_MAIN(ProgramIconTest)
#include "programicon_test.moc"
