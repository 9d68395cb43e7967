#include "app/StatusTexts.h"

#include "adaptor/KlipraMac.h"
#include "app/Markers.h"
#include "audio/bass.h"
#include "engine/Format.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

/// The texts of one engine.
class Texts {
    Q_DECLARE_TR_FUNCTIONS(StatusTexts)

public:
    explicit Texts(const KlipraMac& engine) : m_engine(engine) {}

    QString Position() const {
        return m_engine.channel == 0 ? QString() : TimeAt(m_engine.GetCurrentPosition());
    }

    QString File() const {
        const Format* const format = FindFormat(m_engine.formatType);
        return m_engine.channel == 0 || format == nullptr
                   ? QString()
                   : tr("%1  長さ %2")
                         .arg(QString::fromStdString(format->name), TimeAt(m_engine.length));
    }

    QString Range() const {
        const auto [start, end] = m_engine.cutPositions;
        if (m_engine.channel == 0 || (start == kUnsetPosition && end == kUnsetPosition)) {
            return {};
        }
        const QString range = tr("範囲 %1 ～ %2").arg(MarkAt(start), MarkAt(end));
        if (start == kUnsetPosition || end == kUnsetPosition) {
            return range;
        }
        const auto [first, last] = std::minmax(start, end);
        return QStringLiteral("%1 (%2)").arg(range, TimeAt(last - first));
    }

    QString SceneChanges() const {
        const std::size_t found = m_engine.sceneChangePositions.size();
        return found == 0 ? QString() : tr("無音 %1か所").arg(found);
    }

    QString ReadFailure() const {
        BASS_READFAILURE failure{};
        return BASS_ChannelGetReadFailure(m_engine.channel, &failure) == FALSE
                   ? QString()
                   : tr("%1 から先を読み取れません").arg(TimeAt(failure.position));
    }

    QString Waveform() const {
        const auto& wave = m_engine.GetWaveContext();
        constexpr long long kAll = 100;
        const long long percent =
            wave ? kAll * wave->GetFinishedColumns() / wave->GetSize().width : kAll;
        return percent == kAll ? QString() : tr("波形 %1%").arg(percent);
    }

private:
    QString TimeAt(unsigned long long position) const {
        return QString::fromStdString(ClockLabel(m_engine.PositionToMilliSeconds(position)));
    }
    QString MarkAt(unsigned long long position) const {
        return position == kUnsetPosition ? QStringLiteral("–") : TimeAt(position);
    }

    const KlipraMac& m_engine;
};

} // namespace

StatusTexts MakeStatusTexts(const KlipraMac& klipra) {
    const Texts texts(klipra);
    return {texts.Position(),     texts.File(),        texts.Range(),
            texts.SceneChanges(), texts.ReadFailure(), texts.Waveform()};
}
