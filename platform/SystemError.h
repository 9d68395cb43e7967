#pragma once

#include <string>
#include <system_error>

/// An error number of the C library (errno) as an error code.
inline std::error_code SystemError(int number) {
    return {number, std::generic_category()};
}

/// What an error number of the C library means, in English.
inline std::string SystemErrorText(int number) {
    return SystemError(number).message();
}
