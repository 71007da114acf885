// SPDX-License-Identifier: MIT
#include "board/FarmReply.h"

#include "board/HexText.h"

#include <limits>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype tagLength = 2;

bool isTagged(QStringView text)
{
    return text.startsWith(u"D ") || text.startsWith(u"V ") || text.startsWith(u"E ");
}

QString rangeFault(const QString &name, TextRange range, QStringView text)
{
    return u"%1:stringFarmResult:range={%2, %3},length=%4"_s.arg(name)
        .arg(range.location)
        .arg(range.length)
        .arg(text.size());
}

QString payloadOfTaggedLine(QStringView text, QStringList &faults)
{
    const QStringView untagged = textWithoutTag(text, faults);
    const qsizetype carriageReturn = untagged.indexOf(u'\r');
    if (carriageReturn < 0)
        return untagged.toString();
    return textBefore(untagged, {carriageReturn, 1}, faults).toString();
}

} // namespace

FarmPayload farmPayload(const QString &reply, const std::function<bool()> &timeIsUp)
{
    FarmPayload payload;
    QStringView rest = reply;
    for (;;) {
        if (timeIsUp()) {
            payload.timeIsUp = true;
            return payload;
        }
        if (isTagged(rest)) {
            payload.text = payloadOfTaggedLine(rest, payload.faults);
            return payload;
        }
        const qsizetype lineFeed = rest.indexOf(u'\n');
        if (lineFeed < 0) {
            payload.text = u""_s;
            return payload;
        }
        rest = textAfter(rest, {lineFeed, 1}, payload.faults);
    }
}

QStringView textAfter(QStringView text, TextRange range, QStringList &faults)
{
    if (range.end() <= text.size())
        return text.sliced(range.end());
    faults.append(rangeFault(u"RangeError1"_s, range, text));
    return text;
}

QStringView textWithoutTag(QStringView text, QStringList &faults)
{
    if (text.size() >= tagLength)
        return text.sliced(tagLength);
    faults.append(u"LengthError:stringFarmResult:length=%1"_s.arg(text.size()));
    return text;
}

QStringView textBefore(QStringView text, TextRange range, QStringList &faults)
{
    if (range.location <= text.size())
        return text.first(range.location);
    faults.append(rangeFault(u"RangeError2"_s, range, text));
    return text;
}

int leadingInteger(QStringView text)
{
    constexpr qint64 past = qint64(std::numeric_limits<int>::max()) + 1;
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace())
        ++at;
    const bool negative = at < text.size() && text[at] == u'-';
    if (negative || (at < text.size() && text[at] == u'+'))
        ++at;
    qint64 value = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at)
        value = qMin(value * 10 + (text[at].unicode() - u'0'), past);
    return static_cast<int>(negative ? -value : qMin(value, past - 1));
}

int farmInteger(const std::optional<QString> &payload)
{
    return payload ? leadingInteger(*payload) : -1;
}

int farmIntegerAfter(const std::optional<QString> &payload, const QString &key)
{
    if (!payload)
        return -1;
    const qsizetype at = payload->indexOf(key);
    if (at < 0 || at + key.size() >= payload->size())
        return -1;
    return leadingInteger(QStringView(*payload).sliced(at + key.size()));
}

QByteArray farmWords(const std::optional<QString> &payload)
{
    QByteArray bytes;
    if (!payload)
        return bytes;
    for (const QStringView piece : QStringView(*payload).split(u' ')) {
        const auto word = static_cast<unsigned>(intValueWithHexString(piece));
        bytes += static_cast<char>(word >> 8U);
        bytes += static_cast<char>(word);
    }
    return bytes;
}

QStringList romDataLines(const QString &reply)
{
    constexpr qsizetype addressEnd = 17;
    QStringList columns;
    for (const QStringView line : QStringView(reply).split(u'\n')) {
        if (!line.contains(u"D rom data ") || line.size() < addressEnd)
            continue;
        const QStringView data = line.sliced(addressEnd);
        const qsizetype carriageReturn = data.indexOf(u'\r');
        if (carriageReturn >= 0)
            columns.append(data.first(carriageReturn).toString());
    }
    return columns;
}

QByteArray romDataBytes(const QStringList &lines)
{
    constexpr qsizetype bytesPerLine = 16;
    qsizetype total = 0;
    for (const QString &line : lines)
        total += line.count(u' ') + 1;
    QByteArray bytes(total, '\0');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        qsizetype place = i * bytesPerLine;
        for (const QStringView piece : QStringView(lines[i]).split(u' ')) {
            if (place < total)
                bytes[place] = static_cast<char>(intValueWithHexString(piece));
            ++place;
        }
    }
    return bytes;
}

QString helpText(const QString &reply)
{
    QStringList lines = reply.split(u'\n');
    lines.resize(qMax<qsizetype>(lines.size() - 2, 0));
    for (QString &line : lines) {
        const qsizetype tag = line.indexOf(u"V "_s);
        if (tag >= 0)
            line.remove(0, tag + tagLength);
    }
    return lines.join(u'\n');
}

} // namespace qovelmor
