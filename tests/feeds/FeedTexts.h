// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <vector>

namespace qovelmor::feedtexts {

// Feed documents written around the elements that a test is about.

inline QByteArray rss2(const QByteArray &channel)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<rss version=\"2.0\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><channel>"
           "<title>テスト</title>" +
           channel + "</channel></rss>";
}

inline QByteArray rss1(const QByteArray &channel, const QByteArray &items)
{
    return "<?xml version=\"1.0\"?>\n"
           "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
           "xmlns=\"http://purl.org/rss/1.0/\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
           "<channel><title>テスト</title>" +
           channel + "</channel>" + items + "</rdf:RDF>";
}

inline QByteArray atom(const QByteArray &contents)
{
    return "<?xml version=\"1.0\"?>\n<feed xmlns=\"http://www.w3.org/2005/Atom\">"
           "<title>テスト</title>" +
           contents + "</feed>";
}

inline QByteArray item(const QByteArray &contents)
{
    return "<item>" + contents + "</item>";
}
inline QByteArray entry(const QByteArray &contents)
{
    return "<entry>" + contents + "</entry>";
}

} // namespace qovelmor::feedtexts
