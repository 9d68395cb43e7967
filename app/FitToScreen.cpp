#include "app/FitToScreen.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

void FitToScreen(QWidget& window) {
    // A frame that is not there yet cannot be measured; this much has room for that of every
    // desktop.
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    constexpr int kSides = 8; // pixels
    const QSize room = window.screen()->availableGeometry().size() - QSize(kSides, title + kSides);
    window.setMinimumSize(window.minimumSize().boundedTo(room));
    window.resize(window.size().boundedTo(room));
}
