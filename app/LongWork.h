#pragma once

#include <QStatusBar>

/// Work during which the window does not answer: while it lives there is a wait cursor, and the
/// status bar says what is being done.
class LongWork {
public:
    LongWork(QStatusBar& statusBar, const QString& text);
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;
    ~LongWork();

private:
    QStatusBar& m_statusBar;
};
