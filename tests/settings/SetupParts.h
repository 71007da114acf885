// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLink.h"
#include "platform/QueueMainThread.h"
#include "platform/SimulatedClock.h"
#include "platform/Sounds.h"
#include "platform/UserDefaults.h"
#include "settings/Setup.h"
#include "settings/needs/MessageOutput.h"
#include "settings/needs/SettingsWindow.h"

#include <QStringList>
#include <QTemporaryDir>

namespace qovelmor {

/// Writes down what is asked of the board, in order.
class RecordingBoard final : public BoardLink
{
public:
    explicit RecordingBoard(QStringList &calls) : calls_(calls) {}

    bool opens = true;
    bool answers = true;
    QString problem; ///< why the port did not open
    QStringList ports{QStringLiteral("port of the link")};

    bool openSerialPortWithNumber(int number) override
    {
        note(QStringLiteral("open %1"), number);
        return opens;
    }
    bool comTest() override
    {
        calls_ << QStringLiteral("comTest");
        return answers;
    }
    QStringList portNames() const override { return ports; }
    QString openProblem() const override { return opens ? QString() : problem; }
    bool isLost() const override { return false; }

    void setSpeed(int n) override { note(QStringLiteral("speed %1"), n); }
    void setModuleCount(int n) override { note(QStringLiteral("modules %1"), n); }
    void setBright(int n) override { note(QStringLiteral("bright %1"), n); }
    void setReverse(bool on) override { note(QStringLiteral("reverse %1"), on); }
    int moduleCount() override { return 0; }
    int waitBefore() override { return 0; }
    int waitAfter() override { return 0; }

    void setFontName(const QString &) override {}
    void setBoarder(int) override {}
    void setExpansion(float) override {}
    void setUseFontx(bool on) override { note(QStringLiteral("fontx %1"), on); }
    void setRotation(bool on) override { note(QStringLiteral("rotation %1"), on); }

    void setScroll(bool on) override { note(QStringLiteral("scroll %1"), on); }
    void setAsync(bool on) override { note(QStringLiteral("async %1"), on); }
    void showString(const QString &) override {}
    bool isRunning() const override { return false; }
    void clear() override {}
    void showPresentDate(double) override {}

private:
    void note(const QString &text, int value) { calls_ << text.arg(value); }

    QStringList &calls_;
};

class RecordingSounds final : public SoundPlayer
{
public:
    QStringList soundNames() const override
    {
        return {QStringLiteral("Blow"), QStringLiteral("Basso")};
    }
    void play(const QString &name, float volume) override
    {
        played << QStringLiteral("%1 %2").arg(name).arg(static_cast<double>(volume));
    }

    QStringList played;
};

class RecordingOutput final : public MessageOutput
{
public:
    void setExpansion(float expansion) override { expansions.push_back(expansion); }
    void writeStringLog(const QString &text) override { lines << text; }

    std::vector<float> expansions;
    QStringList lines;
};

class RecordingSettingsWindow final : public SettingsWindow
{
public:
    void renewalControls() override { calls << QStringLiteral("renewal"); }
    void fillSoundMenu(SoundMenu menu, const QStringList &names) override
    {
        calls << QStringLiteral("fill %1 %2").arg(nameOf(menu), names.join(u','));
    }
    void enableSoundMenu(SoundMenu menu, bool on) override
    {
        calls << QStringLiteral("enable %1 %2").arg(nameOf(menu)).arg(on);
    }
    void enableShowLogButton(bool on) override { calls << QStringLiteral("show log %1").arg(on); }
    void showLogNote(const QString &text) override { logNotes << text; }
    void showBrowser(const QString &path) override { calls << QStringLiteral("browser ") + path; }
    void openAlert(const QString &message, const QString &informative,
                   const QString &button) override
    {
        alerts << message << informative << button;
    }
    void openLogFilePanel(const FilePanel &panel) override { panels.push_back(panel); }
    void openBrowserPanel(const FilePanel &panel) override { panels.push_back(panel); }
    void openWithApplication(const QString &path) override
    {
        calls << QStringLiteral("open ") + path;
    }
    void showTab(const QString &identifier) override
    {
        calls << QStringLiteral("tab ") + identifier;
    }

    QStringList calls;
    QStringList logNotes;
    QStringList alerts;
    std::vector<FilePanel> panels;

private:
    static QString nameOf(SoundMenu menu)
    {
        return menu == SoundMenu::Finish ? QStringLiteral("finish") : QStringLiteral("arrival");
    }
};

/// A settings object with everything around it: a real store and a real log folder in a temporary
/// directory.
class SetupParts
{
public:
    SetupParts()
    {
        // The log must not go to the home folder of whoever runs the test.
        defaults.setString(logPath(), QStringLiteral("LogFilePath"));
    }

    QString storePath() const { return folder.filePath(QStringLiteral("store.plist")); }
    QString logPath() const { return folder.filePath(QStringLiteral("logs/book/Logbook.txt")); }

    /// Makes the settings over a board, not started yet.
    RecordingBoard &makeWithBoard()
    {
        auto board = std::make_unique<RecordingBoard>(boardCalls);
        RecordingBoard &reference = *board;
        make(std::move(board));
        return reference;
    }
    void make(std::unique_ptr<BoardLink> board)
    {
        setup = std::make_unique<Setup>(
            SetupServices{defaults, clock, sounds, mainThread,
                          [] { return QStringList{QStringLiteral("port of the system")}; }},
            std::move(board));
        setup->setMsgList(output);
        setup->setWindow(window);
    }
    Setup &start()
    {
        setup->awakeFromNibx();
        return *setup;
    }
    /// Settings without a board, started.
    Setup &startWithoutBoard()
    {
        make(nullptr);
        return start();
    }

    QTemporaryDir folder;
    UserDefaults defaults{storePath()};
    SimulatedClock clock{Clock::CalendarTime(std::chrono::hours(24 * 20000))};
    QueueMainThread mainThread;
    RecordingSounds sounds;
    RecordingOutput output;
    RecordingSettingsWindow window;
    QStringList boardCalls;
    std::unique_ptr<Setup> setup;
};

} // namespace qovelmor
