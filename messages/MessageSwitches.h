// SPDX-License-Identifier: MIT
#pragma once

#include "messages/MergeRules.h"
#include "platform/PropertyValue.h"

#include <QString>

#include <memory>
#include <mutex>

namespace qovelmor {

class UserDefaults;

/// How messages are gathered and shown; the values are those of the first start.
struct DisplaySwitches
{
    bool isDispLine = false;   ///< line number in the displayed line
    bool isDispDate = true;    ///< date in the displayed line
    bool isDispName = true;    ///< site name in the displayed line
    bool isDispDesc = false;   ///< description in the displayed line
    int maxMessages = 10;      ///< per-site cap
    bool useMaxMsg = false;    ///< whether the cap is applied
    int dispOrder = 0;         ///< a MessageOrder
    bool dispEachRSS = true;   ///< keep sites grouped
    bool showCalendar = false; ///< the present date after each message on the board
    bool dispInfo = false;     ///< information messages between the headlines
    QString fontName;          ///< the outline font of board text
    int fontBoarder = 72;      ///< the threshold of board text

    MessageOrder order() const;
};

/// The switches of the message list and where they are stored: each change is written and made
/// durable at once, so fields and store never differ. Setters belong to the main thread; any thread
/// takes a snapshot.
class MessageSwitches
{
public:
    /// Registers the defaults of the message list's keys.
    explicit MessageSwitches(UserDefaults &defaults);

    /// Takes over what the store holds.
    void load();

    std::shared_ptr<const DisplaySwitches> snapshot() const;

    void setIsDispLine(bool value);
    void setIsDispDate(bool value);
    void setIsDispName(bool value);
    void setIsDispDesc(bool value);
    /// A value below 1 is stored as 0, which is no cap.
    void setMaxMessages(int value);
    void setUseMaxMsg(bool value);
    void setDispOrder(int value);
    void setDispEachRSS(bool value);
    void setShowCalendar(bool value);
    void setDispInfo(bool value);
    void setFontName(const QString &value);
    void setFontBoarder(int value);

private:
    template <typename T>
    void change(T DisplaySwitches::*field, const T &value);
    void store(PropertyValue value, const QString &key);

    UserDefaults &defaults_;
    mutable std::mutex mutex_;
    std::shared_ptr<const DisplaySwitches> switches_;
};

} // namespace qovelmor
