#pragma once

#include <string>

/// A time as the go-to dialog's three fields hold it: decimal integers, each of any size and sign.
struct GoFields {
    std::string minutes;      ///< not wrapped into hours
    std::string seconds;      ///< what remains
    std::string milliseconds; ///< what remains

    bool operator==(const GoFields&) const = default;
};

/// The fields that show a time; parts of milliseconds are dropped.
/// @param seconds  a time beyond 24 days is shown as that long
GoFields FillGoFields(double seconds);

/// The time that the fields stand for, in seconds. A field counts as far as it begins with an
/// integer, and as 0 where it does not.
double ReadGoFields(const GoFields& fields);
