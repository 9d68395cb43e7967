#pragma once

#include <QString>

class QAction;
class QMainWindow;

/// The key of a menu item as people read it; empty where it has none.
QString KeyOf(const QAction& item);

/// Has each button of the tool bar tell its key, which is that of the menu item of its command:
/// the tip as "what it does (key)", and to those who hear the window the key alone, as they are
/// told the name already.
void DescribeButtons(const QMainWindow& window);
