#pragma once

#include "finish/FinishNote.h"

#include <QString>

#include <vector>

class QWidget;

/// What finishing could not do as it should, for the status bar; empty where there is nothing.
QString FinishNotesText(const std::vector<FinishNote>& notes);

/// Tells what finishing does, and what players make of it, in a window of its own.
void ShowFinishHelp(QWidget* parent);
