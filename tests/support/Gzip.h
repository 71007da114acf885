// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor {

/// The bytes as a gzip file (RFC 1952).
inline QByteArray gzip(const QByteArray &text)
{
    QByteArray deflated = qCompress(text, 9).mid(4); // a zlib stream behind a length
    deflated = deflated.mid(2, deflated.size() - 6);
    QByteArray packed = QByteArray::fromHex("1f8b08000000000000ff") + deflated;
    quint32 crc = 0xffffffffu;
    for (const char byte : text) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1u) != 0 ? 0xedb88320u : 0u);
    }
    crc = ~crc;
    for (const quint32 word : {crc, static_cast<quint32>(text.size())}) {
        for (int shift = 0; shift < 32; shift += 8)
            packed.append(static_cast<char>(word >> shift));
    }
    return packed;
}

} // namespace qovelmor
