#include "engine/QuietStretches.h"

void QuietStretches::AddQuietBlock(unsigned long long position) {
    if (m_count == 0) {
        m_start = position;
    }
    ++m_count;
}

void QuietStretches::AddLoudBlock(unsigned long long position) {
    constexpr int kLongStretch = 100; // blocks: two seconds
    if (m_count >= m_required) {
        if (m_count >= kLongStretch) {
            m_positions.push_back(m_start);
            m_positions.push_back(position);
        } else {
            m_positions.push_back((m_start + position) / 2);
        }
    }
    m_count = 0;
}

void QuietStretches::Finish() {
    if (m_count >= m_required) {
        m_positions.push_back(m_start);
    }
    m_count = 0;
}
