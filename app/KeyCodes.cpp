#include "app/KeyCodes.h"

#include <Qt>

std::uint16_t KeyCodeOf(int qtKey) {
    switch (qtKey) {
    case Qt::Key_Space:
        return KeyCode::kSpace;
    case Qt::Key_Left:
        return KeyCode::kLeftArrow;
    case Qt::Key_Right:
        return KeyCode::kRightArrow;
    default:
        return KeyCode::kOther;
    }
}
