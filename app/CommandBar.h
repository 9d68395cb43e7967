#pragma once

#include <QHBoxLayout>
#include <QToolBar>

/// Makes a tool bar of a row of widgets: what does not fit is folded behind its overflow button.
/// The spaces of the row become separators; the row is empty afterwards.
/// @return the bar, owned by its parent
QToolBar* MakeCommandBar(QHBoxLayout& row, QWidget* parent);
