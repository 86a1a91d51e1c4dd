#pragma once

#include <ctime>
#include <string>

/// Dates and times as the user's system writes them, engine text, in local time.
namespace Clock {

/// The system's short form of the date.
std::string ShortDate(std::time_t moment);
/// The system's form of the time of day.
std::string TimeOfDay(std::time_t moment);

}  // namespace Clock
