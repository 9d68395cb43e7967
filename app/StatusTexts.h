#pragma once

#include <string>

class KlipraMac;

/// What the status bar tells; every text is UTF-8, and empty where there is nothing to tell.
struct StatusTexts {
    std::string file;         ///< format and length
    std::string range;        ///< start, end, and the time between them
    std::string sceneChanges; ///< their number
    std::string readFailure;  ///< from which time on the file could not be read
    std::string waveform;     ///< how far it is painted, until it is complete
};

StatusTexts MakeStatusTexts(const KlipraMac& klipra);
