// SPDX-License-Identifier: MIT
#include "app/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

void translateToolkitTexts(QCoreApplication &application)
{
    auto *translator = new QTranslator(&application);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(QLocale(QLocale::Japanese, QLocale::Japan), u"qtbase"_s, u"_"_s, folder))
        QCoreApplication::installTranslator(translator);
}

} // namespace qovelmor
