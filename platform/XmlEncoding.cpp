// SPDX-License-Identifier: MIT
#include "platform/XmlEncoding.h"

#include "platform/JapaneseBytes.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

namespace qovelmor {

namespace {

/// How far into a document its XML declaration may reach.
constexpr qsizetype longestDeclaration = 1024;

struct Mark
{
    QByteArray bytes;
    const char *encoding;
};

/// The byte order marks; the longer one first, where one begins with the other.
const std::array<Mark, 5> &byteOrderMarks()
{
    static const std::array<Mark, 5> marks{
        Mark{QByteArray("\xef\xbb\xbf", 3), "UTF-8"},
        Mark{QByteArray("\xff\xfe\0\0", 4), "UTF-32LE"},
        Mark{QByteArray("\0\0\xfe\xff", 4), "UTF-32BE"},
        Mark{QByteArray("\xff\xfe", 2), "UTF-16LE"},
        Mark{QByteArray("\xfe\xff", 2), "UTF-16BE"},
    };
    return marks;
}

/// How a document without a mark that begins with "<" shows that it is UTF-16.
const char *encodingByPattern(const QByteArray &bytes)
{
    if (bytes.startsWith(QByteArray("<\0", 2)))
        return "UTF-16LE";
    if (bytes.startsWith(QByteArray("\0<", 2)))
        return "UTF-16BE";
    return nullptr;
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// The value of encoding="…" in the XML declaration; blanks before the declaration are forgiven.
QByteArray declaredEncoding(const QByteArray &bytes)
{
    const auto start = std::find_if_not(bytes.begin(), bytes.end(), isBlank) - bytes.begin();
    const QByteArray head = bytes.mid(start, longestDeclaration);
    if (!head.startsWith("<?xml"))
        return {};
    const QByteArray declaration = head.left(head.indexOf("?>"));
    const qsizetype name = declaration.indexOf("encoding");
    if (name < 0)
        return {};
    const QByteArray value = declaration.mid(declaration.indexOf('=', name) + 1).trimmed();
    if (value.isEmpty() || (value[0] != '"' && value[0] != '\''))
        return {};
    return value.mid(1, value.indexOf(value[0], 1) - 1);
}

/// XML's own rule for names of encodings; it also keeps iconv's "//IGNORE" out.
bool isEncodingName(const QByteArray &name)
{
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '-' || c == '_' || c == '.' || c == ':';
    });
}

bool isOneOf(const QByteArray &name, std::initializer_list<const char *> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// The system's converter for a name: what calls itself Shift_JIS or EUC-JP on the net is the
/// desktop's code page, whose characters the converters of these names refuse.
QByteArray converterName(const QByteArray &encoding)
{
    const QByteArray name = encoding.toUpper();
    if (isOneOf(name, {"SHIFT_JIS", "SHIFT-JIS", "SJIS", "X-SJIS", "WINDOWS-31J", "MS_KANJI",
                       "CSSHIFTJIS", "MS932"}))
        return "CP932";
    if (isOneOf(name, {"EUC-JP", "X-EUC-JP", "EUCJP", "EUC_JP"}))
        return "EUC-JP-MS";
    if (name == "UTF-16") // with a byte order mark it would not have come here
        return "UTF-16BE";
    return name;
}

bool isUtf8(const QByteArray &encoding)
{
    return isOneOf(encoding.toUpper(), {"UTF-8", "UTF8", "US-ASCII", "ASCII"});
}

class Converter
{
public:
    explicit Converter(const QByteArray &encoding)
        : handle_(::iconv_open("UTF-8", encoding.constData()))
    {}
    ~Converter()
    {
        if (isOpen())
            ::iconv_close(handle_);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    /// False when the bytes are not whole text; `out` then holds what came before.
    bool convert(const QByteArray &bytes, QByteArray &out)
    {
        auto *from = const_cast<char *>(bytes.constData()); // iconv only reads it
        auto left = static_cast<size_t>(bytes.size());
        qsizetype written = 0;
        out.resize(bytes.size() + bytes.size() / 2 + 16);
        while (left > 0) {
            char *to = out.data() + written;
            auto room = static_cast<size_t>(out.size() - written);
            const size_t result = ::iconv(handle_, &from, &left, &to, &room);
            const int error = errno;
            written = to - out.constData();
            if (result != static_cast<size_t>(-1))
                continue;
            if (error != E2BIG) {
                out.resize(written);
                return false;
            }
            out.resize(out.size() * 2);
        }
        out.resize(written);
        return true;
    }

private:
    iconv_t handle_;
};

bool isKnown(const QByteArray &encoding)
{
    if (!isEncodingName(encoding))
        return false;
    return isUtf8(encoding) || Converter(converterName(encoding)).isOpen();
}

/// The bytes as a document in code page 932, when that reads more characters than the converter of
/// the document's own encoding.
std::optional<QByteArray> asCp932(const QByteArray &bytes, const QByteArray &encoding)
{
    const QByteArray name = encoding.toUpper();
    if (isOneOf(name, {"ISO-2022-JP", "CSISO2022JP", "JIS"}))
        return iso2022JpToCp932(bytes);
    if (converterName(encoding) == "EUC-JP-MS")
        return eucJpToCp932(bytes);
    return std::nullopt;
}

XmlText convert(const QByteArray &bytes, const QByteArray &encoding)
{
    XmlText text;
    text.encoding = encoding;
    if (!isKnown(encoding)) {
        text.failure = XmlText::Failure::UnknownEncoding;
        text.line = 1;
        return text;
    }
    if (isUtf8(encoding)) {
        text.utf8 = bytes; // the parser checks it
        return text;
    }
    text.isConverted = true;
    if (const auto replaced = asCp932(bytes, encoding)) {
        if (Converter("CP932").convert(*replaced, text.utf8))
            return text;
    }
    if (!Converter(converterName(encoding)).convert(bytes, text.utf8)) {
        text.failure = XmlText::Failure::BrokenText;
        text.line = static_cast<int>(text.utf8.count('\n')) + 1;
    }
    return text;
}

XmlText decodeUnmarked(const QByteArray &bytes, const QByteArray &charset)
{
    const char *pattern = encodingByPattern(bytes);
    const QByteArray upper = charset.toUpper();
    if (isKnown(charset) && !(pattern && upper == "UTF-16")) {
        XmlText text = convert(bytes, charset);
        text.isConverted = true; // whatever the declaration says
        return text;
    }
    if (pattern)
        return convert(bytes, pattern);
    const QByteArray declared = declaredEncoding(bytes);
    // A declaration that could be read byte by byte is no UTF-16, whatever it claims. The parser
    // gets the bytes as they are, and refuses the document for what it claims.
    if (declared.isEmpty() || declared.toUpper().startsWith("UTF-16"))
        return convert(bytes, "UTF-8");
    return convert(bytes, declared);
}

} // namespace

XmlText decodeXml(const QByteArray &bytes, const QByteArray &charset)
{
    for (const Mark &mark : byteOrderMarks()) {
        if (!bytes.startsWith(mark.bytes))
            continue;
        XmlText text = convert(bytes.mid(mark.bytes.size()), mark.encoding);
        text.isConverted = true;
        return text;
    }
    return decodeUnmarked(bytes, charset);
}

} // namespace qovelmor
