#include "shell/qt_translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>
#include <string_view>

namespace tolvane::shell {
namespace {

// Qt names its translations by locale, "qtbase_de.qm", where the program
// names its language files by three letters.
struct QtLanguage {
    std::string_view code;
    const char* locale;
};

constexpr QtLanguage kQtLanguages[] = {
    {"DEU", "de"},
    {"FRA", "fr"},
    {"ESP", "es"},
    {"CHS", "zh_CN"},
};

QString QtLocaleOf(const std::string& languageCode) {
    for (const QtLanguage& language : kQtLanguages) {
        if (language.code == languageCode) return QString::fromLatin1(language.locale);
    }
    return {};
}

}  // namespace

void SpeakQtLanguage(const std::string& languageCode) {
    // One translator at a time: the language chosen in Options replaces the
    // one the program started with.
    static QPointer<QTranslator> installed;
    delete installed.data();
    const QString locale = QtLocaleOf(languageCode);
    if (locale.isEmpty()) return;
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QStringLiteral("qtbase_") + locale,
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete translator;
        return;
    }
    QCoreApplication::installTranslator(translator);
    installed = translator;
}

}  // namespace tolvane::shell
