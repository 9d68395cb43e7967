#include "app/HistoryOutline.h"

#include <QEvent>
#include <QHeaderView>

namespace {

/// A picture that is the same in a selected row: the toolkit would tint it.
QIcon Picture(const QString& path) {
    QIcon icon(path);
    icon.addFile(path, {}, QIcon::Selected);
    return icon;
}

} // namespace

HistoryOutline::HistoryOutline(QTreeView* view, std::function<void(int)> selected)
    : m_view(view), m_model(Picture(":/disk.png"), Picture(":/save.png")),
      m_selected(std::move(selected)) {
    m_view->setModel(&m_model);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(QHeaderView::ResizeToContents); // scrolls sideways
    m_view->header()->setMinimumSectionSize(m_view->viewport()->width());
    m_view->viewport()->installEventFilter(this);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HistoryOutline::SelectionDidChange);
}

bool HistoryOutline::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) { // a selected row is as wide as the view
        m_view->header()->setMinimumSectionSize(m_view->viewport()->width());
    }
    return QObject::eventFilter(watched, event);
}

void HistoryOutline::Refresh(KlipraMac* klipra, int id) {
    m_isRefreshing = true;
    m_model.Reload(klipra);
    m_view->expandAll();
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
