// SPDX-License-Identifier: MIT
#include "platform/BrowserList.h"
#include "platform/LinkOpener.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace qovelmor;

// Real desktop entries in folders of their own; the browsers are shell scripts that write down what
// they were given.
class LinkOpenerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir folder_;
    DesktopLinkOpener opener_;

    QString path(const QString &name) const { return folder_.filePath(name); }

    void write(const QString &name, const QByteArray &content) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QString entry(const QString &name) const { return path(u"data/applications/"_s + name); }

    void writeBrowser(const QString &name, const QByteArray &title, const QByteArray &more = {},
                      const QByteArray &argument = "%u") const
    {
        const QString program = path(u"bin/"_s + name);
        // Renamed into place: the reader never sees half of it.
        write(u"bin/"_s + name,
              "#!/bin/sh\nprintf '%s|' \"$#\" \"$@\" > \"$0.part\" && mv \"$0.part\" \"$0.got\"\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        write(u"data/applications/"_s + name + u".desktop"_s,
              "[Desktop Entry]\nType=Application\nName=" + title +
                  "\nExec=" + QFile::encodeName(program) + ' ' + argument + '\n' + more);
    }

    QByteArray takeGiven(const QString &name) const
    {
        const QString got = path(u"bin/"_s + name + u".got"_s);
        if (!QTest::qWaitFor([&] { return QFile::exists(got); }))
            return "(nothing)";
        QFile file(got);
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QByteArray given = isOpen ? file.readAll() : QByteArray();
        file.remove();
        return given;
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"system"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(u"config"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path(u"none"_s)));
        const QByteArray web = "MimeType=text/html;x-scheme-handler/http;x-scheme-handler/https;\n";
        writeBrowser(u"chosen"_s, "Zebra", web);
        writeBrowser(u"standard"_s, "Ant", web);
        writeBrowser(u"hidden"_s, "Hidden", web + "NoDisplay=true\n");
        writeBrowser(u"files"_s, "Files only", web, "%f");
        writeBrowser(u"bare"_s, "No argument", web, "");
        writeBrowser(u"editor"_s, "Editor", "MimeType=text/html;\n");
        write(u"data/applications/gone.desktop"_s,
              "[Desktop Entry]\nType=Application\nName=Gone\nExec=/nonexistent/browser %u\n");
        write(u"config/mimeapps.list"_s,
              "[Default Applications]\nx-scheme-handler/http=standard.desktop\n");
        // There is no default for https.
    }

    void installedBrowsers_areThoseThatTakeWebAddresses()
    {
        QStringList names;
        for (const BrowserEntry &browser : installedBrowsers()) {
            names << browser.name;
            QVERIFY(QFile::exists(browser.desktopFile));
        }
        QCOMPARE(names, (QStringList{u"Ant"_s, u"Zebra"_s}));
        QCOMPARE(installedBrowsers().back().desktopFile, entry(u"chosen.desktop"_s));
    }

    void chosenBrowser_getsTheAddressAsOneArgument_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QByteArray>("given");
        QTest::newRow("plain") << u"http://example.jp/1"_s << QByteArray("1|http://example.jp/1|");
        QTest::newRow("https") << u"https://example.jp/"_s << QByteArray("1|https://example.jp/|");
        QTest::newRow("shell characters")
            << u"http://example.jp/$(id);a=b&c='d'*?f=g~!#j"_s
            << QByteArray("1|http://example.jp/$(id);a=b&c='d'*?f=g~!#j|");
        QTest::newRow("field codes of the command line")
            << u"http://example.jp/%25u%20%46"_s << QByteArray("1|http://example.jp/%25u%20F|");
        QTest::newRow("looks like an option")
            << u"http://example.jp/--help"_s << QByteArray("1|http://example.jp/--help|");
        QTest::newRow("outside ASCII")
            << u"http://example.jp/漢"_s << QByteArray("1|http://example.jp/%E6%BC%A2|");
    }

    void chosenBrowser_getsTheAddressAsOneArgument()
    {
        QFETCH(QString, address);
        QVERIFY(opener_.open(address, entry(u"chosen.desktop"_s)));
        QTEST(takeGiven(u"chosen"_s), "given");
    }

    void withoutAUsableChoice_theDefaultTakesIt_data()
    {
        QTest::addColumn<QString>("browser");
        QTest::newRow("none chosen") << QString();
        QTest::newRow("entry is missing") << entry(u"missing.desktop"_s);
        QTest::newRow("program is missing") << entry(u"gone.desktop"_s);
        QTest::newRow("takes files only") << entry(u"files.desktop"_s);
        QTest::newRow("takes no argument") << entry(u"bare.desktop"_s);
        QTest::newRow("no desktop entry") << u"/bin/sh"_s;
        QTest::newRow("a folder") << u"/"_s;
    }

    void withoutAUsableChoice_theDefaultTakesIt()
    {
        QFETCH(QString, browser);
        QVERIFY(opener_.open(u"http://example.jp/x"_s, browser));
        QCOMPARE(takeGiven(u"standard"_s), QByteArray("1|http://example.jp/x|"));
        QVERIFY(!QFile::exists(path(u"bin/bare.got"_s)));
    }

    void nobodyToTakeIt_isAFailure()
    {
        QVERIFY(!opener_.open(u"https://example.jp/"_s, QString()));
        QVERIFY(!opener_.open(u"https://example.jp/"_s, entry(u"gone.desktop"_s)));
    }

    void linksThatAreNoWebAddresses_reachNobody()
    {
        for (const auto &link : {u"javascript:alert(1)"_s, u"file:///etc/passwd"_s, u"--version"_s,
                                 u"http://user@example.jp/"_s, QString()})
            QVERIFY(!opener_.open(link, entry(u"chosen.desktop"_s)));
        QVERIFY(opener_.open(u"http://example.jp/last"_s, entry(u"chosen.desktop"_s)));
        QCOMPARE(takeGiven(u"chosen"_s), QByteArray("1|http://example.jp/last|"));
    }
};

QTEST_GUILESS_MAIN(LinkOpenerTest)
#include "linkopener_test.moc"
