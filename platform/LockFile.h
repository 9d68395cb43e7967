#pragma once

#include <string>

/// A file that is locked while whoever has locked it lives, however that ends. Only a regular file
/// of this user's can be.
class LockFile {
public:
    LockFile() = default; ///< no file

    /// Makes the file where there is none, readable by its owner alone, and locks it. Does not wait
    /// for another that has it; see IsLocked.
    explicit LockFile(std::string path);
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    LockFile(LockFile&& other) noexcept;
    LockFile& operator=(LockFile&& other) noexcept;
    ~LockFile(); ///< unlocks it; the file stays

    bool IsLocked() const { return m_descriptor >= 0; }
    void Remove() const; ///< of a locked one, the file

private:
    std::string m_path;
    int m_descriptor = -1;
};
