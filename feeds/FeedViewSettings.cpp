// SPDX-License-Identifier: MIT
#include "feeds/FeedViewSettings.h"

#include "platform/PropertyValue.h"
#include "platform/UserDefaults.h"

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto rowHeightKey = u"RSSRowHeight"_s;
const auto fontSizeKey = u"RSSFontSize"_s;
const auto columnWidthsKey = u"RSSListColumnWidths"_s;

} // namespace

PropertyDictionary FeedViewSettings::factoryDefaults()
{
    return {{rowHeightKey, 17.0}, {fontSizeKey, 12.0}};
}

double FeedViewSettings::rowHeight() const
{
    return defaults_.floatForKey(rowHeightKey);
}

void FeedViewSettings::setRowHeight(double points)
{
    defaults_.setFloat(points, rowHeightKey);
    defaults_.synchronize();
}

double FeedViewSettings::fontSize() const
{
    return defaults_.floatForKey(fontSizeKey);
}

void FeedViewSettings::setFontSize(double points)
{
    defaults_.setFloat(points, fontSizeKey);
    defaults_.synchronize();
}

std::vector<double> FeedViewSettings::columnWidths() const
{
    std::vector<double> widths;
    for (const PropertyValue &width :
         defaults_.arrayForKey(columnWidthsKey).value_or(PropertyArray()))
        widths.push_back(width.toDouble());
    return widths;
}

void FeedViewSettings::setColumnWidths(const std::vector<double> &points)
{
    defaults_.setArray(PropertyArray(points.begin(), points.end()), columnWidthsKey);
    defaults_.synchronize();
}

} // namespace qovelmor
