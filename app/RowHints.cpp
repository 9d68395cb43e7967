#include "app/RowHints.h"

QSize RowHints::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    constexpr qsizetype kMost = 10'000; // what is no longer there stays until then
    if (m_font != option.font || m_hints.size() > kMost) {
        m_hints.clear();
        m_font = option.font;
    }
    const bool hasPicture = index.data(Qt::DecorationRole).isValid();
    const QString key =
        (hasPicture ? QLatin1Char('+') : QLatin1Char(' ')) + index.data().toString();
    auto hint = m_hints.constFind(key);
    if (hint == m_hints.constEnd()) {
        hint = m_hints.insert(key, QStyledItemDelegate::sizeHint(option, index));
    }
    return *hint;
}
