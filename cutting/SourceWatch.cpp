#include "cutting/SourceWatch.h"

SourceWatch::SourceWatch(const char* path) : m_path(path), m_file(OpenRegularFile(path)) {
    if (m_file != nullptr) {
        m_state = StateOf(fileno(m_file.get()));
    }
}

bool SourceWatch::HasChanged() const {
    return m_file != nullptr &&
           (StateOf(m_path) != m_state || StateOf(fileno(m_file.get())) != m_state);
}
