// SPDX-License-Identifier: MIT
#include "feeds/views/ImportPanel.h"

#include "platform/Localization.h"
#include "platform/views/AnswerableWindow.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto moment = 400ms; // a short import shows nothing that would only flicker
constexpr int widthOfPanel = 480;

} // namespace

ImportPanel::ImportPanel(QWidget *parent)
    : QDialog(parent), importText_(new QLabel), importProgress_(new QProgressBar)
{
    setObjectName(u"importPanel"_s);
    setMinimumWidth(widthOfPanel);
    importText_->setObjectName(u"importText"_s);
    importText_->setTextFormat(Qt::PlainText);
    importText_->setWordWrap(true);
    importText_->setMinimumHeight(2 * importText_->fontMetrics().lineSpacing());
    importProgress_->setObjectName(u"importProgress"_s);
    importProgress_->setAccessibleName(localized(u"ImportProgress"_s));
    importProgress_->setFormat(u"%v/%m"_s);
    auto *buttons = new QDialogButtonBox;
    actImportCancel_ =
        buttons->addButton(localized(u"ImportCancel"_s), QDialogButtonBox::RejectRole);
    actImportCancel_->setObjectName(u"actImportCancel"_s);
    actImportCancel_->setAccessibleName(spokenText(u"ImportCancel"_s));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(importText_);
    layout->addWidget(importProgress_);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &ImportPanel::reject);
    opening_.setSingleShot(true);
    opening_.setInterval(moment);
    connect(&opening_, &QTimer::timeout, this, &ImportPanel::open);
}

void ImportPanel::begin(const QString &title, int total)
{
    setWindowTitle(title);
    importProgress_->setRange(0, total);
    importProgress_->setValue(0);
    actImportCancel_->setEnabled(true);
    opening_.start();
}

void ImportPanel::showProgress(int number, const QString &sentence)
{
    importProgress_->setValue(number - 1); // so many are done
    importText_->setText(sentence);
}

void ImportPanel::end()
{
    opening_.stop();
    hide();
}

// The fetch that is running ends within moments; until then the panel says so.
void ImportPanel::reject()
{
    actImportCancel_->setEnabled(false);
    importText_->setText(localized(u"ImportCancelling"_s));
    Q_EMIT cancelled();
}

void ImportPanel::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    makeAnswerable(*this);
}

} // namespace qovelmor
