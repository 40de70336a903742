#include "cli/translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {
QTranslator *installed = nullptr;
}

QString Translations::systemLanguage()
{
    const QString first = QLocale::system().uiLanguages().value(0);
    return first.startsWith("de"_L1) ? u"de"_s : u"en"_s;
}

void Translations::install(const QString &language)
{
    delete installed;
    installed = new QTranslator(QCoreApplication::instance());
    if (installed->load(u":/velometerres/Velometer_%1"_s.arg(language)))
        QCoreApplication::installTranslator(installed);
}
