#include "app/Language.h"

#include "app/Remembered.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QMenu>
#include <QTranslator>

#include <array>
#include <utility>

namespace {

/// What a language is called in files and by its speakers.
struct LanguageEntry {
    Language language;
    QLocale::Language locale;
    QString code;
    QString name;
};

const std::array<LanguageEntry, 2>& Languages() {
    static const std::array<LanguageEntry, 2> languages = {
        {{Language::Japanese, QLocale::Japanese, QStringLiteral("ja"), QStringLiteral("日本語")},
         {Language::English, QLocale::English, QStringLiteral("en"), QStringLiteral("English")}}};
    return languages;
}

Language spoken = Language::Japanese;

class LanguageWatch : public QObject {
public:
    LanguageWatch(QWidget* widget, std::function<void()> translate)
        : QObject(widget), m_translate(std::move(translate)) {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::LanguageChange) {
            m_translate();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    const std::function<void()> m_translate;
};

} // namespace

Language StartLanguage() {
    for (const QString& code :
         {qEnvironmentVariable("KLIPRA_LANGUAGE"), Remembered().GetLanguage()}) {
        for (const LanguageEntry& entry : Languages()) {
            if (entry.code == code) {
                return entry.language;
            }
        }
    }
    return Language::Japanese;
}

void SpeakLanguage(Language language) {
    // The first is the toolkit's, the second ours; a language without a file is the source's own.
    static std::array<QTranslator, 2> translators;
    spoken = language;
    const LanguageEntry& entry =
        *std::ranges::find(Languages(), language, &LanguageEntry::language);
    QLocale::setDefault(QLocale(entry.locale));
    const std::array<std::pair<QString, QString>, 2> files = {
        {{QStringLiteral("qtbase_") + entry.code,
          QLibraryInfo::path(QLibraryInfo::TranslationsPath)},
         {QStringLiteral("klipra_") + entry.code, QStringLiteral(":/i18n")}}};
    for (std::size_t i = 0; i < files.size(); ++i) {
        QCoreApplication::removeTranslator(&translators[i]);
        if (translators[i].load(files[i].first, files[i].second)) {
            QCoreApplication::installTranslator(&translators[i]);
        }
    }
}

void OnLanguageChange(QWidget* widget, std::function<void()> translate) {
    translate();
    new LanguageWatch(widget, std::move(translate)); // the widget's
}

void FillLanguageMenu(QMenu* menu) {
    auto* const group = new QActionGroup(menu);
    for (const LanguageEntry& entry : Languages()) {
        QAction* const item = menu->addAction(entry.name);
        item->setObjectName(QStringLiteral("Language_%1Menu").arg(entry.code));
        item->setCheckable(true);
        item->setChecked(entry.language == spoken);
        group->addAction(item);
        QObject::connect(item, &QAction::triggered, menu, [entry] {
            SpeakLanguage(entry.language);
            Remembered().SetLanguage(entry.code);
        });
    }
}
