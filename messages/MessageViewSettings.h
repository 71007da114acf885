// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace qovelmor {

class UserDefaults;

/// The looks of the message table and its drawer, as the user left them. Sizes are kept as given;
/// each change is durable when its setter returns. Main thread.
class MessageViewSettings
{
public:
    /// Registers the defaults of these keys.
    explicit MessageViewSettings(UserDefaults &defaults);

    double rowHeight() const;
    void setRowHeight(double points);
    double fontSize() const;
    void setFontSize(double points);
    /// In the order of the columns; empty when no width was ever changed.
    std::vector<double> columnWidths() const;
    void setColumnWidths(const std::vector<double> &points);
    int descButtonState() const; ///< 1 drawer open, 0 shut
    void setDescButtonState(int state);

private:
    UserDefaults &defaults_;
};

} // namespace qovelmor
