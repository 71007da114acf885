// SPDX-License-Identifier: MIT
#include "render/FontxFile.h"

#include "platform/SystemLog.h"
#include "platform/TextEncoding.h"

#include <QFile>

#include <sys/stat.h>

#include <map>
#include <mutex>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace qovelmor {

namespace {

constexpr int nameOffset = 6;
constexpr int nameLength = 8;
constexpr int widthOffset = 14;
constexpr int heightOffset = 15;
constexpr int byteDataOffset = 17;
constexpr int blockCountOffset = 17;
constexpr int blockTableOffset = 18;
constexpr int blockEntrySize = 4;
constexpr int glyphsOfByteFont = 256;

int byteAt(const QByteArray &bytes, qsizetype index)
{
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

int wordAt(const QByteArray &bytes, qsizetype index)
{
    return byteAt(bytes, index) | byteAt(bytes, index + 1) << 8;
}

/// Which state of which file: a font that is replaced on the disk is read again.
struct FileState
{
    FontxFile::Kind kind;
    QString path;
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;

    auto key() const
    {
        return std::tie(exists, device, inode, size, changedSeconds, changedNanoseconds);
    }
};

FileState stateOf(FontxFile::Kind kind, const QString &path)
{
    FileState state{.kind = kind, .path = path};
    struct stat found = {};
    if (::stat(QFile::encodeName(path).constData(), &found) == 0 && S_ISREG(found.st_mode)) {
        state.exists = true;
        state.device = found.st_dev;
        state.inode = found.st_ino;
        state.size = found.st_size;
        state.changedSeconds = found.st_mtim.tv_sec;
        state.changedNanoseconds = found.st_mtim.tv_nsec;
    }
    return state;
}

std::shared_ptr<const FontxFile> readFile(const FileState &state)
{
    QFile file(state.path);
    if (!state.exists || !file.open(QIODevice::ReadOnly))
        return std::make_shared<const FontxFile>();
    const QByteArray bytes = file.read(FontxFile::maxFileSize);
    QString problem;
    auto font = std::make_shared<const FontxFile>(state.kind, bytes, &problem);
    if (file.error() != QFileDevice::NoError)
        problem = file.errorString();
    else if (state.size > FontxFile::maxFileSize)
        problem = u"longer than any font, the rest is ignored"_s;
    if (!problem.isEmpty())
        systemLog(logRender(), u"FontxFile: "_s + state.path + u": "_s + problem);
    return font;
}

} // namespace

std::shared_ptr<const FontxFile> FontxFile::load(Kind kind, const QString &path)
{
    struct Entry
    {
        FileState state;
        std::shared_ptr<const FontxFile> font;
    };
    static std::mutex mutex;
    static std::map<std::pair<Kind, QString>, Entry> entries;

    const FileState state = stateOf(kind, path);
    const std::lock_guard lock(mutex);
    Entry &entry = entries.try_emplace({kind, path}).first->second;
    if (!entry.font || entry.state.key() != state.key())
        entry = {state, readFile(state)};
    return entry.font;
}

FontxFile::FontxFile(Kind kind, const QByteArray &bytes, QString *problem)
    : isLoaded_(true)
    , name_(decodeShiftJis(bytes.mid(nameOffset, nameLength)))
    , size_(byteAt(bytes, widthOffset), byteAt(bytes, heightOffset))
{
    QString found;
    if (kind == Kind::DoubleByte) {
        found = readBlocks(bytes);
    } else {
        data_ = bytes.mid(byteDataOffset);
        if (data_.size() < glyphsOfByteFont * byteGlyphSize)
            found = u"cut short, the missing glyphs are blank"_s;
    }
    if (bytes.size() <= byteDataOffset)
        found = u"too short for a font"_s;
    if (problem)
        *problem = found;
}

QString FontxFile::readBlocks(const QByteArray &bytes)
{
    QString problem;
    const int count = byteAt(bytes, blockCountOffset);
    std::int64_t glyphs = 0;
    std::int64_t needed = 0;
    for (int i = 0; i < count; ++i) {
        const qsizetype entry = blockTableOffset + blockEntrySize * i;
        const int start = wordAt(bytes, entry);
        const int end = wordAt(bytes, entry + 2);
        blocks_.push_back({start, end, glyphs});
        glyphs += end + 1 - start;
        needed = std::max(needed, glyphs);
        if (end < start)
            problem = u"block %1 ends before it starts"_s.arg(i);
    }
    data_ = bytes.mid(blockTableOffset + blockEntrySize * count);
    if (data_.size() < needed * wordGlyphSize)
        problem = u"cut short, the missing glyphs are blank"_s;
    return problem;
}

int FontxFile::blockOfCode(int code) const
{
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
        if (blocks_[i].startCode <= code && code <= blocks_[i].endCode)
            return static_cast<int>(i);
    }
    return -1;
}

QByteArray FontxFile::byteGlyph(int code) const
{
    return glyphAt(std::int64_t{code} * byteGlyphSize, byteGlyphSize);
}

QByteArray FontxFile::wordGlyph(int code) const
{
    const int block = blockOfCode(code);
    if (block < 0)
        return QByteArray(wordGlyphSize, '\0');
    const FontxBlock &found = blocks_[static_cast<std::size_t>(block)];
    return glyphAt((code - found.startCode + found.offsetNumber) * wordGlyphSize, wordGlyphSize);
}

QByteArray FontxFile::glyphAt(std::int64_t offset, int length) const
{
    if (offset < 0 || offset + length > data_.size())
        return QByteArray(length, '\0');
    return QByteArray::fromRawData(data_.constData() + offset, length);
}

} // namespace qovelmor
