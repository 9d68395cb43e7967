#pragma once

#include "finish/FinishNote.h"

#include <QString>

#include <vector>

/// What finishing could not do as it should, for the status bar; empty where there is nothing.
QString FinishNotesText(const std::vector<FinishNote>& notes);

/// What finishing does, and what becomes of it in players; for whoever asks.
QString FinishHelp();
