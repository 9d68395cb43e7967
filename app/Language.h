#pragma once

#include <QObject>

#include <functional>

class QAction;
class QMenu;
class QWidget;

/// The languages that the window speaks. Its texts are Japanese in the source.
enum class Language { Japanese, English };

/// The one to begin with: as KLIPRA_LANGUAGE says, ja or en, else the one chosen last; Japanese
/// whatever the system's locale is.
Language StartLanguage();

/// Has the program speak a language from now on, the toolkit's own texts too. Windows are told with
/// a QEvent::LanguageChange.
void SpeakLanguage(Language language);

/// Calls something whenever the texts of a widget are to be set anew, and now.
void OnLanguageChange(QWidget* widget, std::function<void()> translate);

/// Fills a menu with the languages; the one that is chosen is spoken at once, and remembered.
void FillLanguageMenu(QMenu* menu);
