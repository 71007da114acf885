// SPDX-License-Identifier: MIT
#include "platform/views/Confirmation.h"

#include "platform/views/PlainAlert.h"
#include "platform/views/WideAlert.h"

#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

void openConfirmation(QWidget &parent, const Confirmation &question,
                      std::function<void(bool)> answered)
{
    auto *alert = new QMessageBox(QMessageBox::Warning, question.title, question.title,
                                  QMessageBox::NoButton, &parent);
    alert->setObjectName(question.name);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setInformativeText(question.informative);
    keepTextsPlain(*alert);
    QPushButton *accept = alert->addButton(question.acceptButton, QMessageBox::AcceptRole);
    accept->setObjectName(question.name + u"Accept"_s);
    QPushButton *cancel = alert->addButton(question.cancelButton, QMessageBox::RejectRole);
    cancel->setObjectName(question.name + u"Cancel"_s);
    alert->setDefaultButton(accept);
    alert->setEscapeButton(cancel);
    QObject::connect(alert, &QDialog::finished, &parent,
                     [alert, accept, answered = std::move(answered)] {
                         answered(alert->clickedButton() == accept);
                     });
    widen(*alert);
    alert->open();
}

} // namespace qovelmor
