#pragma once

#include "mpeg/MPAException.h"

/// The bytes asked for are not there: the file ends before them.
class CMPAEndOfFileException : public CMPAException {
public:
    explicit CMPAEndOfFileException(const char* fileName);
    CMPAEndOfFileException(const CMPAEndOfFileException&) = default;
    CMPAEndOfFileException& operator=(const CMPAEndOfFileException&) = delete;
    ~CMPAEndOfFileException() override;
};
