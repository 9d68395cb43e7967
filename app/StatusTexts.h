#pragma once

#include <QString>

class KlipraMac;

/// What the status bar tells; every text is empty where there is nothing to tell.
struct StatusTexts {
    QString position;     ///< the current one
    QString file;         ///< format and length
    QString range;        ///< start, end, and the time between them
    QString sceneChanges; ///< their number
    QString readFailure;  ///< from which time on the file could not be read
    QString waveform;     ///< how far it is painted, until it is complete
};

StatusTexts MakeStatusTexts(const KlipraMac& klipra);
