// SPDX-License-Identifier: MIT
#include "tests/tools/FirmwareBench.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/BoardVariables.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace qovelmor::simboard;
using namespace Qt::Literals::StringLiterals;

/// Runs the exchanges of docs/board-protocol.md, so that the document stays true.
class BoardProtocolDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void exchange_goesAsWritten_data();
    void exchange_goesAsWritten();
    void everyCommandAndVariable_standsInATable();

private:
    QByteArray document_;
};

namespace {

QByteArray unescaped(QByteArray text)
{
    return text.replace("\\r", "\r").replace("\\n", "\n");
}

FirmwareBench benchFor(const QByteArray &heading)
{
    const auto kind = heading.contains("quiet") ? BoardKind::Quiet : BoardKind::Talkative;
    const auto place = heading.indexOf("buffer=");
    const std::size_t columns = place < 0 ? 128 : heading.mid(place + 7).toUInt();
    return FirmwareBench(kind, columns);
}

} // namespace

void BoardProtocolDocumentTest::initTestCase()
{
    QFile file(qEnvironmentVariable("QOVELMOR_SOURCE_DIR") + u"/docs/board-protocol.md"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    document_ = file.readAll();
}

void BoardProtocolDocumentTest::exchange_goesAsWritten_data()
{
    QTest::addColumn<QByteArray>("heading");
    QTest::addColumn<QByteArray>("text");

    static const QRegularExpression block(u"^```board(.*)\\n((?:.*\\n)*?)```$"_s,
                                          QRegularExpression::MultilineOption);
    int number = 0;
    for (const auto &match : block.globalMatch(QString::fromUtf8(document_))) {
        QTest::addRow("exchange %d", ++number)
            << match.captured(1).toUtf8() << match.captured(2).toUtf8();
    }
    QCOMPARE(number, 9);
}

void BoardProtocolDocumentTest::exchange_goesAsWritten()
{
    QFETCH(QByteArray, heading);
    QFETCH(QByteArray, text);
    FirmwareBench bench = benchFor(heading);
    QByteArray written;
    QByteArray heard;
    for (const QByteArray &line : text.split('\n')) {
        const QByteArray bytes = unescaped(line.mid(2));
        if (line.startsWith("> ")) {
            QCOMPARE(heard, written);
            heard += bench.send(bytes.toStdString());
        } else if (line.startsWith("< ")) {
            written += bytes;
        } else if (line.startsWith("+ ")) {
            bench.wait(std::chrono::milliseconds(bytes.split(' ').first().toInt()));
        } else {
            QVERIFY2(line.isEmpty(), line.constData());
        }
    }
    QCOMPARE(heard, written);
}

void BoardProtocolDocumentTest::everyCommandAndVariable_standsInATable()
{
    for (const auto group : {generalCommands(), displayCommands(), panelCommands(), romCommands(),
                             infraredCommands()}) {
        for (const BoardCommand &command : group) {
            const QByteArray name(command.name.data(), qsizetype(command.name.size()));
            const bool stands =
                document_.contains("| `" + name + "` |") || document_.contains("| `" + name + " ");
            QVERIFY2(stands, name.constData());
        }
    }
    for (const VariableRule &rule : BoardVariables::rules()) {
        const QByteArray name(rule.name.data(), qsizetype(rule.name.size()));
        QVERIFY2(document_.contains("| `" + name + "` |"), name.constData());
    }
}

QTEST_APPLESS_MAIN(BoardProtocolDocumentTest)
#include "boardprotocoldocument_test.moc"
