// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardProgram.h"

#include <QApplication>

#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

/// Turns the signals that ask for an end into a readable descriptor. Before any thread starts, so
/// that all threads leave them alone.
int takeSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

QStringList argumentsOf(int count, char **values)
{
    QStringList arguments;
    for (int i = 0; i < count; ++i)
        arguments.append(QString::fromLocal8Bit(values[i]));
    return arguments;
}

std::unique_ptr<QCoreApplication> makeApplication(bool withWindow, int &argc, char **argv)
{
    if (withWindow)
        return std::make_unique<QApplication>(argc, argv);
    return std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace

int main(int argc, char **argv)
{
    using namespace qovelmor::simboard;

    ProgramOptions options;
    QString text;
    int exitCode = 0;
    const pid_t parent = ::getppid();
    // Reading the command line needs an application object, and which kind the command line says.
    {
        const QCoreApplication reading(argc, argv);
        if (!readProgramOptions(argumentsOf(argc, argv), options, text, exitCode)) {
            std::fputs(qPrintable(text), exitCode == 0 ? stdout : stderr);
            return exitCode;
        }
    }
    if (options.window && !hasDisplay()) {
        std::fputs("qovelmorboard: there is no display for --window\n", stderr);
        options.window = false;
    }
    if (options.exitWithParent) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent)
            return 0;
    }
    const int signalDescriptor = takeSignals();
    const auto application = makeApplication(options.window, argc, argv);
    BoardProgram program(options, signalDescriptor);
    return program.start() ? application->exec() : 1;
}
