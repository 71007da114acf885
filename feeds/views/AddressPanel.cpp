// SPDX-License-Identifier: MIT
#include "feeds/views/AddressPanel.h"

#include "platform/Localization.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int widthOfPanel = 480; // most feed addresses are seen whole

} // namespace

AddressPanel::AddressPanel(QWidget *parent)
    : QDialog(parent), addressText_(new QLineEdit), waitText_(new QLabel)
{
    setObjectName(u"addressPanel"_s);
    setMinimumWidth(widthOfPanel);
    addressText_->setObjectName(u"addressText"_s);
    addressText_->setAccessibleName(localized(u"RSSAddress"_s));
    addressText_->setPlaceholderText(u"https://example.jp/index.rss"_s);
    addressText_->setClearButtonEnabled(true);
    waitText_->setObjectName(u"addressWaitText"_s);
    waitText_->setTextFormat(Qt::PlainText);
    waitText_->setWordWrap(true);
    auto *title = new QLabel(localized(u"AddressLabel"_s));
    title->setBuddy(addressText_);

    auto *buttons = new QDialogButtonBox;
    actAddressExec_ = buttons->addButton(localized(u"AddressExec"_s), QDialogButtonBox::AcceptRole);
    actAddressExec_->setObjectName(u"actAddressExec"_s);
    actAddressCancel_ =
        buttons->addButton(localized(u"AddressCancel"_s), QDialogButtonBox::RejectRole);
    actAddressCancel_->setObjectName(u"actAddressCancel"_s);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(addressText_);
    layout->addWidget(waitText_);
    layout->addWidget(buttons);
    waitText_->setMinimumHeight(2 * waitText_->fontMetrics().lineSpacing());

    connect(addressText_, &QLineEdit::textChanged, this, [this] { updateButton(); });
    connect(buttons, &QDialogButtonBox::accepted, this,
            [this] { Q_EMIT addressEntered(addressText_->text()); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
}

void AddressPanel::openWith(const QString &title, const QString &address)
{
    setWindowTitle(title);
    addressText_->setText(address);
    addressText_->selectAll();
    addressText_->setFocus();
    showFetching({});
    updateButton();
    actAddressExec_->setDefault(true); // the last fetch has left the other one in its place
    open();
}

void AddressPanel::closePanel()
{
    QDialog::reject();
}

void AddressPanel::reject()
{
    Q_EMIT cancelled();
}

void AddressPanel::updateButton()
{
    actAddressExec_->setEnabled(!addressText_->text().isEmpty());
}

// What is typed during the fetch is lost: the controls say so by being grey.
void AddressPanel::showFetching(const QString &sentence)
{
    waitText_->setText(sentence.isEmpty() ? localized(u"AddressNote"_s) : sentence);
    const bool isIdle = sentence.isEmpty();
    addressText_->setEnabled(isIdle);
    actAddressExec_->setEnabled(isIdle && !addressText_->text().isEmpty());
    actAddressCancel_->setEnabled(isIdle);
    if (!isIdle)
        repaint();
}

} // namespace qovelmor
