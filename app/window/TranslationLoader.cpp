#include "app/window/TranslationLoader.hpp"

#include "resources/Artwork.hpp"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString sourceLanguage = u"en"_s;

} // namespace

TranslationLoader::TranslationLoader(const QStringList &languages)
    : m_language(languageFor(languages))
{
    if (m_language == sourceLanguage) {
        return;
    }
    const QString folderOfQt = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    install(u"qtbase_"_s + m_language, folderOfQt);
    install(u"qtmultimedia_"_s + m_language, folderOfQt);
    // The last one is asked first.
    install(u"tessaly_"_s + m_language, artworkPath(u"translations"));
}

TranslationLoader::TranslationLoader() : TranslationLoader(QLocale::system().uiLanguages()) {}

QString TranslationLoader::languageFor(const QStringList &languages)
{
    for (const QString &name : languages) {
        // Without the country: there is one translation for each language.
        QString language = name.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
        if (language == sourceLanguage ||
            QFile::exists(artworkPath(u"translations/tessaly_%1.qm"_s.arg(language)))) {
            return language;
        }
    }
    return sourceLanguage;
}

void TranslationLoader::install(const QString &name, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(name, folder) && QCoreApplication::installTranslator(translator.get())) {
        m_translators.push_back(std::move(translator));
    }
}

} // namespace tessaly
