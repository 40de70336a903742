#include "utils/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {
QTranslator *installed = nullptr;
QTranslator *toolkits = nullptr; ///< menus of text fields and the like
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
    (void)installed->load(u":/velometerres/Velometer_%1"_s.arg(language));
    QCoreApplication::installTranslator(installed);
    delete toolkits;
    toolkits = new QTranslator(QCoreApplication::instance());
    if (toolkits->load("qtbase_"_L1 + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(toolkits);
}
