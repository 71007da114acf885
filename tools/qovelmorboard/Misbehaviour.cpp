// SPDX-License-Identifier: MIT
#include "tools/qovelmorboard/Misbehaviour.h"

#include <algorithm>
#include <charconv>

namespace qovelmor::simboard {

namespace {

constexpr std::array<FaultName, 13> allNames{{
    {Fault::Mute, "mute", 0, "obeys, but sends nothing at all"},
    {Fault::NoOk, "no-ok", 0, "leaves \"Ok.\" out"},
    {Fault::Late, "late", 1500, "each answer comes VALUE ms late"},
    {Fault::Bytewise, "bytewise", 5, "bytes come one by one, VALUE ms apart"},
    {Fault::Noise, "noise", 10, "VALUE % of the bytes have a random byte before them"},
    {Fault::Refuse, "refuse", 0, "no column is accepted"},
    {Fault::Stuck, "stuck", 0, "nothing moves, the buffer never drains"},
    {Fault::Endless, "endless", 0, "never says that a scroll has ended"},
    {Fault::Deaf, "deaf", 0, "stops reading for VALUE ms (0: for good)"},
    {Fault::Restart, "restart", 0, "loses its power for a moment (once)"},
    {Fault::Twice, "twice", 0, "answers everything twice"},
    {Fault::Wrong, "wrong", 0, "gives the answer to another question"},
    {Fault::HangUp, "hangup", 0, "the line goes dead, back after VALUE ms (0: never; once)"},
}};

std::optional<int> readNumber(std::string_view text)
{
    int number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < 0)
        return std::nullopt;
    return number;
}

/// Cuts "…MARKnumber" off the end of `text`; false when what follows the mark is no number.
bool cutNumber(std::string_view &text, char mark, int &number)
{
    const auto place = text.rfind(mark);
    if (place == std::string_view::npos)
        return true;
    const auto read = readNumber(text.substr(place + 1));
    if (!read)
        return false;
    number = *read;
    text = text.substr(0, place);
    return true;
}

std::optional<FaultOrder> parseOne(std::string_view text)
{
    FaultOrder order;
    int value = -1;
    if (!cutNumber(text, '*', order.times) || !cutNumber(text, '@', order.from) ||
        !cutNumber(text, '=', value))
        return std::nullopt;
    const auto found = std::find_if(allNames.begin(), allNames.end(),
                                    [text](const FaultName &name) { return name.name == text; });
    if (found == allNames.end())
        return std::nullopt;
    order.fault = found->fault;
    order.value = value < 0 ? found->defaultValue : value;
    return order;
}

} // namespace

std::span<const FaultName> Misbehaviour::names()
{
    return allNames;
}

std::optional<std::vector<FaultOrder>> Misbehaviour::parse(std::string_view text)
{
    std::vector<FaultOrder> orders;
    while (true) {
        const auto comma = text.find(',');
        const auto order = parseOne(text.substr(0, comma));
        if (!order)
            return std::nullopt;
        orders.push_back(*order);
        if (comma == std::string_view::npos)
            return orders;
        text.remove_prefix(comma + 1);
    }
}

void Misbehaviour::order(const FaultOrder &order)
{
    orders_.push_back({order, 0});
}

void Misbehaviour::countLine()
{
    // An order that has run its course is forgotten, so the count never overflows.
    std::erase_if(orders_, [](Running &running) {
        const FaultOrder &order = running.order;
        const bool counts = order.from > 0 || order.times > 0;
        if (counts && (order.times > 0 || running.lines < order.from))
            ++running.lines;
        return order.times > 0 && running.lines >= std::max(order.from, 1) + order.times;
    });
}

bool Misbehaviour::Running::inForce() const
{
    return lines >= order.from;
}

std::optional<int> Misbehaviour::active(Fault fault) const
{
    for (const Running &running : orders_) {
        if (running.order.fault == fault && running.inForce())
            return running.order.value;
    }
    return std::nullopt;
}

std::optional<int> Misbehaviour::consume(Fault fault)
{
    const auto found = std::find_if(orders_.begin(), orders_.end(), [fault](const Running &each) {
        return each.order.fault == fault && each.inForce();
    });
    if (found == orders_.end())
        return std::nullopt;
    const int value = found->order.value;
    orders_.erase(found);
    return value;
}

} // namespace qovelmor::simboard
