// SPDX-License-Identifier: MIT
#include "messages/RowText.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

// An absent description is printed as the platform prints an absent text.
QString descriptionPart(const Message &message)
{
    if (!message.description)
        return u"(null)"_s;
    return message.description->isEmpty() ? QString() : u"＊＊＊"_s + *message.description;
}

} // namespace

QString copiedRowText(const Message &message)
{
    const bool hasDate = message.date && !message.date->isEmpty();
    return (hasDate ? *message.date : u"日時不明"_s) + u' ' + message.headline +
           descriptionPart(message);
}

} // namespace qovelmor
