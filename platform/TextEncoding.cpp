// SPDX-License-Identifier: MIT
#include "platform/TextEncoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace qovelmor {

namespace {

constexpr const char *codePage =
    "CP932"; // the converter named SHIFT_JIS turns "\" and "~" into others
constexpr const char *unicodeForm = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE";

// A converter of the C library; one conversion in one direction.
class Converter
{
public:
    Converter(const char *to, const char *from) : handle_(::iconv_open(to, from)) {}
    ~Converter()
    {
        if (isOpen())
            ::iconv_close(handle_);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool isOpen() const { return handle_ != iconv_t(-1); }

    /// Appends what `input` gives to `output` and takes it off `input`; stops at the first sequence
    /// that cannot be converted. True when all of it was.
    bool convert(QByteArrayView &input, QByteArray &output)
    {
        std::array<char, 1024> piece;
        while (!input.isEmpty()) {
            char *from = const_cast<char *>(input.data()); // only read, says POSIX
            auto left = static_cast<std::size_t>(input.size());
            char *to = piece.data();
            std::size_t room = piece.size();
            const bool isDone = ::iconv(handle_, &from, &left, &to, &room) != std::size_t(-1);
            const bool isFull = !isDone && errno == E2BIG;
            output.append(piece.data(), to - piece.data());
            input = input.last(static_cast<qsizetype>(left));
            if (!isDone && !isFull)
                return false;
        }
        return true;
    }

private:
    iconv_t handle_;
};

// Characters that Unicode has twice: the code page's converter knows the right one of each pair.
constexpr std::array<std::pair<char16_t, char16_t>, 8> twins{{
    {0x00A0, u' '},   // no-break space
    {0x00A2, 0xFFE0}, // cent
    {0x00A3, 0xFFE1}, // pound
    {0x00AC, 0xFFE2}, // not
    {0x2014, 0x2015}, // em dash
    {0x2016, 0x2225}, // double vertical line
    {0x2212, 0xFF0D}, // minus
    {0x301C, 0xFF5E}, // wave dash
}};

QString withTwinsReplaced(const QString &text)
{
    const auto twinOf = [](QChar character) {
        const auto twin = std::find_if(twins.begin(), twins.end(), [&](const auto &pair) {
            return pair.first == character.unicode();
        });
        return twin == twins.end() ? character : QChar(twin->second);
    };
    QString replaced(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), replaced.begin(), twinOf);
    return replaced;
}

QByteArrayView bytesOf(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()),
            text.size() * qsizetype{sizeof(char16_t)}};
}

// The bytes of the code point at the front: four for a surrogate pair.
qsizetype codePointSize(QByteArrayView rest)
{
    const auto *units = reinterpret_cast<const char16_t *>(rest.data());
    const bool isPair =
        rest.size() >= 4 && QChar::isHighSurrogate(units[0]) && QChar::isLowSurrogate(units[1]);
    return isPair ? 4 : 2;
}

} // namespace

std::optional<QByteArray> encodeShiftJis(const QString &text)
{
    Converter converter(codePage, unicodeForm);
    if (!converter.isOpen())
        return std::nullopt;
    const QString replaced = withTwinsReplaced(text);
    QByteArrayView rest = bytesOf(replaced);
    QByteArray bytes;
    return converter.convert(rest, bytes) ? std::optional(bytes) : std::nullopt;
}

QByteArray encodeShiftJisLossy(const QString &text)
{
    constexpr char square[] = "\x81\xA0"; // "□"
    Converter converter(codePage, unicodeForm);
    if (!converter.isOpen())
        return text.toLatin1();
    const QString replaced = withTwinsReplaced(text);
    QByteArrayView rest = bytesOf(replaced);
    QByteArray bytes;
    while (!converter.convert(rest, bytes)) {
        bytes.append(square);
        rest = rest.sliced(codePointSize(rest));
    }
    return bytes;
}

QString decodeShiftJis(const QByteArray &bytes)
{
    Converter converter(unicodeForm, codePage);
    if (!converter.isOpen())
        return QString::fromLatin1(bytes);
    const QChar unreadable(QChar::ReplacementCharacter);
    QByteArrayView rest(bytes);
    QByteArray units;
    // Only the first byte of a bad pair is given up: the second may be a line end.
    while (!converter.convert(rest, units)) {
        units.append(reinterpret_cast<const char *>(&unreadable), sizeof unreadable);
        rest = rest.sliced(1);
    }
    return QString(reinterpret_cast<const QChar *>(units.constData()),
                   units.size() / qsizetype{sizeof(QChar)});
}

} // namespace qovelmor
