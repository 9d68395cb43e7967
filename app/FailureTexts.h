#pragma once

#include "engine/EditFailure.h"

#include <QString>

/// Why an edit or a save failed, for the status bar; empty where there is nothing to tell.
QString FailureText(const EditFailure& failure);
