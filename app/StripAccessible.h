#pragma once

#include <QAccessibleWidget>

class WaveView;

/// The wave strip for those who hear the window: a slider over the time, in seconds, whose text
/// tells the position and the marks. Moving it moves the position.
class StripAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit StripAccessible(WaveView* strip);

    /// Has such objects made for strips, once in a program.
    static void Install();

    QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override; ///< the length
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override;

private:
    const WaveView& Strip() const;
};

/// Tells those who hear the window where the position is: when it has moved, and once a second
/// while it is playing.
class StripSpeech {
public:
    void Tell(WaveView& strip);

private:
    QString m_told;
    long long m_toldAt = -1; // milliseconds of the position
};
