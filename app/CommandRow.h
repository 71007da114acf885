// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QPushButton;
class QToolButton;

namespace qovelmor {

class VelmorRSS;

/// The buttons of the run cycle and the two toggles, above the tabs. A toggle shows what is open;
/// the controller decides what a click on it does.
class CommandRow final : public QWidget
{
    Q_OBJECT

public:
    explicit CommandRow(VelmorRSS &control);

    void setCanStart(bool canStart);
    void setCanStop(bool canStop);

    void setDrawerButton(bool on);
    bool descriptionButton() const;
    void setDescriptionButton(bool on);
    void setDescriptionButtonEnabled(bool enabled);

protected:
    void changeEvent(QEvent *event) override;

private:
    void showIcons();
    QPushButton *createButton(const QString &name, const QString &textKey, const QString &tipKey,
                              void (VelmorRSS::*command)());
    QToolButton *createToggle(const QString &name, const QString &textKey, const QString &tipKey,
                              void (VelmorRSS::*command)());

    VelmorRSS &control_;
    QPushButton *startDispButton_;
    QPushButton *stopDispButton_;
    QPushButton *getRSSButton_;
    QToolButton *drawerButton_;
    QToolButton *descriptionButton_;
};

} // namespace qovelmor
