// SPDX-License-Identifier: MIT
#include "app/StartChecks.h"

#include <QGuiApplication>
#include <QString>
#include <QtGlobal>

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace qovelmor {

namespace {

constexpr const char *noDisplay =
    "qovelmorrss: no display to show windows on. Set DISPLAY or WAYLAND_DISPLAY, or start with "
    "QT_QPA_PLATFORM=offscreen and --terminal.\n";

constexpr const char *displayGone = "qovelmorrss: the display has gone away; the program ends.\n";

QtMessageHandler previous = nullptr;
QtMessageHandler whileRunning = nullptr;
std::atomic<bool> exitsAtOnce = false;

// Called before the destructors of everything that was there when it was registered.
void endBeforeDestructors()
{
    if (!exitsAtOnce)
        return;
    std::fputs(displayGone, stderr);
    std::fflush(nullptr);
    ::_exit(1);
}

// A function of a library that the toolkit's plugin has loaded; null when this is another kind of
// display.
template <typename Function>
Function *loadedFunction(const char *library, const char *name)
{
    void *const handle = ::dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr)
        return nullptr;
    auto *function = reinterpret_cast<Function *>(::dlsym(handle, name));
    ::dlclose(handle);
    return function;
}

// The window system's library would say two lines of its own before it calls exit().
int sayNothing(void *)
{
    return 0;
}

void quietWindowSystem()
{
    using Handler = int(void *);
    using SetHandler = Handler *(Handler *);
    if (auto *setHandler = loadedFunction<SetHandler>("libX11.so.6", "XSetIOErrorHandler"))
        setHandler(sayNothing);
}

bool isConnectionBroken()
{
    using HasError = int(void *);
    static HasError *const hasError =
        loadedFunction<HasError>("libxcb.so.1", "xcb_connection_has_error");
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const auto *display = application != nullptr
                              ? application->nativeInterface<QNativeInterface::QX11Application>()
                              : nullptr;
    return hasError != nullptr && display != nullptr && hasError(display->connection()) != 0;
}

// From the moment the connection is broken the toolkit remarks on this and that, and last that it
// is; all of it is one event, which is said above.
void leaveOutBrokenConnection(QtMsgType type, const QMessageLogContext &context,
                              const QString &text)
{
    const QLatin1StringView category(context.category);
    const bool isToolkits =
        category == QLatin1StringView("default") || category.startsWith(QLatin1StringView("qt."));
    if (isToolkits &&
        (isConnectionBroken() || text.contains(QLatin1StringView("connection broke"))))
        return;
    whileRunning(type, context, text);
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
    whileRunning = qInstallMessageHandler(leaveOutBrokenConnection);
    quietWindowSystem();
}

ExitsAtOnce::~ExitsAtOnce()
{
    qInstallMessageHandler(whileRunning);
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
