// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PropertyValue.h"

#include <QProcess>
#include <QTemporaryDir>

#include <chrono>
#include <optional>

namespace qovelmor {

/// The built program as a process of its own, with a home and a profile that last as long as the
/// object. It runs without a display, in Japanese time, and knows no serial port but those that the
/// test gives it.
class RunningProgram
{
public:
    using Milliseconds = std::chrono::milliseconds;

    RunningProgram();
    /// Kills what still runs.
    ~RunningProgram();
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;

    // Before the start.

    void set(const QString &key, PropertyValue value);
    /// A feed whose name and format are known: nothing is fetched for it at launch.
    void addFeed(const QString &address, const QString &name, int format);
    void setBoard(const std::string &path);
    void setVariable(const QString &name, const QString &value);
    void removeVariable(const QString &name);
    void writeInformation(const QString &text);
    /// Another program of the build tree in place of the real one.
    void setProgram(const QString &name) { program_ = name; }
    /// A second start with the same home does not write the profile anew.
    bool writeProfile() const;
    bool start(const QStringList &arguments = {});
    bool startAgain(const QStringList &arguments = {});

    // From then on.

    bool isRunning() { return process_.state() == QProcess::Running; }
    qint64 processId() const { return process_.processId(); }
    /// The exit status; nothing when the time is over or the program crashed.
    std::optional<int> waitForEnd(Milliseconds limit);
    /// Asks the program to end (SIGTERM) and waits for that.
    std::optional<int> terminate(Milliseconds limit);

    /// The log book so far. All four kinds of lines are on.
    QString logBook() const;
    QByteArray errors() { return errors_ += process_.readAllStandardError(); }
    void forgetOutput() { output_.clear(); }
    QByteArray output() { return output_ += process_.readAllStandardOutput(); }
    /// Whether the stored settings can be read, and hold the feeds that were given.
    bool isStoreWhole() const;
    QString profilePath() const;
    QString documents() const;
    QString home() const { return home_.path(); }
    /// Ends the process as a power switch would (SIGKILL).
    void kill();
    void sendSignal(int number);

private:
    QTemporaryDir home_;
    PropertyDictionary values_;
    PropertyArray feeds_;
    QProcessEnvironment environment_;
    QString program_ = QStringLiteral("qovelmorrss");
    QProcess process_;
    QByteArray errors_;
    QByteArray output_;
};

} // namespace qovelmor
