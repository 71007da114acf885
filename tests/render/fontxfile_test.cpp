// SPDX-License-Identifier: MIT
#include "render/FontxFile.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <thread>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;
using Kind = FontxFile::Kind;

namespace {

QByteArray header(const QByteArray &name, int width, int height)
{
    QByteArray bytes = "FONTX2" + name.leftJustified(8, ' ', true);
    bytes += static_cast<char>(width);
    bytes += static_cast<char>(height);
    bytes += '\1';
    return bytes;
}

/// A double-byte font whose blocks are given as (start, end); glyph n is filled with the byte n.
QByteArray wordFont(const std::vector<std::pair<int, int>> &blocks, int glyphs)
{
    QByteArray bytes = header("word", 16, 16);
    bytes += static_cast<char>(blocks.size());
    for (const auto &[start, end] : blocks) {
        for (const int code : {start, end}) {
            bytes += static_cast<char>(code & 0xFF);
            bytes += static_cast<char>(code >> 8);
        }
    }
    for (int n = 0; n < glyphs; ++n)
        bytes += QByteArray(FontxFile::wordGlyphSize, static_cast<char>(n));
    return bytes;
}

QByteArray byteFont()
{
    QByteArray bytes = header("byte", 8, 16);
    for (int n = 0; n < 256; ++n)
        bytes += QByteArray(FontxFile::byteGlyphSize, static_cast<char>(n));
    return bytes;
}

const QByteArray blankByteGlyph(FontxFile::byteGlyphSize, '\0');
const QByteArray blankWordGlyph(FontxFile::wordGlyphSize, '\0');

} // namespace

class FontxFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void header_givesNameAndSize();
    void singleByteGlyphs_standByTheirCode();
    void blocks_areReadInFileOrder();
    void wordGlyphs_areFoundThroughTheBlocks();
    void overlappingBlocks_theFirstWins();
    void wrongFiles_data();
    void wrongFiles();
    void anyBytes_neverReadOutside();
    void cutAnywhere_everyGlyphHasItsSize();
    void cutAnywhere_nothingBehindTheBytesIsRead();
    void load_missingFileIsEmptyAndSilent();
    void load_badFileSaysSoOnce();
    void load_hugeFileIsCut();
    void load_whatIsNoPlainFileIsEmpty();
    void load_readsAFileOnce();
    void load_readsAChangedFileAgain();
    void load_fromSeveralThreads();

private:
    QString write(const QString &name, const QByteArray &bytes);

    QTemporaryDir folder_;
};

QString FontxFileTest::write(const QString &name, const QByteArray &bytes)
{
    QFile file(folder_.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write the test's font");
    return file.fileName();
}

void FontxFileTest::header_givesNameAndSize()
{
    const FontxFile font(Kind::SingleByte, header("\x93\x8C\x89_", 8, 16));
    QVERIFY(font.isLoaded());
    // Eight bytes of Shift_JIS; trailing blanks are kept.
    QCOMPARE(font.name(), u"東雲    "_s);
    QCOMPARE(font.size(), QSizeF(8, 16));
}

void FontxFileTest::singleByteGlyphs_standByTheirCode()
{
    QString problem;
    const FontxFile font(Kind::SingleByte, byteFont(), &problem);
    QCOMPARE(problem, QString());
    QCOMPARE(font.byteGlyph(0x41), QByteArray(16, 'A'));
    QCOMPARE(font.byteGlyph(255), QByteArray(16, '\xFF'));
    QCOMPARE(font.byteGlyph(256), blankByteGlyph);
    QCOMPARE(font.byteGlyph(-1), blankByteGlyph);
}

void FontxFileTest::blocks_areReadInFileOrder()
{
    QString problem;
    const FontxFile font(Kind::DoubleByte, wordFont({{0x8140, 0x8143}, {0x889F, 0x889F}}, 5),
                         &problem);
    QCOMPARE(problem, QString());
    QCOMPARE(font.blocks().size(), std::size_t{2});
    QCOMPARE(font.blocks()[1].startCode, 0x889F);
    QCOMPARE(font.blocks()[1].endCode, 0x889F);
    QCOMPARE(font.blocks()[1].offsetNumber, std::int64_t{4});
}

void FontxFileTest::wordGlyphs_areFoundThroughTheBlocks()
{
    const FontxFile font(Kind::DoubleByte, wordFont({{0x8140, 0x8143}, {0x889F, 0x88A0}}, 6));
    QCOMPARE(font.wordGlyph(0x8140), QByteArray(32, '\0'));
    QCOMPARE(font.wordGlyph(0x8143), QByteArray(32, '\3'));
    QCOMPARE(font.wordGlyph(0x88A0), QByteArray(32, '\5'));
    QCOMPARE(font.blockOfCode(0x813F), -1);
    QCOMPARE(font.blockOfCode(0x8140), 0);
    QCOMPARE(font.blockOfCode(0x8144), -1);
    QCOMPARE(font.blockOfCode(0x889F), 1);
    QCOMPARE(font.wordGlyph(0x8144), blankWordGlyph);
}

void FontxFileTest::overlappingBlocks_theFirstWins()
{
    const FontxFile font(Kind::DoubleByte, wordFont({{0x8140, 0x8142}, {0x8141, 0x8141}}, 4));
    QCOMPARE(font.wordGlyph(0x8141), QByteArray(32, '\1'));
}

void FontxFileTest::wrongFiles_data()
{
    QTest::addColumn<bool>("isDoubleByte");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem");
    const QString shortFont = u"too short for a font"_s;
    const QString cut = u"cut short, the missing glyphs are blank"_s;
    QTest::newRow("nothing") << false << QByteArray() << shortFont;
    QTest::newRow("nothing, double-byte") << true << QByteArray() << shortFont;
    QTest::newRow("half a name") << true << QByteArray("FONTX2ab") << shortFont;
    QTest::newRow("header alone") << false << header("x", 8, 16) << shortFont;
    QTest::newRow("one glyph missing") << false << byteFont().chopped(1) << cut;
    QTest::newRow("block table cut") << true << wordFont({{1, 2}, {3, 4}}, 0).chopped(3) << cut;
    QTest::newRow("one dot row missing") << true << wordFont({{256, 257}}, 2).chopped(1) << cut;
    QTest::newRow("no glyph at all") << true << wordFont({{0, 0xFFFF}}, 0) << cut;
    QTest::newRow("a block that ends before it starts")
        << true << wordFont({{0x8150, 0x8140}, {0x8160, 0x8161}}, 2)
        << u"block 0 ends before it starts"_s;
    QTest::newRow("whole") << true << wordFont({{256, 257}}, 2) << QString();
    QTest::newRow("no blocks") << true << wordFont({}, 0) + "rest" << QString();
}

void FontxFileTest::wrongFiles()
{
    QFETCH(bool, isDoubleByte);
    QFETCH(QByteArray, bytes);
    QString found;
    const FontxFile font(isDoubleByte ? Kind::DoubleByte : Kind::SingleByte, bytes, &found);
    QTEST(found, "problem");
    for (int code = 0; code <= 0xFFFF; ++code) {
        if (isDoubleByte)
            QCOMPARE(font.wordGlyph(code).size(), FontxFile::wordGlyphSize);
        else
            QCOMPARE(font.byteGlyph(code).size(), FontxFile::byteGlyphSize);
    }
}

void FontxFileTest::anyBytes_neverReadOutside()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo() << "seed" << seed;
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 3000), '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        const FontxFile font(Kind::DoubleByte, bytes);
        for (int probe = 0; probe < 300; ++probe) {
            const QByteArray glyph = font.wordGlyph(static_cast<int>(random() % 0x10000));
            QCOMPARE(glyph.size(), FontxFile::wordGlyphSize);
            // Reading every byte lets the address sanitizer see a view that reaches outside.
            QVERIFY(std::count(glyph.begin(), glyph.end(), '\0') <= glyph.size());
        }
    }
}

void FontxFileTest::cutAnywhere_everyGlyphHasItsSize()
{
    const QByteArray whole = wordFont({{0x8140, 0x8144}, {0x889f, 0x88a2}}, 9);
    for (qsizetype size = 0; size < whole.size(); ++size) {
        for (const Kind kind : {Kind::SingleByte, Kind::DoubleByte}) {
            QString problem;
            const FontxFile font(kind, whole.first(size), &problem);
            QVERIFY2(!problem.isEmpty(), qPrintable(QString::number(size)));
            for (const int code : {0, 0x41, 255, 0x8140, 0x8144, 0x88a2, 0xffff}) {
                QCOMPARE(font.byteGlyph(code).size(), 16);
                QCOMPARE(font.wordGlyph(code).size(), 32);
            }
        }
    }
}

// Behind the bytes the memory ends, so that reading one of them too many is a crash.
void FontxFileTest::cutAnywhere_nothingBehindTheBytesIsRead()
{
    const std::size_t page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void *const memory =
        ::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QVERIFY(memory != MAP_FAILED);
    char *const edge = static_cast<char *>(memory) + page;
    QCOMPARE(::mprotect(edge, page, PROT_NONE), 0);
    const QByteArray whole = wordFont({{0x8140, 0x8142}, {0x889F, 0x88A0}}, 5);
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        char *const start = edge - size;
        std::copy_n(whole.constData(), size, start);
        for (const Kind kind : {Kind::SingleByte, Kind::DoubleByte}) {
            const FontxFile font(kind, QByteArray::fromRawData(start, size));
            QCOMPARE(font.wordGlyph(0x88A0).size(), FontxFile::wordGlyphSize);
            QCOMPARE(font.byteGlyph(255).size(), FontxFile::byteGlyphSize);
        }
    }
    ::munmap(memory, 2 * page);
}

void FontxFileTest::load_missingFileIsEmptyAndSilent()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const auto font = FontxFile::load(Kind::DoubleByte, folder_.filePath(u"missing.fnt"_s));
    QVERIFY(!font->isLoaded());
    QVERIFY(font->name().isNull());
    QCOMPARE(font->size(), QSizeF(0, 0));
    QVERIFY(font->data().isNull());
    QCOMPARE(font->wordGlyph(0x8140), blankWordGlyph);
    QCOMPARE(font->byteGlyph('A'), blankByteGlyph);
    QVERIFY(!FontxFile::load(Kind::SingleByte, folder_.path())->isLoaded());
}

void FontxFileTest::load_badFileSaysSoOnce()
{
    const QString path = write(u"cut.fnt"_s, byteFont().left(200));
    const QString line = u"FontxFile: "_s + path + u": cut short, the missing glyphs are blank"_s;
    QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const auto font = FontxFile::load(Kind::SingleByte, path);
    QCOMPARE(FontxFile::load(Kind::SingleByte, path), font);
    QCOMPARE(font->byteGlyph(3), QByteArray(16, '\3'));
    QCOMPARE(font->byteGlyph(200), blankByteGlyph);
}

void FontxFileTest::load_hugeFileIsCut()
{
    const QString path = write(u"huge.fnt"_s, byteFont());
    QVERIFY(QFile::resize(path, qint64{8} * 1024 * 1024 * 1024)); // a hole, no disk space
    const QString line = u"FontxFile: "_s + path + u": longer than any font, the rest is ignored"_s;
    QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
    const auto font = FontxFile::load(Kind::SingleByte, path);
    QCOMPARE(font->byteGlyph('A'), QByteArray(16, 'A'));
    QVERIFY(font->data().size() <= FontxFile::maxFileSize);
}

void FontxFileTest::load_whatIsNoPlainFileIsEmpty()
{
    const QString pipe = folder_.filePath(u"pipe.fnt"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &path : {u"/dev/zero"_s, folder_.path(), pipe})
        QVERIFY2(!FontxFile::load(Kind::SingleByte, path)->isLoaded(), qPrintable(path));
}

void FontxFileTest::load_readsAFileOnce()
{
    const QString path = write(u"once.fnt"_s, byteFont());
    const auto font = FontxFile::load(Kind::SingleByte, path);
    QCOMPARE(FontxFile::load(Kind::SingleByte, path).get(), font.get());
    // The same file in the other role is another font.
    QVERIFY(FontxFile::load(Kind::DoubleByte, path).get() != font.get());
}

void FontxFileTest::load_readsAChangedFileAgain()
{
    const QString path = write(u"changed.fnt"_s, byteFont());
    const auto before = FontxFile::load(Kind::SingleByte, path);
    QVERIFY(QFile::remove(path));
    QVERIFY(!FontxFile::load(Kind::SingleByte, path)->isLoaded());
    write(u"changed.fnt"_s, byteFont().replace("byte", "BYTE"));
    QCOMPARE(FontxFile::load(Kind::SingleByte, path)->name(), u"BYTE    "_s);
    QCOMPARE(before->name(), u"byte    "_s);
}

void FontxFileTest::load_fromSeveralThreads()
{
    const QString path = write(u"threads.fnt"_s, byteFont());
    std::array<std::shared_ptr<const FontxFile>, 4> fonts;
    {
        std::vector<std::jthread> threads;
        for (auto &font : fonts)
            threads.emplace_back(
                [&font, &path] { font = FontxFile::load(Kind::SingleByte, path); });
    }
    for (const auto &font : fonts)
        QCOMPARE(font.get(), fonts.front().get());
}

QTEST_APPLESS_MAIN(FontxFileTest)
#include "fontxfile_test.moc"
