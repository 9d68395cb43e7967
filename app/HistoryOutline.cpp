#include "app/HistoryOutline.h"

#include "app/RowHints.h"

#include <QEvent>
#include <QHeaderView>

#include <algorithm>

namespace {

/// A picture that is the same in a selected row: the toolkit would tint it.
QIcon Picture(const QString& path) {
    QIcon icon(path);
    icon.addFile(path, {}, QIcon::Selected);
    return icon;
}

} // namespace

HistoryOutline::HistoryOutline(QTreeView* view, HistoryOutlineModel::Details details,
                               std::function<void(int)> selected)
    : m_view(view), m_model(Picture(QStringLiteral(":/disk.png")),
                            Picture(QStringLiteral(":/save.png")), std::move(details)),
      m_selected(std::move(selected)) {
    m_view->setModel(&m_model);
    m_view->setItemDelegate(new RowHints(m_view));
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(QHeaderView::Fixed); // see FitColumns
    m_view->viewport()->installEventFilter(this);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HistoryOutline::SelectionDidChange);
}

bool HistoryOutline::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        FitColumns();
    }
    return QObject::eventFilter(watched, event);
}

// Both as wide as their texts, and together at least as wide as the view, as a selected row is.
void HistoryOutline::FitColumns() {
    constexpr int kGap = 24; // pixels between the columns
    constexpr int kDetails = 1;
    const QAbstractItemView* const view = m_view; // where this can be asked for
    QHeaderView* const header = m_view->header();
    header->resizeSection(0, view->sizeHintForColumn(0) + kGap);
    header->resizeSection(kDetails, std::max(view->sizeHintForColumn(kDetails),
                                             m_view->viewport()->width() - header->sectionSize(0)));
}

void HistoryOutline::DetailsDidChange() {
    m_view->viewport()->update();
    FitColumns();
}

void HistoryOutline::Refresh(KlipraMac* klipra, int id) {
    m_isRefreshing = true;
    m_model.Reload(klipra);
    m_view->expandAll();
    FitColumns();
    Select(m_selectedId);
    m_isRefreshing = false;
    Select(id);
}

void HistoryOutline::Select(int id) {
    if (const QModelIndex index = m_model.IndexOf(id); index.isValid()) {
        m_view->setCurrentIndex(index);
        m_view->scrollTo(index);
    }
}

void HistoryOutline::SelectionDidChange() {
    if (m_isRefreshing) {
        return;
    }
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    m_selectedId = rows.isEmpty() ? 0 : m_model.IdAt(rows.constFirst());
    m_selected(m_selectedId);
}
