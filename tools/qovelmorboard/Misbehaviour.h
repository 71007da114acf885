// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qovelmor::simboard {

/// The ways in which a board can fail its host. The word in quotes is what users write.
enum class Fault {
    Mute,     ///< "mute": obeys, but sends nothing at all
    NoOk,     ///< "no-ok": leaves "Ok." out
    Late,     ///< "late": each answer comes VALUE ms late
    Bytewise, ///< "bytewise": bytes come one by one, VALUE ms apart
    Noise,    ///< "noise": VALUE % of the bytes have a random byte before them
    Refuse,   ///< "refuse": no column is accepted
    Stuck,    ///< "stuck": nothing moves, the buffer never drains
    Endless,  ///< "endless": "sc_mode" never says that the scroll has ended
    Deaf,     ///< "deaf": stops reading for VALUE ms; 0: for good
    Restart,  ///< "restart": loses its power for a moment instead of obeying
    Twice,    ///< "twice": answers everything twice
    Wrong,    ///< "wrong": gives the answer to another question
    HangUp,   ///< "hangup": the line goes dead, and comes back after VALUE ms; 0: never
};

/// One fault as ordered: from the `from`-th command line after the order on, for `times` lines.
struct FaultOrder
{
    Fault fault = Fault::Mute;
    int value = 0;
    int from = 0;  ///< 0: at once
    int times = 0; ///< 0: until told otherwise

    bool operator==(const FaultOrder &) const = default;
};

/// Name, meaning of the value and a line of help of one fault.
struct FaultName
{
    Fault fault;
    std::string_view name;
    int defaultValue;
    std::string_view help;
};

/// The faults in force; counts the command lines for them.
class Misbehaviour
{
public:
    static std::span<const FaultName> names();
    /// Reads "NAME[=VALUE][@FROM][*TIMES],..."; nothing when any of it cannot be understood.
    static std::optional<std::vector<FaultOrder>> parse(std::string_view text);

    void order(const FaultOrder &order);
    void behave() { orders_.clear(); }

    /// A command line has come in; to be called before it is obeyed.
    void countLine();

    /// The value of a fault that is in force now.
    std::optional<int> active(Fault fault) const;
    bool isActive(Fault fault) const { return active(fault).has_value(); }
    /// Like active(), but the order is used up: for faults that happen once.
    std::optional<int> consume(Fault fault);

private:
    struct Running
    {
        FaultOrder order;
        int lines = 0;

        bool inForce() const;
    };

    std::vector<Running> orders_;
};

} // namespace qovelmor::simboard
