// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QProcess>
#include <QString>

namespace qovelmor {

/// An X server of the test's own, and a hand at its keyboard and mouse.
class OwnDisplay
{
public:
    bool start()
    {
        server_.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                               QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        return server_.waitForStarted() && server_.waitForReadyRead() &&
               !(number_ = server_.readAllStandardOutput().trimmed()).isEmpty();
    }
    ~OwnDisplay() { kill(); }

    QString name() const { return u':' + QString::fromLatin1(number_); }

    /// Ends the server as the system does when memory runs out.
    void kill()
    {
        server_.kill();
        server_.waitForFinished();
    }
    /// Ends it as a session does that is closed: it takes leave of its clients.
    void close()
    {
        server_.terminate();
        server_.waitForFinished();
    }

    /// Whether a window with this very title is to be seen. From then on it has the keyboard: there
    /// is no window manager that would see to that.
    bool focusWindow(const QString &title) const
    {
        return hand(search(title) << QStringLiteral("windowfocus") << QStringLiteral("--sync"));
    }
    bool click(const QString &title, QPoint place) const
    {
        return hand(search(title) << QStringLiteral("mousemove") << QStringLiteral("--window")
                                  << QStringLiteral("%1") << QString::number(place.x())
                                  << QString::number(place.y()) << QStringLiteral("click")
                                  << QStringLiteral("1"));
    }
    bool press(const QString &keys) const { return hand({QStringLiteral("key"), keys}); }
    bool type(const QString &text) const { return hand({QStringLiteral("type"), text}); }

private:
    static QStringList search(const QString &title)
    {
        return {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                u'^' + title + u'$'};
    }

    bool hand(const QStringList &arguments) const
    {
        QProcess hand;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), name());
        hand.setProcessEnvironment(environment);
        hand.start(QStringLiteral("xdotool"), arguments);
        return hand.waitForFinished() && hand.exitStatus() == QProcess::NormalExit &&
               hand.exitCode() == 0;
    }

    QProcess server_;
    QByteArray number_;
};

} // namespace qovelmor
