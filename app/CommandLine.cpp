// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

std::optional<CommandLine> CommandLine::parse(const QStringList &arguments, int &exitStatus)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Reads news feeds and scrolls their headlines on an LED sign."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Show this help."_s);
    const QCommandLineOption version(u"version"_s, u"Show the version."_s);
    const QCommandLineOption once(u"once"_s, u"Read the feeds, show every headline once, and end. "
                                             "Status 1 when there was no headline to show."_s);
    const QCommandLineOption terminal(u"terminal"_s,
                                      u"Draw the on-screen board in this terminal too."_s);
    parser.addOptions({help, version, once, terminal});

    exitStatus = 0;
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        const QString problem =
            parser.errorText().isEmpty()
                ? u"Unexpected argument: "_s + parser.positionalArguments().constFirst()
                : parser.errorText();
        std::fprintf(stderr, "qovelmorrss: %s\n", qUtf8Printable(problem));
        exitStatus = 2;
        return std::nullopt;
    }
    if (parser.isSet(help)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return std::nullopt;
    }
    if (parser.isSet(version)) {
        std::printf("qovelmorrss %s\n", qUtf8Printable(QCoreApplication::applicationVersion()));
        return std::nullopt;
    }
    CommandLine chosen;
    chosen.once = parser.isSet(once);
    chosen.terminal = parser.isSet(terminal);
    return chosen;
}

} // namespace qovelmor
