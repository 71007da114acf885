// SPDX-License-Identifier: MIT
#pragma once

#include <termios.h>

namespace qovelmor {

/// The settings record of a serial line (POSIX termios), edited in place; nothing reaches a line
/// before the record is written to it.
///
/// The flow control by DTR/DSR and by the carrier has no counterpart on this system, nor have line
/// speeds other than the ones that <termios.h> names: these are remembered without effect.
class LineSettings
{
public:
    /// Raw, 19200 baud, 8 data bits, no parity, 1 stop bit, no flow control, modem lines ignored;
    /// CREAD and PARODD stay as they were.
    void makeRaw19200();

    /// The input speed in bits per second.
    int baudRate() const;
    void setBaudRate(int bitsPerSecond); ///< input and output

    int characterSize() const;       ///< 5 to 8
    void setCharacterSize(int bits); ///< 5 to 8; any other value counts as 5

    /// 2 when only PARENB is set, 1 when only PARODD is set, else 0. Odd parity as setParityBit
    /// makes it sets both flags and so reads back as 0.
    int parityBit() const;
    void setParityBit(int parity); ///< 1 odd, 2 even, anything else none

    int stopBits() const;
    void setStopBits(int bits); ///< 2, anything else counts as 1

    bool rtscts() const;
    void setRTSCTS(bool on);
    bool dtrdsr() const { return dtrdsr_; }
    void setDTRDSR(bool on) { dtrdsr_ = on; }
    bool dcd() const { return dcd_; }
    void setDCD(bool on) { dcd_ = on; }

    termios &record() { return record_; }
    const termios &record() const { return record_; }

private:
    termios record_{};
    int rememberedBaudRate_ = 0; ///< a speed that the record cannot hold; 0 when it does
    bool dtrdsr_ = false;
    bool dcd_ = false;
};

} // namespace qovelmor
