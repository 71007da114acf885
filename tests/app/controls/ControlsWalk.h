// SPDX-License-Identifier: MIT
#pragma once

#include "ControlTable.h"

namespace qovelmor {

/// Walks windows against the tables of their controls. A test program derives from it and gives its
/// stages; each of these tests goes through all of them.
class ControlsWalk : public QObject
{
    Q_OBJECT

protected:
    explicit ControlsWalk(std::vector<Stage> stages);

private Q_SLOTS:
    void initTestCase();

    /// A control that no table lists fails, and so does a row without a control.
    void everyControlIsInTheTable_data() { eachStage(); }
    void everyControlIsInTheTable();
    /// Object name, accessible name, and a text from the table of texts.
    void everyControlSaysWhatItIs_data() { eachStage(); }
    void everyControlSaysWhatItIs();
    /// Alt and a letter means one thing in a window.
    void keysAreUnique_data() { eachStage(); }
    void keysAreUnique();
    /// What acts when it is pressed can be pressed without the Tab key.
    void everyCommandHasAKey_data() { eachStage(); }
    void everyCommandHasAKey();
    /// The Tab key goes through all controls in the order of the table, and one sees where it is.
    void tabKeyGoesThroughThemAll_data() { eachStage(); }
    void tabKeyGoesThroughThemAll();
    void controlsDoWhatTheTableSays_data();
    void controlsDoWhatTheTableSays();

private:
    void eachStage() const;
    const Stage &stage() const; ///< of the present data row
    /// Opens the stage; null (and a failed test) when its window does not come.
    QWidget *open(AllWindows &program, const Stage &stage) const;

    const std::vector<Stage> stages_;
};

} // namespace qovelmor
