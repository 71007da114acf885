// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardCommands.h"
#include "board/BoardLink.h"
#include "board/DisplayRun.h"
#include "render/ProgressBoard.h"
#include "render/VelmorFont.h"

#include <mutex>

namespace qovelmor {

class BoardSettings;

/// The program's one link to the LED board: the board's commands, the display run, and a renderer
/// with the font settings that lines are shown in.
///
/// All operations may be called from any thread; the setters for the log, the settings and the port
/// loss come before the first of them. What belongs to two of the bases is settled here:
/// `setBitmap` takes the image of the next run, `clear` blanks the board.
class VelmorSystem final : public VelmorFont,
                           public BoardCommands,
                           public BoardLink,
                           public ProgressBoard
{
public:
    using Image = DisplayRun::Image;

    explicit VelmorSystem(Clock &clock, BoardLimits limits = {},
                          CocoaSerialPort::DeviceLookup lookup = findSerialDevices);

    void setMessageList(BoardLog *log);
    void setSetup(const BoardSettings *settings) { setup_ = settings; }
    using BoardCommands::setPortLoss;

    // The line.
    // ------------------------------------------------------------------------------------

    bool openSerialPortWithNumber(int number) override;
    bool comTest() override { return BoardCommands::comTest(); }
    /// The devices as they are now, in the order that the next opening counts them in.
    QStringList portNames() const override { return serialPortNames(); }
    bool isLost() const override { return isPortLost(); }
    QString openProblem() const override { return BoardCommands::openProblem(); }

    // Settings of the board.
    // -----------------------------------------------------------------------

    void setSpeed(int speed) override { BoardCommands::setSpeed(speed); }
    void setModuleCount(int modules) override { BoardCommands::setModuleCount(modules); }
    void setBright(int level) override { BoardCommands::setBright(level); }
    void setReverse(bool on) override { BoardCommands::setReverse(on); }
    int moduleCount() override { return BoardCommands::moduleCount(); }
    int waitBefore() override { return BoardCommands::waitBefore(); }
    int waitAfter() override { return BoardCommands::waitAfter(); }

    // How text becomes dots.
    // -----------------------------------------------------------------------

    void setFontName(const QString &name) override { VelmorFont::setFontName(name); }
    void setBoarder(int threshold) override { VelmorFont::setBoarder(threshold); }
    void setExpansion(float expansion) override { VelmorFont::setExpansion(expansion); }
    void setUseFontx(bool bitmapFonts) override { VelmorFont::setUseFontx(bitmapFonts); }
    void setRotation(bool turned) override { VelmorFont::setRotation(turned); }
    std::shared_ptr<const VelmorBitmap> bitmapWithString(const QString &text) override;

    // The display run.
    // -----------------------------------------------------------------------------

    bool scroll() const { return run_.scroll(); }
    void setScroll(bool scrolling) override { run_.setScroll(scrolling); }
    bool async() const { return run_.async(); }
    void setAsync(bool blocking) override { run_.setAsync(blocking); }
    bool intel() const { return run_.intel(); }
    void setIntel(bool swaps) { run_.setIntel(swaps); }
    int showStatus() const { return run_.showStatus(); }
    bool isRunning() const override { return run_.isRunning(); }
    bool isPaused() const { return run_.isPaused(); }

    QByteArray dataWithBitmap(const VelmorBitmap &bitmap) const;
    Image bitmapData() const { return run_.bitmapData(); }
    void setBitmap(Image image) { run_.setBitmap(std::move(image)); }
    /// Waits for a running run, then renders the text with the font settings of this moment and the
    /// settings' rotation.
    void setBitmapWithString(const QString &text);
    void showString(const QString &text) override;
    void showBitmap(const Image &image) { run_.showBitmap(image); }
    void show() { run_.show(); }
    void showThread() { run_.showThread(); }
    void cancel() { run_.cancel(); }
    void pauseScroll() { run_.pauseScroll(); }
    void restartScroll() { run_.restartScroll(); }
    void clear() override;
    void showPresentDate(double seconds) override;
    QString presentDateString() const;

    // The board as the progress image sees it.
    // -----------------------------------------------------

    int cmodule() override { return BoardCommands::cmodule(); }
    void cmodule(int modules) override { BoardCommands::cmodule(modules); }
    void sendBufferBitmap(const VelmorBitmap &bitmap) override { run_.sendBufferBitmap(bitmap); }
    void sc_show() override { BoardCommands::sc_show(); }
    void sc_clear() override { BoardCommands::sc_clear(); }
    using BoardCommands::sc_clear;

private:
    Image imageOf(const QString &text) const;
    Image centred(const VelmorBitmap &image, int modules) const;

    const BoardSettings *setup_ = nullptr;
    std::mutex renderMutex_; // the outline font draws into this object's own dots
    DisplayRun run_;         // last: it ends before the link goes away
};

} // namespace qovelmor
