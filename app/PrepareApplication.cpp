#include "app/PrepareApplication.h"

#include "app/Language.h"
#include "app/StripAccessible.h"

#include <QApplication>
#include <QFont>
#include <QIcon>

#include <clocale>

namespace {

/// Japanese and Chinese share characters that they write differently: without a Japanese family
/// named, which of them is seen is left to chance.
void PreferJapaneseFonts() {
    QFont font = QApplication::font();
    QStringList families = font.families();
    families << QStringLiteral("Noto Sans CJK JP") << QStringLiteral("IPAexGothic")
             << QStringLiteral("VL PGothic");
    font.setFamilies(families);
    QApplication::setFont(font);
}

} // namespace

void PrepareApplication() {
    Q_INIT_RESOURCE(resources);
    Q_INIT_RESOURCE(translations);
    // The toolkit sets the person's locale, whose decimal comma would reach the C library.
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): no other thread runs yet
    QApplication::setApplicationName(QStringLiteral("Klipra"));
    QApplication::setApplicationVersion(QStringLiteral(KLIPRA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("klipra"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/klipra.svg")));

    SpeakLanguage(StartLanguage());
    PreferJapaneseFonts();
    StripAccessible::Install();
}
