#include "app/StripAccessible.h"

#include "adaptor/KlipraMac.h"
#include "app/Markers.h"
#include "app/WaveView.h"
#include "audio/bass.h"

#include <QAccessible>
#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(StripAccessible)

public:
    static QString Value(const KlipraMac& engine) {
        QStringList parts = {At(engine, engine.GetCurrentPosition())};
        if (engine.GetStartPosition() != kUnsetPosition) {
            parts << tr("始点 %1").arg(At(engine, engine.GetStartPosition()));
        }
        if (engine.GetEndPosition() != kUnsetPosition) {
            parts << tr("終点 %1").arg(At(engine, engine.GetEndPosition()));
        }
        return parts.join(tr("、"));
    }

private:
    static QString At(const KlipraMac& engine, unsigned long long position) {
        return QString::fromStdString(
            TimeLabel(static_cast<std::uint32_t>(engine.PositionToMilliSeconds(position))));
    }
};

/// The engine, where it has a stream; otherwise null.
KlipraMac* EngineOf(const WaveView& strip) {
    KlipraMac* const engine = strip.pKlipraMac;
    return engine != nullptr && engine->channel != 0 ? engine : nullptr;
}

QString ValueText(const WaveView& strip) {
    const KlipraMac* const engine = EngineOf(strip);
    return engine == nullptr ? QString() : Texts::Value(*engine);
}

} // namespace

StripAccessible::StripAccessible(WaveView* strip) : QAccessibleWidget(strip, QAccessible::Slider) {
}

void StripAccessible::Install() {
    QAccessible::installFactory([](const QString& /*name*/, QObject* object) {
        auto* const strip = qobject_cast<WaveView*>(object);
        return strip == nullptr ? nullptr
                                : static_cast<QAccessibleInterface*>(new StripAccessible(strip));
    });
}

const WaveView& StripAccessible::Strip() const {
    return *static_cast<const WaveView*>(widget());
}

QString StripAccessible::text(QAccessible::Text kind) const {
    // As the description too: the bridge to the system's readers hands on a value's number alone.
    const bool isValue = kind == QAccessible::Value || kind == QAccessible::Description;
    return isValue ? ValueText(Strip()) : QAccessibleWidget::text(kind);
}

void* StripAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QVariant StripAccessible::currentValue() const {
    const KlipraMac* const engine = EngineOf(Strip());
    return engine == nullptr ? 0.0 : engine->GetCurrentPositionInSeconds();
}

void StripAccessible::setCurrentValue(const QVariant& value) {
    if (KlipraMac* const engine = EngineOf(Strip()); engine != nullptr) {
        engine->SetCurrentPositionInSeconds(std::max(value.toDouble(), 0.0));
        Q_EMIT static_cast<WaveView*>(widget())->positionDidMove();
    }
}

QVariant StripAccessible::maximumValue() const {
    const KlipraMac* const engine = EngineOf(Strip());
    return engine == nullptr ? 0.0 : BASS_ChannelBytes2Seconds(engine->channel, engine->length);
}

QVariant StripAccessible::minimumStepSize() const {
    const KlipraMac* const engine = EngineOf(Strip());
    return engine == nullptr ? 0.0 : std::abs(engine->moveAmount);
}

void StripSpeech::Tell(WaveView& strip) {
    const KlipraMac* const engine = EngineOf(strip);
    if (engine == nullptr) {
        return;
    }
    constexpr long long kSecond = 1000;
    const long long now = engine->PositionToMilliSeconds(engine->GetCurrentPosition());
    const QString text = Texts::Value(*engine);
    const bool isSoon = engine->playing && std::abs(now - m_toldAt) < kSecond;
    if (text == m_told || isSoon) {
        return;
    }
    m_told = text;
    m_toldAt = now;
    QAccessibleValueChangeEvent event(&strip, engine->GetCurrentPositionInSeconds());
    QAccessible::updateAccessibility(&event);
}
