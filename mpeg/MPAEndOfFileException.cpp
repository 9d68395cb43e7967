#include "mpeg/MPAEndOfFileException.h"

CMPAEndOfFileException::CMPAEndOfFileException(const char* fileName)
    : CMPAException(NoFrameBeforeEOF, fileName, nullptr, false) {
}

CMPAEndOfFileException::~CMPAEndOfFileException() = default;
