#pragma once

#include <QFont>
#include <QHash>
#include <QStyledItemDelegate>

/// Draws rows as usual, and remembers how large they want to be: laying out the text of every row
/// anew whenever one is added takes the longer the more there are.
class RowHints : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    mutable QHash<QString, QSize> m_hints; // by text and whether there is a picture
    mutable QFont m_font;                  // that they are for
};
