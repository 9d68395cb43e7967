#pragma once

class QWidget;

/// Makes a window that has not been shown yet no larger than its screen has room for, its frame
/// included.
void FitToScreen(QWidget& window);
