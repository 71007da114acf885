// SPDX-License-Identifier: MIT
#include "messages/MessageViewSettings.h"

#include "platform/UserDefaults.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto rowHeightKey = u"MSGRowHeight"_s;
const auto fontSizeKey = u"MSGFontSize"_s;
const auto columnWidthsKey = u"MSGListColumnWidths"_s;
const auto descButtonKey = u"DescButtonState"_s;
const auto ledButtonKey = u"LEDButtonState"_s; // kept by the main window, registered with the rest

} // namespace

MessageViewSettings::MessageViewSettings(UserDefaults &defaults) : defaults_(defaults)
{
    defaults_.registerDefaults(
        {{rowHeightKey, 17.0}, {fontSizeKey, 12.0}, {descButtonKey, 0}, {ledButtonKey, 0}});
}

double MessageViewSettings::rowHeight() const
{
    return defaults_.floatForKey(rowHeightKey);
}

void MessageViewSettings::setRowHeight(double points)
{
    defaults_.setFloat(points, rowHeightKey);
    defaults_.synchronize();
}

double MessageViewSettings::fontSize() const
{
    return defaults_.floatForKey(fontSizeKey);
}

void MessageViewSettings::setFontSize(double points)
{
    defaults_.setFloat(points, fontSizeKey);
    defaults_.synchronize();
}

std::vector<double> MessageViewSettings::columnWidths() const
{
    std::vector<double> widths;
    for (const PropertyValue &width :
         defaults_.arrayForKey(columnWidthsKey).value_or(PropertyArray()))
        widths.push_back(width.toDouble());
    return widths;
}

void MessageViewSettings::setColumnWidths(const std::vector<double> &points)
{
    defaults_.setArray(PropertyArray(points.begin(), points.end()), columnWidthsKey);
    defaults_.synchronize();
}

int MessageViewSettings::descButtonState() const
{
    return defaults_.integerForKey(descButtonKey) == 1 ? 1 : 0;
}

void MessageViewSettings::setDescButtonState(int state)
{
    defaults_.setInteger(state, descButtonKey);
    defaults_.synchronize();
}

} // namespace qovelmor
