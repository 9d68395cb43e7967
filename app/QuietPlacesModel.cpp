#include "app/QuietPlacesModel.h"

#include "app/Markers.h"

#include <utility>

void QuietPlacesModel::SetPlaces(
    std::vector<QuietStretch> places,
    const std::function<long long(unsigned long long)>& millisecondsOf) {
    beginResetModel();
    m_places = std::move(places);
    m_texts.clear();
    for (const QuietStretch& place : m_places) {
        constexpr double kMillisecondsPerSecond = 1000.0;
        const long long begin = millisecondsOf(place.begin);
        const auto seconds =
            static_cast<double>(millisecondsOf(place.end) - begin) / kMillisecondsPerSecond;
        m_texts.push_back(
            tr("%1　%2秒")
                .arg(QString::fromStdString(TimeLabel(static_cast<std::uint32_t>(begin))))
                .arg(seconds, 0, 'f', 2));
    }
    endResetModel();
}

int QuietPlacesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_places.size());
}

QVariant QuietPlacesModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return m_texts[static_cast<std::size_t>(index.row())];
}
