#pragma once

#include <QString>

#include <vector>

class QMenuBar;
class QWidget;

/// A key or a gesture, and what it does.
struct KeyEntry {
    QString key;
    QString what;
};

/// The keys of all menu items that have one, in their order, then the keys and gestures of the
/// strip.
std::vector<KeyEntry> ListKeys(const QMenuBar& menus);

/// Shows them in a window of their own, to be searched.
void ShowKeyList(QWidget* parent, const QMenuBar& menus);
