#pragma once

#include "tests/adaptor/RecordingDelegate.h"

/// A window's engine on a file that others may have open too.
struct SessionWindow {
    SessionWindow(const std::string& path, const std::string& journals, FormatType format)
        : adaptor(&delegate, format, path, KlipraMac::Sound::Silent) {
        delegate.adaptor = &adaptor;
        adaptor.PushHistory("# " + Klipra::ExtractFilename(path), path, true, 0);
        (void)adaptor.LoadPlayFile(); // what cannot be opened is shown to the delegate
        delegate.onWork = onWork;
        isRestored = adaptor.BeginSession(journals);
    }

    /// The tree with all that a person can see of it, and the bytes of its files.
    std::string Describe() {
        std::string text;
        for (const HistoryItem& item : adaptor.histories) {
            const HistoryTreeItem* const node = adaptor.FindHistoryTreeItem(item.id);
            if (node == nullptr) {
                continue;
            }
            const HistoryItem* const parent = adaptor.FindHistoryItem(item.parentId);
            text.append(item.name).append("|").append(parent == nullptr ? "" : parent->name);
            text.append(item.saved ? "|saved|" : "||");
            for (const unsigned long long number :
                 {item.cutPositions.start, item.cutPositions.end, 0ULL + node->children.size(),
                  0ULL + std::hash<std::string>()(TemporaryFolder::Read(item.path))}) {
                text.append(std::to_string(number)).append("|");
            }
            text.append("\n");
        }
        return text;
    }

    /// One of the edits and saves that a person may make, on any entry. Saves go where the desktop
    /// says.
    template <typename Random>
    void EditSomehow(Random& random) {
        const auto position = [&] { return adaptor.length / 20 * (random() % 21); };
        const std::vector<int> ids = adaptor.FindHistoryTreeItem(1)->GetIds();
        adaptor.SelectHistory(ids[random() % ids.size()]);
        adaptor.cutPositions = {position(), random() % 5 == 0 ? kUnsetPosition : position()};
        std::string path;
        switch (random() % 5) {
        case 0:
            adaptor.Split();
            break;
        case 1:
            if (adaptor.Save(path)) {
                adaptor.UpdateHistoryItem(path);
            }
            break;
        case 2:
            adaptor.SaveRange();
            break;
        default:
            adaptor.Cut(random() % 2 == 0);
        }
    }

    bool Cut(unsigned long long start, unsigned long long end) {
        adaptor.cutPositions = {start, end};
        return adaptor.Cut(false);
    }

    inline static std::function<void(BackgroundWork&)> onWork = [](BackgroundWork&) {};
    RecordingDelegate delegate;
    KlipraMac adaptor;
    bool isRestored;
};
