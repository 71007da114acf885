// SPDX-License-Identifier: MIT
#include "platform/views/Alert.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int widthOfSentence = 420;

// The box's own setTextFormat() leaves out the informative text, which would still be read as
// mark-up and open links.
void keepTextsPlain(QMessageBox &box)
{
    for (QLabel *label : box.findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
}

// By itself an alert is as wide as its title, and a Japanese sentence below a short title breaks
// every few words.
void widen(QMessageBox &box)
{
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout()))
        grid->addItem(new QSpacerItem(widthOfSentence, 0), grid->rowCount(), 0, 1,
                      grid->columnCount());
}

QPushButton *addButtons(QMessageBox &box, const Alert &alert)
{
    const bool isQuestion = !alert.cancelButton.isEmpty();
    QPushButton *accept = box.addButton(alert.button, QMessageBox::AcceptRole);
    accept->setObjectName(alert.name + (isQuestion ? u"Accept"_s : u"Button"_s));
    box.setDefaultButton(accept);
    if (isQuestion) {
        QPushButton *cancel = box.addButton(alert.cancelButton, QMessageBox::RejectRole);
        cancel->setObjectName(alert.name + u"Cancel"_s);
        box.setEscapeButton(cancel);
    }
    return accept;
}

} // namespace

void openAlert(QWidget &parent, const Alert &alert, std::function<void(bool isAccepted)> answered)
{
    auto *box =
        new QMessageBox(alert.icon, alert.windowTitle.isEmpty() ? alert.title : alert.windowTitle,
                        alert.title, QMessageBox::NoButton, &parent);
    box->setObjectName(alert.name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(alert.informative);
    if (!alert.picture.isNull())
        box->setIconPixmap(alert.picture);
    QPushButton *accept = addButtons(*box, alert);
    if (answered) {
        QObject::connect(box, &QDialog::finished, &parent,
                         [box, accept, answered = std::move(answered)] {
                             answered(box->clickedButton() == accept);
                         });
    }
    keepTextsPlain(*box);
    widen(*box);
    box->open();
}

} // namespace qovelmor
