#pragma once

#include <QStringList>
#include <QTranslator>

#include <memory>
#include <vector>

class QLocale;

namespace tessaly {

/// Puts the program's texts, and those of Qt's own dialogs, into the user's language.
///
/// The texts in the source are English. Translations of them lie in the resources, below
/// ":/tessaly/translations"; Qt's lie where Qt is installed, and stay English where they are not.
/// Both are always taken in the same language, so that no window speaks two.
///
/// Texts are translated when they are asked for: have a loader before anything that shows some.
///
/// Ownership: the translations are in use for as long as the loader lives.
/// Threads:   the main thread, while there is a QCoreApplication.
class TranslationLoader final {
public:
    /// Takes the first of the languages that the program speaks, see languageFor().
    explicit TranslationLoader(const QStringList &languages);
    /// The languages that the user has chosen for texts, the favourite first.
    TranslationLoader();
    ~TranslationLoader() = default;
    Q_DISABLE_COPY_MOVE(TranslationLoader)

    /// The language that is in use: "de", or "en" for the texts as they stand in the source.
    [[nodiscard]] const QString &language() const noexcept { return m_language; }

    /// The language of the first of these names ("de-AT", "de_AT", "de") that is English or that
    /// there is a translation for; "en" if there is none.
    [[nodiscard]] static QString languageFor(const QStringList &languages);

private:
    void install(const QString &name, const QString &folder);

    QString m_language;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

} // namespace tessaly
