#include "utils/translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {
QTranslator *installed = nullptr;
QString current;
} // namespace

QString Translations::systemLanguage()
{
    return QLocale::system().name().startsWith("de"_L1) ? u"de"_s : u"en"_s;
}

QString Translations::language()
{
    return current.isEmpty() ? systemLanguage() : current;
}

void Translations::install(const QString &language)
{
    current = language;
    delete installed;
    installed = new QTranslator(QCoreApplication::instance());
    if (installed->load(u":/velometerres/Velometer_%1"_s.arg(language)))
        QCoreApplication::installTranslator(installed);
}
