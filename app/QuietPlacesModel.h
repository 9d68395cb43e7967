#pragma once

#include "engine/QuietStretches.h"

#include <QAbstractListModel>

#include <functional>
#include <vector>

/// The quiet places of an entry as rows of a list: where each begins, and how long it is.
class QuietPlacesModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// @param millisecondsOf  the time of a position in bytes
    void SetPlaces(std::vector<QuietStretch> places,
                   const std::function<long long(unsigned long long)>& millisecondsOf);
    const std::vector<QuietStretch>& GetPlaces() const { return m_places; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<QuietStretch> m_places;
    std::vector<QString> m_texts;
};
