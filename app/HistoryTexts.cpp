#include "app/HistoryTexts.h"

#include "adaptor/KlipraMac.h"
#include "app/Markers.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <filesystem>

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(HistoryTexts)

public:
    static QString Edit(EditKind kind, const QString& start, const QString& end) {
        switch (kind) {
        case EditKind::Extract:
            return tr("抽出 %1–%2").arg(start, end);
        case EditKind::Remove:
            return tr("削除 %1–%2").arg(start, end);
        case EditKind::Split:
            return tr("分割 %1–%2").arg(start, end);
        case EditKind::None:
            break;
        }
        return {};
    }
    static QString Length(bool isEdit, const QString& time) {
        return isEdit ? tr("残り %1").arg(time) : tr("長さ %1").arg(time);
    }
    static QString Saved(const QString& folder) { return tr("保存先 %1").arg(folder); }
    static QString Replaced(const QString& first, std::size_t others) {
        return others == 0 ? tr("置き換えました: %1").arg(first)
                           : tr("置き換えました: %1 ほか%2件").arg(first).arg(others);
    }
};

QString Clock(long long milliseconds) {
    return QString::fromStdString(ClockLabel(milliseconds));
}

} // namespace

bool HistoryTexts::NoteLength(int id, long long milliseconds) {
    const auto [entry, isNew] = m_lengths.try_emplace(id, milliseconds);
    return isNew || std::exchange(entry->second, milliseconds) != milliseconds;
}

void HistoryTexts::NoteSaved(int id, const std::string& path) {
    m_folders[id] = std::filesystem::path(path).parent_path().string();
}

long long HistoryTexts::LengthOf(int id) const {
    const auto entry = m_lengths.find(id);
    return entry == m_lengths.end() ? -1 : entry->second;
}

QString HistoryTexts::EditOf(const KlipraMac& engine, const HistoryItem& item) const {
    if (item.edit == EditKind::None) {
        return {};
    }
    const auto [first, last] = std::minmax(item.range.start, item.range.end);
    const long long end =
        last == kUnsetPosition ? LengthOf(item.parentId) : engine.PositionToMilliSeconds(last);
    return Texts::Edit(item.edit, Clock(engine.PositionToMilliSeconds(first)),
                       end < 0 ? QString() : Clock(end));
}

QString HistoryTexts::DetailsOf(const KlipraMac& engine, const HistoryItem& item) const {
    QStringList parts = {EditOf(engine, item)};
    if (const long long length = LengthOf(item.id); length >= 0) {
        parts << Texts::Length(item.edit != EditKind::None, Clock(length));
    }
    if (const auto folder = m_folders.find(item.id); folder != m_folders.end()) {
        parts << Texts::Saved(QFile::decodeName(folder->second.c_str()));
    }
    parts.removeAll(QString());
    return parts.join(u' ');
}

QString HistoryTexts::ReplacedBy(KlipraMac& engine, int id) const {
    const HistoryTreeItem* const node = engine.FindHistoryTreeItem(id);
    if (node == nullptr || node->children.empty()) {
        return {};
    }
    const HistoryItem& first = *engine.FindHistoryItem(node->children.front().id);
    const QString label = QString::fromStdString(first.name.substr(0, first.name.find(' ')));
    const std::size_t all = node->GetIds().size() - 1; // without the entry itself
    return Texts::Replaced(label + u' ' + EditOf(engine, first), all - 1);
}
