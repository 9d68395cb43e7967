#include "app/TimeRuler.h"

#include <QEvent>
#include <QPainter>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

constexpr std::array kScales = std::to_array<RulerScale>(
    {{0.001, 5}, {0.002, 4}, {0.005, 5}, {0.01, 5},  {0.02, 4}, {0.05, 5}, {0.1, 5},
     {0.2, 4},   {0.5, 5},   {1, 5},     {2, 4},     {5, 5},    {10, 5},   {15, 3},
     {30, 6},    {60, 6},    {120, 4},   {300, 5},   {600, 5},  {900, 3},  {1800, 6},
     {3600, 6},  {7200, 4},  {18000, 5}, {36000, 5}, {86400, 6}});

constexpr int kLabelDistance = 90; // pixels between two labels at the least
constexpr int kTickPixels = 4;

int Decimals(double stepSeconds) {
    constexpr double kTenths = 0.1;
    constexpr double kHundredths = 0.01;
    return stepSeconds >= 1.0 ? 0 : stepSeconds >= kTenths ? 1 : stepSeconds >= kHundredths ? 2 : 3;
}

} // namespace

RulerScale ChooseRulerScale(double secondsPerPixel, int leastPixels) {
    for (const RulerScale& scale : kScales) {
        if (scale.stepSeconds >= secondsPerPixel * leastPixels) {
            return scale;
        }
    }
    return kScales.back();
}

std::string RulerLabel(double seconds, double stepSeconds) {
    constexpr std::int64_t kMinute = 60;
    const int decimals = Decimals(stepSeconds);
    const auto unit = static_cast<std::int64_t>(std::pow(10, decimals));
    const std::int64_t units = std::llround(seconds * static_cast<double>(unit));
    const std::int64_t whole = units / unit;
    std::array<char, 64> text{};
    int used = whole >= kMinute * kMinute
                   ? std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld",
                                   static_cast<long long>(whole / (kMinute * kMinute)),
                                   static_cast<long long>(whole / kMinute % kMinute),
                                   static_cast<long long>(whole % kMinute))
                   : std::snprintf(text.data(), text.size(), "%lld:%02lld",
                                   static_cast<long long>(whole / kMinute),
                                   static_cast<long long>(whole % kMinute));
    if (decimals > 0) {
        std::snprintf(text.data() + used, text.size() - static_cast<std::size_t>(used), ".%0*lld",
                      decimals, static_cast<long long>(units % unit));
    }
    return text.data();
}

TimeRuler::TimeRuler(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("timeRuler"));
    setAccessibleName(tr("目盛り"));
    FitHeight();
}

void TimeRuler::FitHeight() {
    setFixedHeight(fontMetrics().height() + kTickPixels);
}

void TimeRuler::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitHeight();
    } else if (event->type() == QEvent::LanguageChange) {
        setAccessibleName(tr("目盛り"));
    }
}

void TimeRuler::SetView(int left, double secondsPerPixel, double lengthSeconds) {
    if (left != m_left || secondsPerPixel != m_secondsPerPixel ||
        lengthSeconds != m_lengthSeconds) {
        m_left = left;
        m_secondsPerPixel = secondsPerPixel;
        m_lengthSeconds = lengthSeconds;
        update();
    }
}

void TimeRuler::paintEvent(QPaintEvent* /*event*/) {
    if (m_secondsPerPixel <= 0.0) {
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const RulerScale scale = ChooseRulerScale(m_secondsPerPixel, kLabelDistance);
    const double tickSeconds = scale.stepSeconds / scale.divisions;
    // From the label before the left edge on, whose text may reach into the ruler.
    const double first =
        std::floor(m_left * m_secondsPerPixel / scale.stepSeconds) * scale.divisions;
    for (double tick = first;; ++tick) {
        const double seconds = tick * tickSeconds;
        const double x = std::floor(seconds / m_secondsPerPixel) - m_left;
        if (x >= width() || seconds > m_lengthSeconds) {
            return;
        }
        const bool isLabelled = std::fmod(tick, scale.divisions) == 0.0;
        const int pixel = static_cast<int>(x);
        painter.drawLine(pixel, isLabelled ? 0 : height() - kTickPixels, pixel, height() - 1);
        if (isLabelled) {
            constexpr int kLabelGap = 3;
            painter.drawText(pixel + kLabelGap, fontMetrics().ascent(),
                             QString::fromStdString(RulerLabel(seconds, scale.stepSeconds)));
        }
    }
}
