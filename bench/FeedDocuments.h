// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qovelmor::benchfeeds {

/// A description of about 1,800 bytes, as news sites write them: mark-up inside CDATA.
inline QByteArray description(int index)
{
    const QByteArray sentence = "これは見出しに続く本文の例です。新しい知らせが届きました。";
    return "<![CDATA[<p>" + sentence.repeated(5) + "</p>\n<a href=\"http://example.com/more/" +
           QByteArray::number(index) + "\">続きを読む</a>" + sentence.repeated(15) + "<br/>]]>";
}

inline QByteArray items(int format, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray title = "<title>見出しの例 " + number + " 号</title>\n";
        const QByteArray link = "http://example.com/articles/" + number;
        if (format == 3)
            text += "<entry>" + title + "<link href=\"" + link + "\"/>\n<id>" + link +
                    "</id>\n<published>2008-05-01T03:10:00Z</published>\n<summary type=\"html\">" +
                    description(i) + "</summary>\n</entry>\n";
        else
            text += (format == 1 ? "<item rdf:about=\"" + link + "\">" : QByteArray("<item>")) +
                    title + "<link>" + link + "</link>\n<description>" + description(i) +
                    "</description>\n" +
                    (format == 1 ? "<dc:date>2008-05-01T12:10:00+09:00</dc:date>"
                                 : "<pubDate>Thu, 01 May 2008 23:30:00 +0900</pubDate>") +
                    "\n<category>例</category>\n</item>\n";
    }
    return text;
}

/// A document of format 1 (RSS 1.0), 2 (RSS 2.0) or 3 (Atom): 2 kB for each item.
inline QByteArray document(int format, int count)
{
    const QByteArray head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const QByteArray title = "<title>例</title>\n";
    if (format == 3)
        return head + "<feed xmlns=\"http://www.w3.org/2005/Atom\">" + title + items(3, count) +
               "</feed>";
    if (format == 1)
        return head +
               "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
               "xmlns=\"http://purl.org/rss/1.0/\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
               "<channel>" +
               title + "</channel>" + items(1, count) + "</rdf:RDF>";
    return head + "<rss version=\"2.0\"><channel>" + title + items(2, count) + "</channel></rss>";
}

} // namespace qovelmor::benchfeeds
