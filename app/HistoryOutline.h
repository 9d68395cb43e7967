#pragma once

#include "app/HistoryOutlineModel.h"

#include <QTreeView>

#include <functional>

/// Shows the history in the main window's outline: always unfolded, one entry selected at most.
class HistoryOutline : public QObject {
public:
    /// @param view      its items, selection and appearance are this object's from now on
    /// @param selected  called when another entry is selected, with its id, or 0 for none
    /// @param details   tells what stands in the second column of an entry
    HistoryOutline(QTreeView* view, HistoryOutlineModel::Details details,
                   std::function<void(int)> selected);

    /// Shows the history anew and selects an entry, which counts as selected by the person; for an
    /// id that is not shown, such as -1, the selection stays.
    void Refresh(KlipraMac* klipra, int id);
    void Select(int id); ///< as if the person did; nothing for an id that is not shown
    /// Details are other ones now.
    void DetailsDidChange();
    /// The entry that another one was made from; 0 for none.
    int ParentIdOf(int id) const { return m_model.ParentIdOf(id); }

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void SelectionDidChange();
    void FitColumns();

    QTreeView* const m_view;
    HistoryOutlineModel m_model;
    std::function<void(int)> m_selected;
    int m_selectedId = 0;
    bool m_isRefreshing = false; // rows come and go, nobody selects
};
