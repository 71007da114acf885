// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardLink.h"

namespace qovelmor {

/// The board link when no board is attached: every question is answered with NO, 0 or nothing.
class AbsentBoard final : public BoardLink
{
public:
    bool openSerialPortWithNumber(int) override { return false; }
    bool comTest() override { return false; }
    QStringList portNames() const override { return {}; }
    bool isLost() const override { return false; }

    void setSpeed(int) override {}
    void setModuleCount(int) override {}
    void setBright(int) override {}
    void setReverse(bool) override {}
    int moduleCount() override { return 0; }
    int waitBefore() override { return 0; }
    int waitAfter() override { return 0; }

    void setFontName(const QString &) override {}
    void setBoarder(int) override {}
    void setExpansion(float) override {}
    void setUseFontx(bool) override {}
    void setRotation(bool) override {}

    void setScroll(bool) override {}
    void setAsync(bool) override {}
    void showString(const QString &) override {}
    bool isRunning() const override { return false; }
    void clear() override {}
    void showPresentDate(double) override {}
};

} // namespace qovelmor
