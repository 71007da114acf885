// SPDX-License-Identifier: MIT
// Import files, link files, dropped data and links that nobody means well with: an answer at once,
// nothing read that is no plain small file, and nothing but a web address comes out.
#include "feeds/AddressFile.h"
#include "feeds/WebLocation.h"
#include "platform/LinkCheck.h"
#include "platform/PropertyListFile.h"
#include "tests/support/ProcessUse.h"

#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double mostSeconds = 1.0; // of the processor, for one file
constexpr long mostMebibytes = 64;
constexpr qint64 gibibyte = qint64{1} << 30;

double threadSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

QByteArray list(const QByteArray &entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><array>" + entries +
           "</array></plist>";
}

QByteArray place(const QByteArray &address)
{
    return "<plist version='1.0'><dict><key>URL</key><string>" + address +
           "</string></dict></plist>";
}

/// Contents that are no list, or one that is not well meant.
std::vector<QByteArray> contents()
{
    const QByteArray whole = list("<string>http://h/1</string><string>http://h/2</string>");
    std::vector<QByteArray> all{
        {},
        "\n",
        QByteArray(100'000, '\0'),
        QByteArray(100'000, '\xff'),
        QByteArray(2'000'000, ' '),
        "bplist00",
        "<plist/>",
        "<plist><dict/></plist>",
        "<plist><string>x</string></plist>",
        "<html/>",
        list({}),
        list("<string/>"),
        list("<integer>7</integer><true/><data>AAAA</data><date>x</date><real>nan</real>"),
        list("<string>a\nb</string>"),
        list("<string>" + QByteArray(500'000, 'x') + "</string>"),
        list(QByteArray("<string>http://h/</string>").repeated(19'000)),
        list(QByteArray("<string>http://h/</string>").repeated(30'000)),
        list(QByteArray("<array>").repeated(100'000)),
        list(QByteArray("<array>").repeated(7) + QByteArray("</array>").repeated(7)),
        list(QByteArray("<array>").repeated(9) + QByteArray("</array>").repeated(9)),
        "<!DOCTYPE plist [<!ENTITY a 'http://h/'>]>" + list("<string>&a;</string>"),
        "<!DOCTYPE plist [<!ENTITY a SYSTEM 'file:///etc/passwd'>]>" + list("<string>&a;</string>"),
        list("<string>\xff\xfe</string>"),
        list("<string>") + "</string>",
        whole + whole,
        whole + "x",
        "[InternetShortcut]\r\nURL=",
        "[InternetShortcut]\r\nURL=file:///etc/passwd\r\n",
        "[InternetShortcut]\r\nURL=http://h/\0x",
        "[InternetShortcut]\r\n" + QByteArray("URL=http://h/\r\n").repeated(3000),
        "[Desktop Entry]\nType=Application\nExec=rm -rf /\nURL=http://h/\n",
        "[Desktop Entry]\nType=Link\nURL=javascript:alert(1)\n",
        place("file:///etc/passwd"),
        place("-x"),
        place(QByteArray(60'000, 'x')),
    };
    for (qsizetype size = 1; size < whole.size(); size += 2)
        all.push_back(whole.first(size));
    return all;
}

} // namespace

class HostileFilesTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder_;
    int inputs_ = 0;

    /// `work` within bounds.
    template <typename Work>
    void bounded(const QString &name, Work work)
    {
        ++inputs_;
        const ProcessUse use(::getpid());
        if (!isSanitized())
            use.forgetPeak();
        const long before = use.memoryKiB();
        const double start = threadSeconds();
        work();
        if (isSanitized())
            return;
        QVERIFY2(threadSeconds() - start < mostSeconds, qPrintable(name));
        QVERIFY2((use.peakMemoryKiB() - before) / 1024 < mostMebibytes, qPrintable(name));
    }

    QString file(const QString &name, const QByteArray &bytes)
    {
        const QString path = folder_.filePath(name);
        QFile::remove(path);
        QFile made(path);
        return made.open(QIODevice::WriteOnly) && made.write(bytes) == bytes.size() ? path
                                                                                    : QString();
    }

    /// A pipe, a device, a folder, a gigabyte and a file that may not be read, under this name.
    std::vector<std::function<QString(const QString &)>> oddFiles()
    {
        const auto linkTo = [this](const char *target) {
            return [this, target](const QString &name) {
                const QString path = folder_.filePath(name);
                QFile::remove(path);
                return ::symlink(target, qPrintable(path)) == 0 ? path : QString();
            };
        };
        return {[this](const QString &name) {
                    const QString path = folder_.filePath(name);
                    QFile::remove(path);
                    return ::mkfifo(qPrintable(path), 0600) == 0 ? path : QString();
                },
                linkTo("/dev/zero"),
                linkTo("/dev/null"),
                linkTo("/dev/full"),
                linkTo("/dev/tty"),
                linkTo("/proc/self/mem"),
                linkTo("/etc"),
                linkTo("nowhere"),
                [this](const QString &name) {
                    const QString path = file(name, {});
                    return QFile::resize(path, gibibyte) ? path : QString();
                }};
    }

private Q_SLOTS:
    void imports_giveAListOrNothing()
    {
        int number = 0;
        for (const QByteArray &bytes : contents()) {
            bounded(u"import %1"_s.arg(number++), [&] {
                const QString path = file(u"a.rssurl"_s, bytes);
                const auto addresses = readAddressFile(path);
                QVERIFY(!addresses || addresses->size() <= 20'000);
                if (bytes.endsWith("</plist>") == false)
                    QVERIFY2(!addresses, bytes.right(60).constData());
            });
        }
        for (const auto &make : oddFiles()) {
            bounded(u"odd import %1"_s.arg(number++), [&] {
                const QString path = make(u"a.rssurl"_s);
                QVERIFY(!path.isEmpty());
                QVERIFY(!readAddressFile(path));
                QFile::remove(path);
            });
        }
        qInfo("%d imports", number);
        QVERIFY(number >= 100);
    }

    void linkFiles_giveAnAddressOrNothing()
    {
        int number = 0;
        for (const QString &name : {u"a.webloc"_s, u"a.url"_s, u"a.desktop"_s}) {
            for (const QByteArray &bytes : contents()) {
                bounded(name + QString::number(number++), [&] {
                    const QString address = urlInLinkFile(file(name, bytes));
                    QVERIFY2(address.size() <= 64 * 1024, qPrintable(name));
                });
            }
            for (const auto &make : oddFiles()) {
                bounded(name + QString::number(number++), [&] {
                    const QString path = make(name);
                    QCOMPARE(urlInLinkFile(path), QString(u""_s));
                    QFile::remove(path);
                });
            }
        }
        qInfo("%d link files", number);
    }

    void drops_areAnsweredAtOnce()
    {
        int number = 0;
        const auto drop = [&](const QMimeData &data) {
            bounded(u"drop %1"_s.arg(number++), [&] {
                const QString address = droppedAddress(data);
                QVERIFY(address.size() <= 2'000'000);
            });
        };
        for (const QByteArray &bytes : contents()) {
            QMimeData text;
            text.setText(QString::fromUtf8(bytes));
            drop(text);
            QMimeData links;
            links.setData(u"text/uri-list"_s, bytes);
            drop(links);
            for (const QString &name : {u"a.webloc"_s, u"a.txt"_s}) {
                QMimeData files;
                files.setUrls({QUrl::fromLocalFile(file(name, bytes))});
                drop(files);
            }
        }
        for (const auto &make : oddFiles()) {
            for (const QString &name : {u"a.webloc"_s, u"a.url"_s, u"a.desktop"_s, u"a.txt"_s}) {
                const QString path = make(name);
                QMimeData files;
                files.setUrls({QUrl::fromLocalFile(path)});
                drop(files);
                QFile::remove(path);
            }
        }
        QMimeData many;
        many.setUrls(QList<QUrl>(100'000, QUrl(u"http://h/"_s)));
        drop(many);
        qInfo("%d drops", number);
        QVERIFY(number >= 100);
    }

    void links_thatAreNoWebAddresses_areRefused()
    {
        QStringList links{u""_s,
                          u" "_s,
                          u"http"_s,
                          u"http:"_s,
                          u"http:/"_s,
                          u"http://"_s,
                          u"http:///x"_s,
                          u"//h"_s,
                          u"/etc/passwd"_s,
                          u"h"_s,
                          u"www.h"_s,
                          u"http://a@h/"_s,
                          u"http://a:b@h/"_s,
                          u"http://@h/"_s,
                          u"http://h:99999/"_s,
                          u"http://h:x/"_s,
                          u"http://[::1/"_s,
                          u"http://[h]/"_s,
                          u"http://h/ x"_s,
                          u"http://h/\"x"_s,
                          u"http://h/<x>"_s,
                          u"http://h/`x`"_s,
                          u"http://h\\x"_s,
                          u"http://h/\\x"_s,
                          u"http://%zz/"_s,
                          u"http://h/"_s + QString(9000, u'x')};
        for (const char *scheme :
             {"javascript", "data",   "file",        "ftp",  "mailto", "tel",     "vbscript",
              "about",      "blob",   "chrome",      "feed", "gopher", "ldap",    "smb",
              "ssh",        "telnet", "view-source", "ws",   "jar",    "x-apple", "steam",
              "magnet",     "sftp",   "nfs",         "dict", "news"}) {
            const QString name = QString::fromLatin1(scheme);
            links << name + u":x"_s << name + u"://h/"_s;
        }
        for (const char *option :
             {"-x", "--version", "--", "-", "--help=http://h/", "-e http://h/"})
            links << QString::fromLatin1(option);
        for (ushort control = 0; control < 0x20; ++control)
            links << u"http://h/a"_s + QChar(control) + u'b';
        for (const int mark : {0x200b, 0x200e, 0x202e, 0x2066, 0x2028, 0xfeff, 0x00a0, 0x3000})
            links << u"http://h/a"_s + QChar(mark) + u'b';
        for (const QString &link : links)
            QVERIFY2(!checkedLink(link), qPrintable(link));
        qInfo("%lld links", static_cast<long long>(links.size()));
        QVERIFY(links.size() >= 100);
    }
};

QTEST_GUILESS_MAIN(HostileFilesTest)
#include "hostilefiles_test.moc"
