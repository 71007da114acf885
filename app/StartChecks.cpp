// SPDX-License-Identifier: MIT
#include "app/StartChecks.h"

#include <QString>
#include <QtGlobal>

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace qovelmor {

namespace {

constexpr const char *noDisplay =
    "qovelmorrss: no display to show windows on. Set DISPLAY or WAYLAND_DISPLAY, or start with "
    "QT_QPA_PLATFORM=offscreen and --terminal.\n";

QtMessageHandler previous = nullptr;
std::atomic<bool> exitsAtOnce = false;

// Called before the destructors of everything that was there when it was registered.
void endBeforeDestructors()
{
    if (!exitsAtOnce)
        return;
    std::fflush(nullptr);
    ::_exit(1);
}

// The toolkit's own warnings about the display would make several lines of one event.
void endOnFatal(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type != QtFatalMsg)
        return;
    std::fputs(noDisplay, stderr);
    ::_exit(1);
}

} // namespace

FatalMessagesEndQuietly::FatalMessagesEndQuietly()
{
    previous = qInstallMessageHandler(endOnFatal);
}

FatalMessagesEndQuietly::~FatalMessagesEndQuietly()
{
    qInstallMessageHandler(previous);
}

ExitsAtOnce::ExitsAtOnce()
{
    static const int registered = std::atexit(&endBeforeDestructors);
    exitsAtOnce = registered == 0;
}

ExitsAtOnce::~ExitsAtOnce()
{
    exitsAtOnce = false;
}

bool hasDisplay()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return true;
    std::fputs(noDisplay, stderr);
    return false;
}

} // namespace qovelmor
