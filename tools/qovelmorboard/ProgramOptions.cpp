// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/ProgramOptions.h"

#include <QCommandLineParser>

namespace qovelmor::simboard {

using namespace Qt::Literals::StringLiterals;

namespace {

QString description()
{
    QString text = u"A simulated LED board on a pseudo-terminal.\n\n"
                   "The first line printed is the path of the serial line to give to the host.\n"
                   "Faults for --misbehave are written NAME[=VALUE][@LINE][*LINES], separated by\n"
                   "commas; @3 starts with the third command line, *2 lasts for two lines:\n"_s;
    for (const FaultName &name : Misbehaviour::names()) {
        text += u"  "_s +
                QString::fromUtf8(name.name.data(), qsizetype(name.name.size())).leftJustified(10) +
                QString::fromUtf8(name.help.data(), qsizetype(name.help.size())) + u"\n"_s;
    }
    text += u"Control commands (standard input with --stdin, or the --control socket), one per\n"
            "line: misbehave FAULTS, behave, hangup, return, restart, set NAME VALUE, picture,\n"
            "state, quit."_s;
    return text;
}

const QList<QCommandLineOption> &allOptions()
{
    static const QList<QCommandLineOption> options{
        {u"link"_s, u"Keep a symbolic link to the serial line at PATH."_s, u"PATH"_s},
        {u"kind"_s,
         u"talkative (says Ok. after every command) or quiet (answers questions only)."_s,
         u"KIND"_s, u"talkative"_s},
        {u"modules"_s, u"Modules of 32 columns at power-on."_s, u"N"_s},
        {u"set"_s, u"Start value of a variable; may be given again."_s, u"NAME=VALUE"_s},
        {u"buffer"_s, u"Size of the column buffer."_s, u"COLUMNS"_s, u"128"_s},
        {u"speed-factor"_s, u"Scroll F times faster than the variables say."_s, u"F"_s, u"1"_s},
        {u"unthrottled"_s, u"Carry bytes as fast as possible instead of 1,920 a second."_s},
        {u"misbehave"_s, u"Faults from the start."_s, u"FAULTS"_s},
        {u"seed"_s, u"Seed of the noise."_s, u"N"_s, u"1"_s},
        {u"terminal"_s, u"Draw the dots here in braille characters."_s},
        {u"window"_s, u"Draw the dots in a window."_s},
        {u"frames"_s, u"Write each new picture as a PNG file into DIR."_s, u"DIR"_s},
        {u"max-frames"_s, u"Keep only the last N of them."_s, u"N"_s, u"1000"_s},
        {u"columns"_s, u"Write every column shown to FILE."_s, u"FILE"_s},
        {u"log"_s, u"Append every line in both directions to FILE."_s, u"FILE"_s},
        {u"control"_s, u"Take control commands on the local socket PATH."_s, u"PATH"_s},
        {u"stdin"_s, u"Take control commands from standard input."_s},
        {u"exit-with-parent"_s, u"End when the parent process ends."_s},
    };
    return options;
}

/// Reads options one by one and remembers the first that cannot be understood.
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &parser) : parser_(parser) {}

    std::string text(const QString &name) const { return parser_.value(name).toStdString(); }

    int whole(const QString &name, int low, int high)
    {
        bool ok = false;
        const int value = parser_.value(name).toInt(&ok);
        if (!ok || value < low || value > high)
            complain(name);
        return value;
    }

    double factor(const QString &name)
    {
        bool ok = false;
        const double value = parser_.value(name).toDouble(&ok);
        if (!ok || !(value > 0.0))
            complain(name);
        return value;
    }

    void complain(const QString &name)
    {
        if (complaint_.isEmpty())
            complaint_ = u"--%1 %2 cannot be understood\n"_s.arg(name, parser_.value(name));
    }

    const QString &complaint() const { return complaint_; }

private:
    const QCommandLineParser &parser_;
    QString complaint_;
};

void readVariables(const QCommandLineParser &parser, OptionReader &reader, ProgramOptions &options)
{
    for (const QString &setting : parser.values(u"set"_s)) {
        const QString name = setting.section(u'=', 0, 0);
        bool ok = false;
        const int value = setting.section(u'=', 1).toInt(&ok);
        BoardVariables trial;
        const VariableRule *rule = BoardVariables::find(name.toStdString());
        if (!ok || !rule || !trial.set(rule->variable, value))
            reader.complain(u"set"_s);
        options.variables.emplace_back(name.toStdString(), value);
    }
    if (parser.isSet(u"modules"_s))
        options.variables.emplace_back("cmodule", reader.whole(u"modules"_s, 0, 32));
}

void readBoard(const QCommandLineParser &parser, OptionReader &reader, SimulatedBoardOptions &board)
{
    const QString kind = parser.value(u"kind"_s);
    if (kind != u"talkative"_s && kind != u"quiet"_s)
        reader.complain(u"kind"_s);
    board.firmware.kind = kind == u"quiet"_s ? BoardKind::Quiet : BoardKind::Talkative;
    board.firmware.bufferColumns = std::size_t(reader.whole(u"buffer"_s, 16, 65536));
    board.firmware.speedFactor = reader.factor(u"speed-factor"_s);
    board.firmware.seed = unsigned(reader.whole(u"seed"_s, 0, 0x7FFFFFFF));
    board.throttled = !parser.isSet(u"unthrottled"_s);
    board.link = reader.text(u"link"_s);
    board.logFile = reader.text(u"log"_s);
    board.columnsFile = reader.text(u"columns"_s);
    if (!parser.isSet(u"misbehave"_s))
        return;
    if (const auto faults = Misbehaviour::parse(reader.text(u"misbehave"_s)))
        board.faults = *faults;
    else
        reader.complain(u"misbehave"_s);
}

} // namespace

bool readProgramOptions(const QStringList &arguments, ProgramOptions &options, QString &text,
                        int &exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    parser.addOptions(allOptions());
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Show this help."_s);
    parser.addOption(help);
    const bool understood = parser.parse(arguments);
    exitCode = understood && parser.isSet(help) ? 0 : 2;
    if (understood && parser.isSet(help)) {
        text = parser.helpText();
        return false;
    }
    if (!understood || !parser.positionalArguments().isEmpty()) {
        text = understood ? u"unknown argument: %1\n"_s.arg(parser.positionalArguments().first())
                          : parser.errorText() + u"\n"_s;
        return false;
    }
    OptionReader reader(parser);
    readBoard(parser, reader, options.board);
    readVariables(parser, reader, options);
    options.terminal = parser.isSet(u"terminal"_s);
    options.window = parser.isSet(u"window"_s);
    options.commandsFromInput = parser.isSet(u"stdin"_s);
    options.exitWithParent = parser.isSet(u"exit-with-parent"_s);
    options.controlPath = parser.value(u"control"_s);
    options.framesFolder = parser.value(u"frames"_s);
    options.mostFrames = reader.whole(u"max-frames"_s, 1, 1000000);
    text = reader.complaint();
    return text.isEmpty();
}

} // namespace qovelmor::simboard
