#pragma once

#include <QString>

#include <string>
#include <unordered_map>

class KlipraMac;
struct HistoryItem;

/// What the history tells of an entry beside its name: what was done to the one that it was made
/// from, how much is left, and where it was saved. Lengths and folders are noted when they are
/// known.
class HistoryTexts {
public:
    /// @return whether that is news
    bool NoteLength(int id, long long milliseconds);
    void NoteSaved(int id, const std::string& path);

    QString DetailsOf(const KlipraMac& engine, const HistoryItem& item) const;

    /// What an edit of an entry takes the place of; empty where nothing was made from it yet.
    QString ReplacedBy(KlipraMac& engine, int id) const;

private:
    QString EditOf(const KlipraMac& engine, const HistoryItem& item) const;
    long long LengthOf(int id) const; // -1: not known

    std::unordered_map<int, long long> m_lengths; // milliseconds
    std::unordered_map<int, std::string> m_folders;
};
