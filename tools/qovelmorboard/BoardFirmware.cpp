// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/BoardFirmware.h"

#include "tools/qovelmorboard/Arguments.h"
#include "tools/qovelmorboard/BoardCommands.h"
#include "tools/qovelmorboard/Reply.h"

#include <algorithm>
#include <utility>

namespace qovelmor::simboard {

namespace {

constexpr std::string_view endMark = "Ok.\r\n";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view powerOnText = "V QoVelmor LED board 1.0\r\nOk.\r\n";

/// A gap in time that is too long to be caught up column by column (the machine was asleep).
constexpr std::chrono::seconds longestCatchUp{60};

void removeEndMarks(std::string &text)
{
    for (auto place = text.find(endMark); place != std::string::npos; place = text.find(endMark))
        text.erase(place, endMark.size());
}

/// An answer that fits another question than the one asked.
std::string_view wrongAnswer(std::string_view name)
{
    return name == "set" ? "D run:1\r\nOk.\r\n" : "D cmodule 4\r\nOk.\r\n";
}

} // namespace

BoardFirmware::BoardFirmware(const FirmwareOptions &options, Time now, DisplayWatcher *watcher)
    : options_(options)
    , watcher_(watcher)
    , replies_(options.seed)
    , state_(std::make_unique<BoardState>(options.bufferColumns, BoardRom(),
                                          static_cast<DisplayWatcher *>(this)))
    , poweredOn_(now)
    , now_(now)
    , nextStep_(now)
{}

void BoardFirmware::restart(Time now)
{
    if (state_->display.isMoving())
        state_->display.stop();
    const BoardRom rom = state_->rom;
    state_ = std::make_unique<BoardState>(options_.bufferColumns, rom,
                                          static_cast<DisplayWatcher *>(this));
    state_->glyphs = glyphs_;
    line_.clear();
    replies_.clear();
    poweredOn_ = now;
    now_ = now;
    if (options_.kind == BoardKind::Talkative)
        send(powerOnText, now);
}

void BoardFirmware::setGlyphs(GlyphSource glyphs)
{
    glyphs_ = std::move(glyphs);
    state_->glyphs = glyphs_;
}

bool BoardFirmware::setVariable(std::string_view name, int value)
{
    const VariableRule *rule = BoardVariables::find(name);
    if (!rule || !state_->variables.set(rule->variable, value))
        return false;
    if (rule->variable == BoardVariable::ModuleCount)
        state_->setModules(value);
    return true;
}

std::optional<int> BoardFirmware::takeHangUp()
{
    if (!hangUp_)
        hangUp_ = misbehaviour_.consume(Fault::HangUp);
    return std::exchange(hangUp_, std::nullopt);
}

// The line. ------------------------------------------------------------------------------------

void BoardFirmware::receive(std::string_view bytes, Time now)
{
    advance(now);
    for (const char byte : bytes) {
        if (hangUp_)
            return; // the line is dead: what follows on it is not heard
        receiveByte(byte, now);
    }
}

void BoardFirmware::receiveByte(char byte, Time now)
{
    const bool echoes = state_->echo && options_.kind == BoardKind::Talkative;
    if (byte == '\r') {
        if (echoes)
            send(lineEnd, now);
        obey(std::exchange(line_, {}), now);
    } else if (byte != '\n' && line_.size() < longestLine) {
        line_.push_back(byte);
        if (echoes)
            send(std::string_view(&byte, 1), now);
    }
}

void BoardFirmware::obey(const std::string &line, Time now)
{
    misbehaviour_.countLine();
    if (misbehaviour_.consume(Fault::Restart)) {
        restart(now);
        return;
    }
    hangUp_ = misbehaviour_.consume(Fault::HangUp);
    if (hangUp_)
        return;

    state_->refusesColumns = misbehaviour_.isActive(Fault::Refuse);
    state_->neverEnds = misbehaviour_.isActive(Fault::Endless);
    state_->uptime = std::chrono::duration_cast<std::chrono::milliseconds>(now - poweredOn_);
    const bool movedBefore = state_->display.isMoving();
    send(answer(line), now);
    noteMovement(movedBefore, now);
}

std::string BoardFirmware::answer(const std::string &line)
{
    const auto blank = line.find(' ');
    const std::string name = line.substr(0, blank);
    const Arguments arguments(
        blank == std::string::npos ? std::string_view() : std::string_view(line).substr(blank + 1));
    const BoardCommand *command = findBoardCommand(name);
    Reply reply;
    if (command)
        command->run(*state_, arguments, reply);
    else if (!name.empty())
        reply.error(errorUnknown);

    const bool quiet = options_.kind == BoardKind::Quiet;
    if (quiet && !(command && isQuestion(*command, arguments)))
        return {};
    std::string text = reply.text() + std::string(endMark);
    if (misbehaviour_.isActive(Fault::Wrong))
        text = wrongAnswer(name);
    if (quiet && state_->echo)
        text = line + std::string(lineEnd) + text;
    if (misbehaviour_.isActive(Fault::NoOk))
        removeEndMarks(text);
    if (misbehaviour_.isActive(Fault::Twice))
        text += text;
    return text;
}

void BoardFirmware::send(std::string_view bytes, Time now)
{
    if (!misbehaviour_.isActive(Fault::Mute))
        replies_.add(bytes, now, misbehaviour_);
}

// Movement. ------------------------------------------------------------------------------------

BoardFirmware::Duration BoardFirmware::columnTime() const
{
    const int divider = std::max(1, state_->variables.value(BoardVariable::ScrollDivider));
    const std::chrono::duration<double, std::milli> time =
        speedStep * divider / options_.speedFactor;
    return std::max(std::chrono::duration_cast<Duration>(time),
                    std::chrono::duration_cast<Duration>(std::chrono::microseconds(10)));
}

void BoardFirmware::noteMovement(bool movedBefore, Time now)
{
    if (!movedBefore && state_->display.isMoving())
        nextStep_ = now + columnTime();
}

void BoardFirmware::advance(Time now)
{
    if (now - nextStep_ > longestCatchUp)
        nextStep_ = now;
    while (state_->display.isMoving() && nextStep_ <= now) {
        now_ = nextStep_;
        if (!misbehaviour_.isActive(Fault::Stuck))
            state_->display.step();
        nextStep_ += columnTime();
    }
    now_ = now;
}

std::optional<BoardFirmware::Time> BoardFirmware::nextEvent() const
{
    std::optional<Time> next = replies_.nextTime();
    if (state_->display.isMoving())
        next = next ? std::min(*next, nextStep_) : nextStep_;
    return next;
}

void BoardFirmware::runStarted(bool scrolling)
{
    if (watcher_)
        watcher_->runStarted(scrolling);
    if (scrolling && state_->variables.isOn(BoardVariable::ScrollVerbose))
        send("scroll start\r\n", now_);
}

void BoardFirmware::columnShown(ColumnWord column)
{
    if (watcher_)
        watcher_->columnShown(column);
}

void BoardFirmware::runEnded(DisplayMode how)
{
    if (watcher_)
        watcher_->runEnded(how);
    if (how == DisplayMode::Ended && state_->variables.isOn(BoardVariable::ScrollVerbose))
        send("scroll end\r\n", now_);
}

} // namespace qovelmor::simboard
