#include "app/MainViewForKeyHandle.h"

#include "app/KeyCodes.h"

#include <QKeyEvent>

void MainViewForKeyHandle::keyPressEvent(QKeyEvent* event) {
    event->accept();
    const std::uint16_t keyCode = KeyCodeOf(event->key());
    // A space bar held down would play and stop many times a second.
    const bool isRepeated = event->isAutoRepeat() && keyCode == KeyCode::kSpace;
    if (m_delegate != nullptr && !isRepeated) {
        m_delegate->handleKeyCode(keyCode);
    }
}
