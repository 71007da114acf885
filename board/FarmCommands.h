// SPDX-License-Identifier: MIT
#pragma once

#include "board/BoardExchange.h"
#include "board/FarmReply.h"

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <optional>

namespace qovelmor {

/// How commands are framed and their replies read: orders that nobody answers for us
/// (`voidFarmCommand`), and questions, named by what their reply is read as. A question lets the
/// line settle first and holds the turn until its reply is read.
///
/// An integer argument below 0 means "no argument". Without a reply in time a text is absent, a
/// number is -1 and bytes are none; the port has been closed and opened again then.
class FarmCommands : public BoardExchange
{
public:
    using BoardExchange::BoardExchange;

    // Orders. ------------------------------------------------------------------------------------

    void subFarmCommand(const QString &name, int argument);
    void subFarmCommand(const QString &name, QPointF argPoint);
    void voidFarmCommand(const QString &name) { voidFarmCommand(name, -1); }
    void voidFarmCommand(const QString &name, int argument) { subFarmCommand(name, argument); }
    void voidFarmCommand(const QString &name, QPointF argPoint) { subFarmCommand(name, argPoint); }
    void voidFarmCommand(const QString &name, const QString &argString);
    /// One line for each 32 bytes, the last one shorter.
    void voidFarmCommand(const QString &name, const QByteArray &argData);

    // Questions. ---------------------------------------------------------------------------------

    std::optional<QString> stringFarmCommand(const QString &name, int skip = 0);
    int intFarmCommand(const QString &name);
    /// Reads the number behind the name in the reply.
    int intFarmCommand(const QString &name, int argument);
    /// Reads the number behind `result` in the reply.
    int intFarmCommand(const QString &name, int argument, const QString &result);
    int intFarmCommand(const QString &name, const QString &result);
    int intFarmCommand(const QString &name, QPointF argPoint);
    QByteArray dataFarmCommand(const QString &name, int skip = 0);
    std::optional<QByteArray> dataRRFarmCommand(const QString &name, int skip = 0);
    /// The raw reply.
    std::optional<QString> originalFarmCommand(const QString &name, int argument = -1);
    /// Lets that much time pass between the command and its reply.
    std::optional<QString> originalFarmCommandWithDuring(const QString &name, double seconds);

    // Readers of replies. ------------------------------------------------------------------------

    /// The payload of the reply that ends with the (skip + 1)-th "Ok.": empty when no line is
    /// tagged.
    std::optional<QString> stringFarmResult(int skip = 0);
    int intFarmResult();
    int intFarmResult(const QString &key);
    QByteArray dataFarmResult(int skip = 0);
    std::optional<QStringList> arrayFarmResult(int skip = 0);
    std::optional<QByteArray> dataRRFarmResult(int skip = 0);
    /// The raw reply, once it is four bytes longer than the name.
    std::optional<QString> originalFarmResult(const QString &name);
};

} // namespace qovelmor
