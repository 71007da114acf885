// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qovelmorboard/LedPainter.h"

#include <QString>

#include <optional>

namespace qovelmor::simboard {

/// Writes pictures as frame-000001.png, frame-000002.png … into a folder. A picture like the one
/// before is not written again; only the last ones are kept.
class FrameWriter
{
public:
    FrameWriter(const QString &folder, int mostFrames);

    /// False when the folder cannot be made or the file cannot be written.
    bool write(const BoardPicture &picture);
    int written() const { return count_; }

private:
    QString nameOf(int number) const;

    QString folder_;
    int mostFrames_;
    int count_ = 0;
    std::optional<BoardPicture> last_;
    LedPainter painter_{6};
};

} // namespace qovelmor::simboard
