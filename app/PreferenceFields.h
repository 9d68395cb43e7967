#pragma once

#include <string>

/// What the preferences dialog's three fields hold.
struct PreferenceFields {
    std::string level;      ///< threshold level, 0 to 1
    std::string time;       ///< threshold time, seconds
    std::string moveAmount; ///< seconds

    bool operator==(const PreferenceFields&) const = default;
};

/// Gets and sets the settings that the preferences dialog edits.
class PreferenceDelegate {
public:
    virtual ~PreferenceDelegate() = default;

    virtual double getMoveAmount() const = 0; ///< seconds
    virtual void setMoveAmount(double seconds) = 0;
    virtual float getThresholdLevel() const = 0; ///< 0 to 1
    virtual void setThresholdLevel(float level) = 0;
    virtual float getThresholdTime() const = 0; ///< seconds
    virtual void setThresholdTime(float seconds) = 0;
};

/// The fields that show the settings.
PreferenceFields FillPreferenceFields(const PreferenceDelegate& settings);

/// Sets the settings to what the fields hold: a level of 0 or less is ignored, a time below 0.02
/// seconds is raised to that, a move amount is taken as it is. What is no number is 0.
void ApplyPreferenceFields(const PreferenceFields& fields, PreferenceDelegate& settings);
