// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace qovelmor {

/// The LED board as the rest of the program sees it: a place that shows one line of text at a time.
///
/// Two kinds exist: the link to a real board and AbsentBoard, which answers every question with NO,
/// 0 or nothing. Commands may come from any thread; each exchange with the board is whole.
class BoardLink
{
public:
    virtual ~BoardLink() = default;

    // The line. ---------------------------------------------------------------------------------

    /// Opens the port with this index; false when that fails.
    virtual bool openSerialPortWithNumber(int number) = 0;
    /// True when the board answers to its version question.
    virtual bool comTest() = 0;
    /// The names for the port menu, in the order of the port numbers.
    virtual QStringList portNames() const = 0;
    /// The port was open and cannot be had back: nothing is sent any more.
    virtual bool isLost() const = 0;

    /// Why the port did not open and what helps, as a sentence for the window; empty when there is
    /// nothing to say.
    virtual QString openProblem() const { return {}; }

    // Settings of the board; each is sent at once.
    // -------------------------------------------------

    virtual void setSpeed(int stepsOf8Milliseconds) = 0;
    virtual void setModuleCount(int modulesOf32Columns) = 0;
    virtual void setBright(int level0To10) = 0;
    virtual void setReverse(bool turnedBy180) = 0;
    virtual int moduleCount() = 0;
    virtual int waitBefore() = 0; ///< steps of the scroll before a line starts; 0 without a board
    virtual int waitAfter() = 0;  ///< steps of the scroll after a line has ended

    // How text becomes dots; taken up at the next line.
    // --------------------------------------------

    virtual void setFontName(const QString &name) = 0;
    virtual void setBoarder(int threshold) = 0;
    virtual void setExpansion(float expansion) = 0;
    virtual void setUseFontx(bool bitmapFonts) = 0;
    virtual void setRotation(bool turnedLeftBy90) = 0;

    // The display run.
    // -------------------------------------------------------------------------------

    virtual void setScroll(bool scrolling) = 0;
    /// The sense is inverted on purpose: YES shows on the caller's thread and blocks.
    virtual void setAsync(bool blocking) = 0;
    virtual void showString(const QString &text) = 0;
    virtual bool isRunning() const = 0;
    virtual void clear() = 0; ///< ends the run and blanks the board
    /// Shows the present date and time, centred; 0 leaves it scrolling.
    virtual void showPresentDate(double seconds) = 0;
};

} // namespace qovelmor
