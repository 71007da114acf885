// SPDX-License-Identifier: MIT
#include "platform/PropertyListWriter.h"

#include <QStringBuilder>

#include <algorithm>
#include <cmath>

namespace qovelmor {

namespace {

constexpr QByteArrayView head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                "<plist version=\"1.0\">\n";
constexpr QByteArrayView foot = "</plist>\n";

// What the production "Char" of XML 1.0 leaves out; surrogates are toUtf8()'s business.
bool isForbiddenInXml(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
}

bool isMarkup(QChar c)
{
    return c == u'<' || c == u'>' || c == u'&';
}

bool needsCare(QChar c)
{
    return isMarkup(c) || isForbiddenInXml(c);
}

QStringView entityOf(QChar markup)
{
    return markup == u'<' ? u"&lt;" : markup == u'>' ? u"&gt;" : u"&amp;";
}

// For each entity the library that reads moves all that is left of the piece of text: half an hour
// for the millions of "&" that one feed may send. An empty section ends a piece.
QString escaped(const QString &text)
{
    constexpr int entitiesOfPiece = 64;
    int entities = 0;
    QString result;
    result.reserve(text.size() + text.size() / 8);
    for (const QChar c : text) {
        if (!isMarkup(c)) {
            result += isForbiddenInXml(c) ? QChar(QChar::ReplacementCharacter) : c;
            continue;
        }
        result += entityOf(c);
        if (++entities % entitiesOfPiece == 0)
            result += u"<![CDATA[]]>";
    }
    return result;
}

// In UTF-8, with its share of an empty section.
qint64 mostBytesOf(QChar c)
{
    constexpr qint64 bytesOfMarkup = 6;
    const char16_t unit = c.unicode();
    if (isMarkup(c))
        return bytesOfMarkup;
    if (unit < 0x80 && !isForbiddenInXml(c))
        return 1;
    return unit >= 0x80 && unit < 0x800 ? 2 : 3;
}

QByteArray xmlText(const QString &text)
{
    return std::none_of(text.begin(), text.end(), needsCare) ? text.toUtf8()
                                                             : escaped(text).toUtf8();
}

// The format's readers keep dates as 32 bits of seconds from the epoch on.
QDateTime withinFormat(const QDateTime &date)
{
    constexpr qint64 epoch = propertyListEpoch;
    constexpr qint64 limit = 2'145'000'000; // about 68 years to both sides
    const qint64 seconds = date.isValid() ? date.toSecsSinceEpoch() : epoch;
    return QDateTime::fromSecsSinceEpoch(std::clamp(seconds, epoch - limit, epoch + limit),
                                         Qt::UTC);
}

} // namespace

qint64 PropertyListWriter::mostBytesOf(QStringView text)
{
    qint64 bytes = 0;
    for (const QChar c : text)
        bytes += qovelmor::mostBytesOf(c);
    return bytes;
}

PropertyListWriter::PropertyListWriter(const PropertyListLimits &limits) : limits_(limits) {}

bool PropertyListWriter::write(const PropertyValue &root)
{
    document_ = head.toByteArray();
    elements_ = 1;
    deepest_ = 1;
    writeValue(root);
    document_ += foot;
    return isWithinLimits();
}

bool PropertyListWriter::isWithinLimits() const
{
    return document_.size() <= limits_.bytes && deepest_ <= limits_.depth &&
           elements_ <= limits_.elements;
}

// What is refused in the end is not written to its end: a value of any depth has to be survived.
void PropertyListWriter::writeValue(const PropertyValue &value)
{
    if (isWithinLimits())
        std::visit(*this, value.variant());
}

void PropertyListWriter::operator()(bool flag)
{
    writeEmptyElement(flag ? "true" : "false");
}

void PropertyListWriter::operator()(qint64 number)
{
    writeElement("integer", QByteArray::number(number));
}

void PropertyListWriter::operator()(double number)
{
    constexpr int digits = 17; // every real reads back equal
    writeElement("real", QByteArray::number(std::isfinite(number) ? number : 0.0, 'g', digits));
}

void PropertyListWriter::operator()(const QString &text)
{
    writeElement("string", xmlText(text));
}

void PropertyListWriter::operator()(const QByteArray &bytes)
{
    writeElement("data", bytes.toBase64());
}

void PropertyListWriter::operator()(const QDateTime &date)
{
    writeElement("date", withinFormat(date).toString(Qt::ISODate).toLatin1());
}

void PropertyListWriter::operator()(const PropertyValue::Shared<PropertyArray> &items)
{
    if (items->empty()) {
        writeEmptyElement("array");
        return;
    }
    beginElement("array");
    for (const PropertyValue &item : *items)
        writeValue(item);
    endElement("array");
}

void PropertyListWriter::operator()(const PropertyValue::Shared<PropertyDictionary> &dictionary)
{
    if (dictionary->isEmpty()) {
        writeEmptyElement("dict");
        return;
    }
    beginElement("dict");
    for (const PropertyEntry &entry : dictionary->entries()) {
        writeElement("key", xmlText(entry.key));
        writeValue(entry.value);
    }
    endElement("dict");
}

void PropertyListWriter::writeElement(QByteArrayView name, QByteArrayView content)
{
    beginLine();
    document_ += '<' % name % '>' % content % "</" % name % ">\n";
}

void PropertyListWriter::writeEmptyElement(QByteArrayView name)
{
    beginLine();
    document_ += '<' % name % "/>\n";
}

void PropertyListWriter::beginElement(QByteArrayView name)
{
    beginLine();
    document_ += '<' % name % ">\n";
    ++depth_;
}

void PropertyListWriter::endElement(QByteArrayView name)
{
    --depth_;
    document_.append(depth_, '\t');
    document_ += "</" % name % ">\n";
}

// One element begins: within the outermost one, and within those that are open.
void PropertyListWriter::beginLine()
{
    ++elements_;
    deepest_ = std::max(deepest_, depth_ + 2);
    document_.append(depth_, '\t');
}

} // namespace qovelmor
