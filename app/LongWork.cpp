#include "app/LongWork.h"

#include <QGuiApplication>

LongWork::LongWork(QStatusBar& statusBar, const QString& text) : m_statusBar(statusBar) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_statusBar.showMessage(text);
    m_statusBar.repaint(); // nothing is painted by itself before the work is done
}

LongWork::~LongWork() {
    m_statusBar.clearMessage();
    QGuiApplication::restoreOverrideCursor();
}
