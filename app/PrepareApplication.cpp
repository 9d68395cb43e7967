#include "app/PrepareApplication.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <clocale>

namespace {

/// Japanese and Chinese share characters that they write differently: without a Japanese family
/// named, which of them is seen is left to chance.
void PreferJapaneseFonts() {
    QFont font = QApplication::font();
    QStringList families = font.families();
    families << "Noto Sans CJK JP"
             << "IPAexGothic"
             << "VL PGothic";
    font.setFamilies(families);
    QApplication::setFont(font);
}

} // namespace

void PrepareApplication() {
    Q_INIT_RESOURCE(resources);
    // The toolkit sets the person's locale, whose decimal comma would reach the C library.
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): no other thread runs yet
    QApplication::setApplicationName("Klipra");
    QApplication::setApplicationVersion(KLIPRA_VERSION);
    QApplication::setDesktopFileName("klipra");
    QApplication::setWindowIcon(QIcon(":/klipra.svg"));

    QLocale::setDefault(QLocale(QLocale::Japanese));
    auto* const translator = new QTranslator(qApp);
    if (translator->load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(translator);
    }
    PreferJapaneseFonts();
}
