// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"
#include "app/InterfaceFont.h"
#include "app/Program.h"
#include "app/ProgramIcon.h"
#include "app/RaiseService.h"
#include "app/StartChecks.h"
#include "app/ToolkitTexts.h"
#include "platform/FreedMemory.h"
#include "platform/InstanceLock.h"
#include "platform/UserDefaults.h"

#include <QApplication>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdio>
#include <optional>

using namespace qovelmor;
using namespace Qt::Literals::StringLiterals;

namespace {

QStringList argumentList(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

int runProgram(const CommandLine &commandLine)
{
    const QString profileFolder = QFileInfo(UserDefaults::defaultPath()).path();
    const InstanceLock lock(profileFolder);
    if (lock.isHeldByAnother()) {
        if (!RaiseService::raiseFirst(profileFolder))
            std::fputs("qovelmorrss: the program already runs with this profile.\n", stderr);
        return 0;
    }
    Program program(commandLine);
    const ExitsAtOnce exitsAtOnce;
    return program.run();
}

} // namespace

int main(int argc, char **argv)
{
    keepLittleFreedMemory();
    QCoreApplication::setApplicationName(u"QoVelmorRSS"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QOVELMOR_VERSION));
    QGuiApplication::setDesktopFileName(u"qovelmorrss"_s);
    int exitStatus = 0;
    const auto commandLine = CommandLine::parse(argumentList(argc, argv), exitStatus);
    if (!commandLine)
        return exitStatus;
    if (!hasDisplay())
        return 1;

    std::optional<QApplication> application;
    {
        const FatalMessagesEndQuietly quietly;
        application.emplace(argc, argv);
    }
    // Without a display the toolkit says of each window that it can be neither raised nor sized.
    if (QGuiApplication::platformName() == u"offscreen"_s)
        QLoggingCategory::setFilterRules(
            u"default.warning=false\nqt.core.qobject.connect.warning=false"_s);
    chooseInterfaceFont();
    translateToolkitTexts(*application);
    QApplication::setWindowIcon(programIcon());
    // Where there is no tray, closing the main window quits by the program's own way out.
    QApplication::setQuitOnLastWindowClosed(false);
    return runProgram(*commandLine);
}
