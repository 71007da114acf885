// SPDX-License-Identifier: MIT
#include "board/HexText.h"

namespace qovelmor {

namespace {

constexpr qsizetype bytesPerWordText = 32;
constexpr qsizetype bytesPerByteText = 16;

unsigned byteAt(const QByteArray &bytes, qsizetype index)
{
    return static_cast<quint8>(bytes[index]);
}

QChar digit(unsigned value)
{
    return QChar(u"0123456789abcdef"[value & 0xFU]);
}

void appendByte(QString &text, unsigned value)
{
    text += digit(value >> 4U);
    text += digit(value);
}

} // namespace

QStringList wordStringsWithData(const QByteArray &bytes)
{
    QStringList texts;
    texts.reserve((bytes.size() + bytesPerWordText - 1) / bytesPerWordText);
    for (qsizetype start = 0; start < bytes.size(); start += bytesPerWordText) {
        QString text;
        text.reserve(5 * bytesPerWordText / 2);
        const qsizetype end = qMin(start + bytesPerWordText, bytes.size());
        for (qsizetype i = start; i < end; ++i) {
            appendByte(text, byteAt(bytes, i));
            if (i % 2 == 1 || i + 1 == end)
                text += u' ';
        }
        texts.append(text);
    }
    return texts;
}

QStringList byteStringsWithData(const QByteArray &bytes)
{
    QStringList texts;
    QString text;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % bytesPerByteText == 0) {
            texts.append(text);
            text.clear();
        }
        text += QString::number(byteAt(bytes, i), 16) + u' ';
    }
    texts.append(text);
    return texts;
}

QString hexStringWithData(const QByteArray &bytes)
{
    QString text;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        text += QString::number(byteAt(bytes, i) << 8U | byteAt(bytes, i + 1), 16) + u' ';
    return text;
}

int intValueWithHexString(QStringView text)
{
    quint32 value = 0;
    for (const QChar character : text) {
        value <<= 4U;
        const char16_t unit = character.unicode();
        if (unit >= u'0' && unit <= u'9')
            value += unit - u'0';
        else if (unit >= u'a' && unit <= u'f')
            value += unit - u'a' + 10U;
    }
    return static_cast<int>(value);
}

} // namespace qovelmor
