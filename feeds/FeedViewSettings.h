// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace qovelmor {

class PropertyDictionary;
class UserDefaults;

/// How the user has set up the feed table. Each change is written at once; values are kept as
/// given.
class FeedViewSettings
{
public:
    explicit FeedViewSettings(UserDefaults &defaults) : defaults_(defaults) {}

    /// "RSSRowHeight" and "RSSFontSize" with their factory values.
    static PropertyDictionary factoryDefaults();

    double rowHeight() const;
    void setRowHeight(double points);
    double fontSize() const;
    void setFontSize(double points);

    /// One width for each column, in column order; empty before a column was resized.
    std::vector<double> columnWidths() const;
    void setColumnWidths(const std::vector<double> &points);

private:
    UserDefaults &defaults_;
};

} // namespace qovelmor
