#pragma once

#include "engine/EditFailure.h"

/// While it lives an edit is under way, and nothing has gone wrong with it so far.
class Busy {
public:
    Busy(bool& isBusy, EditFailure& failure) : m_isBusy(isBusy) {
        m_isBusy = true;
        failure = {};
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { m_isBusy = false; }

private:
    bool& m_isBusy;
};
