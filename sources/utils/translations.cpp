#include "utils/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {
QTranslator *inUse = nullptr;
QTranslator *toolkits = nullptr; ///< menus of text fields and the like
QString current;

bool loadCatalogue(QTranslator &catalogue, const QString &language)
{
    return catalogue.load(":/velometerres/Velometer_"_L1 + language);
}

} // namespace

QString Translations::systemLanguage()
{
    return QLocale::system().name().startsWith("de"_L1) ? u"de"_s : u"en"_s;
}

QString Translations::language()
{
    return current.isEmpty() ? systemLanguage() : current;
}

void Translations::choose(const QString &language)
{
    current = language == "de"_L1 || language == "en"_L1 ? language : QString();
}

QString Translations::translate(const char *context, const char *text)
{
    if (inUse) {
        return QCoreApplication::translate(context, text);
    }
    // Asked for one text after the other.
    static QTranslator catalogue;
    static QString loaded;
    if (loaded != language()) {
        loaded = language();
        (void)loadCatalogue(catalogue, loaded);
    }
    const QString translated = catalogue.translate(context, text);
    return translated.isEmpty() ? QString::fromUtf8(text) : translated;
}

void Translations::install(const QString &language)
{
    current = language;
    delete inUse;
    inUse = new QTranslator(QCoreApplication::instance());
    (void)loadCatalogue(*inUse, language);
    QCoreApplication::installTranslator(inUse);
    delete toolkits;
    toolkits = new QTranslator(QCoreApplication::instance());
    if (toolkits->load("qtbase_"_L1 + language,
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(toolkits);
    }
}

} // namespace velometer
