// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/FrameWriter.h"

#include <QDir>
#include <QFile>

namespace qovelmor::simboard {

using namespace Qt::Literals::StringLiterals;

FrameWriter::FrameWriter(const QString &folder, int mostFrames)
    : folder_(folder), mostFrames_(mostFrames)
{}

QString FrameWriter::nameOf(int number) const
{
    return folder_ + u"/frame-%1.png"_s.arg(number, 6, 10, QLatin1Char('0'));
}

bool FrameWriter::write(const BoardPicture &picture)
{
    if (last_ == picture)
        return true;
    if (!last_ && !QDir().mkpath(folder_))
        return false;
    last_ = picture;
    if (!painter_.paint(picture).save(nameOf(++count_)))
        return false;
    if (count_ > mostFrames_)
        QFile::remove(nameOf(count_ - mostFrames_));
    return true;
}

} // namespace qovelmor::simboard
