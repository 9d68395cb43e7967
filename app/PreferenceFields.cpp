#include "app/PreferenceFields.h"

#include "app/ReadNumber.h"

#include <QString>

#include <algorithm>

namespace {

std::string WithDecimals(double value, int decimals) {
    return QString::number(value, 'f', decimals).toStdString();
}

} // namespace

PreferenceFields FillPreferenceFields(const PreferenceDelegate& settings) {
    return {WithDecimals(settings.getThresholdLevel(), 4),
            WithDecimals(settings.getThresholdTime(), 2),
            WithDecimals(settings.getMoveAmount(), 3)};
}

void ApplyPreferenceFields(const PreferenceFields& fields, PreferenceDelegate& settings) {
    constexpr float kLeastTime = 0.02F; // seconds: the length of the blocks that are searched
    const float level = ReadFloat(fields.level);
    if (level > 0.0F) {
        settings.setThresholdLevel(level);
    }
    settings.setThresholdTime(std::max(ReadFloat(fields.time), kLeastTime));
    settings.setMoveAmount(ReadDouble(fields.moveAmount));
}
