#pragma once

#include <QString>
#include <cstdint>

/// What a page may hold so that the toolkit shows it at once. It parses style sheets and lays out
/// tables in times that grow with powers of their size, and its coordinates overflow at 2^25
/// pixels, which it then counts through one by one.
namespace PageLimits {

/// Tags of the largest page.
inline constexpr std::int64_t kMostTags = 2000;
/// Tags times simple selectors: each of these is tried on each of those.
inline constexpr std::int64_t kMostRuleTrials = 50'000;
/// Letters times simple selectors times the square of the tags' depth: a trial reads the tag's
/// attributes, and goes up to the outermost tag for each tag on its way there.
inline constexpr std::int64_t kMostRuleWork = 250'000'000;
/// Columns times rows of all tables, as if they were one: what the parser may make of the tags.
inline constexpr std::int64_t kMostParsedPlaces = 200'000;
/// Columns times rows of the tables, doubled for each table around them.
inline constexpr std::int64_t kMostPlaces = 10'000;
/// How often tables are laid out: each anew for both widths of every table around it.
inline constexpr std::int64_t kMostTableLayouts = 16'000;
/// The longest single length, in pixels.
inline constexpr double kLongest = 20'000;
/// The widest thing that is measured by what holds it, in percent of that.
inline constexpr double kMostPercent = 200;
/// All lengths of the page together, in pixels, if each letter had a line of its own.
inline constexpr double kMostLength = 2'000'000;

/// Fails on a page beyond a limit.
void Check(const QString& html);

}  // namespace PageLimits
