// SPDX-License-Identifier: MIT
#include "settings/views/FilterGroup.h"

#include "platform/Localization.h"
#include "settings/views/SettingControls.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <array>
#include <functional>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Word
{
    QString (Setup::*getter)() const;
    void (SettingsActions::*action)(const QString &);
};

constexpr std::array<Word, 8> words{{
    {&Setup::skipCMWord1, &SettingsActions::actSkipCMWord1},
    {&Setup::skipCMWord2, &SettingsActions::actSkipCMWord2},
    {&Setup::skipCMWord3, &SettingsActions::actSkipCMWord3},
    {&Setup::skipCMWord4, &SettingsActions::actSkipCMWord4},
    {&Setup::skipCMWord5, &SettingsActions::actSkipCMWord5},
    {&Setup::skipCMWord6, &SettingsActions::actSkipCMWord6},
    {&Setup::skipCMWord7, &SettingsActions::actSkipCMWord7},
    {&Setup::skipCMWord8, &SettingsActions::actSkipCMWord8},
}};
constexpr int wordsInARow = 4;

} // namespace

FilterGroup::FilterGroup(Setup &setup, SettingsActions &actions)
    : SettingsGroup(u"GroupFilters"_s, setup, actions)
{
    addCheck(u"dontShowOlder"_s, u"DontShowOlder"_s, &Setup::dontShowOlder,
             &SettingsActions::actDontShowOlder);
    addNumber({u"olderHours"_s, u"OlderHours"_s, u"OlderHoursHint"_s, 1, 8760}, &Setup::olderHours,
              &SettingsActions::actOlderHours);
    addCheck(u"skipCMMode"_s, u"SkipCommercialMode"_s, &Setup::skipCMMode,
             &SettingsActions::actSkipCMMode);
    addRow(createWords());
    QLabel *hint = settingNote(u"skipCMHint"_s);
    showNote(hint, localized(u"SkipCommercialHint"_s));
    addRow(hint);
}

QWidget *FilterGroup::createWords()
{
    auto *grid = new QWidget;
    auto *layout = new QGridLayout(grid);
    layout->setContentsMargins(0, 0, 0, 0);
    for (int index = 0; index < static_cast<int>(words.size()); ++index) {
        const Word &word = words[static_cast<std::size_t>(index)];
        auto *field = new QLineEdit;
        nameControl(field, u"skipCMWord%1"_s.arg(index + 1),
                    localized(u"SkipCommercialWord"_s).arg(index + 1));
        field->setMinimumWidth(56);
        connect(field, &QLineEdit::editingFinished, this, [this, field, word] {
            if (field->text() != std::invoke(word.getter, setup()))
                std::invoke(word.action, actions(), field->text());
        });
        onRenewal([this, field, word] { field->setText(std::invoke(word.getter, setup())); });
        layout->addWidget(field, index / wordsInARow, index % wordsInARow);
    }
    return grid;
}

} // namespace qovelmor
