#include "app/ButtonTips.h"

#include <QAction>
#include <QMainWindow>
#include <QToolButton>

namespace {

/// The menu item that does what a button does.
QString MenuItemOf(const QString& button) {
    const QString command = button.chopped(QStringLiteral("Button").size());
    if (command == QStringLiteral("Play") || command == QStringLiteral("Stop")) {
        return QStringLiteral("PlayOrStopMenu");
    }
    return command == QStringLiteral("Tool") ? QStringLiteral("PreferenceMenu")
                                             : command + QStringLiteral("Menu");
}

} // namespace

QString KeyOf(const QAction& item) {
    // The space bar belongs to the strip, so that it presses a button that has the focus.
    return item.shortcut().isEmpty() ? item.text().section(u'\t', 1)
                                     : item.shortcut().toString(QKeySequence::NativeText);
}

void DescribeButtons(const QMainWindow& window) {
    for (QToolButton* const button : window.findChildren<QToolButton*>()) {
        if (!button->objectName().endsWith(QStringLiteral("Button"))) {
            continue; // the toolkit's own
        }
        if (const auto* const item = window.findChild<QAction*>(MenuItemOf(button->objectName()))) {
            const QString key = KeyOf(*item);
            button->setToolTip(QStringLiteral("%1 (%2)").arg(button->accessibleName(), key));
            button->setAccessibleDescription(key);
        }
    }
}
