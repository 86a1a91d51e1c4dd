#include "Score.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

using Words = std::vector<std::string>;
using Track = std::array<Cell, kRows>;

constexpr std::size_t kBar = 16;

Words Split(const std::string& line) {
  std::istringstream words(line);
  Words all;
  for (std::string word; words >> word;) all.push_back(word);
  return all;
}

unsigned Number(const std::string& text, int base) {
  unsigned number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) throw std::runtime_error("not a number: " + text);
  return number;
}

/// "C-1" is 0, "C#1" is 1, "B-3" is 35.
int Note(const std::string& text) {
  static constexpr std::string_view kLetters = "C-C#D-D#E-F-F#G-G#A-A#B-";
  const std::size_t at = kLetters.find(text.substr(0, 2));
  if (text.size() != 3 || at == std::string_view::npos || at % 2 != 0 || text[2] < '1' ||
      text[2] > '3')
    throw std::runtime_error("not a note: " + text);
  return static_cast<int>(at / 2) + 12 * (text[2] - '1');
}

class Reader {
 public:
  explicit Reader(std::vector<Instrument> instruments) {
    song_.instruments = std::move(instruments);
  }

  void Line(const std::string& line) {
    const std::string text = line.substr(0, line.find(" #"));
    const Words words = Split(text.starts_with("#") ? "" : text);
    if (words.empty()) return;
    if (text.starts_with(" ")) return Rows(words);
    Statement(words, text);
  }

  Song Finish() {
    FinishTrack();
    if (song_.order.empty()) throw std::runtime_error("nothing to play: no order");
    PutTempo(song_.patterns[song_.order.front()]);
    return std::move(song_);
  }

 private:
  void Statement(const Words& words, const std::string& text) {
    FinishTrack();
    const std::string& what = words[0];
    const std::size_t rest = text.find(words.size() > 1 ? words[1] : what, what.size());
    if (what == "title" && words.size() > 1) {
      song_.title = text.substr(rest);
    } else if (what == "text") {
      song_.texts.push_back(words.size() > 1 ? text.substr(rest) : "");
    } else if (what == "tempo" && words.size() == 2) {
      tempo_ = static_cast<std::uint16_t>(Number(words[1], 10));
    } else if (what == "groove" && words.size() == 3) {
      groove_ = {static_cast<std::uint16_t>(Number(words[1], 10)),
                 static_cast<std::uint16_t>(Number(words[2], 10))};
    } else if (what == "cell" && words.size() == 4 && words[2] == "=") {
      const Cell cell = ReadCell(words[3], 0);
      if (!cells_.emplace(words[1], cell).second) throw std::runtime_error("given twice");
    } else if (what == "track" && words.size() == 3) {
      trackName_ = words[1];
      trackInstrument_ = InstrumentNumber(words[2]);
    } else if (what == "pattern" && words.size() == 2 + kChannels) {
      AddPattern(words);
    } else if (what == "order") {
      for (std::size_t i = 1; i < words.size(); ++i)
        song_.order.push_back(Find(patterns_, words[i]));
    } else {
      throw std::runtime_error("not understood");
    }
  }

  template <typename Value>
  static const Value& Find(const std::map<std::string, Value>& values, const std::string& name) {
    const auto found = values.find(name);
    if (found == values.end()) throw std::runtime_error("unknown: " + name);
    return found->second;
  }

  [[nodiscard]] int InstrumentNumber(const std::string& name) const {
    for (std::size_t i = 0; i < song_.instruments.size(); ++i)
      if (song_.instruments[i].name == name) return static_cast<int>(i) + 1;
    throw std::runtime_error("no such instrument: " + name);
  }

  [[nodiscard]] Cell ReadCell(const std::string& text, int instrument) const {
    const std::size_t slash = text.find('/');
    Cell cell = ReadNote(text.substr(0, slash), instrument);
    if (slash != std::string::npos)
      cell.effect = static_cast<std::uint16_t>(Number(text.substr(slash + 1), 16));
    return cell;
  }

  [[nodiscard]] Cell ReadNote(const std::string& text, int instrument) const {
    const auto named = cells_.find(text);
    if (named != cells_.end()) return named->second;
    if (text == ".") return {};
    const std::size_t star = text.find('*');
    if (star != std::string::npos) instrument = InstrumentNumber(text.substr(star + 1));
    return {Note(text.substr(0, star)), instrument, 0};
  }

  void Rows(const Words& words) {
    if (trackName_.empty()) throw std::runtime_error("rows outside a track");
    for (const std::string& word : words) rows_.push_back(ReadCell(word, trackInstrument_));
  }

  void FinishTrack() {
    if (trackName_.empty()) return;
    if (rows_.empty() || rows_.size() % kBar != 0 || kRows % rows_.size() != 0)
      throw std::runtime_error("track " + trackName_ + " has " + std::to_string(rows_.size()) +
                               " rows");
    Track track;
    for (std::size_t i = 0; i < kRows; ++i) track[i] = rows_[i % rows_.size()];
    if (!tracks_.emplace(trackName_, track).second)
      throw std::runtime_error("track " + trackName_ + " is given twice");
    rows_.clear();
    trackName_.clear();
  }

  void AddPattern(const Words& words) {
    Pattern pattern;
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
      if (words[channel + 2] == "-") continue;
      const Track& track = Find(tracks_, words[channel + 2]);
      for (std::size_t row = 0; row < kRows; ++row) pattern[row][channel] = track[row];
    }
    for (std::size_t row = 0; row < kRows; ++row)
      PutEffect(pattern[row], static_cast<std::uint16_t>(0xF00 + groove_[row % 2]));
    if (!patterns_.emplace(words[1], song_.patterns.size()).second)
      throw std::runtime_error("given twice");
    song_.patterns.push_back(pattern);
  }

  void PutTempo(Pattern& first) const {
    PutEffect(first[0], static_cast<std::uint16_t>(0xF00 + tempo_));
  }

  static void PutEffect(std::array<Cell, kChannels>& row, std::uint16_t effect) {
    const auto freeCell =
        std::find_if(row.rbegin(), row.rend(), [](const Cell& cell) { return cell.effect == 0; });
    if (freeCell == row.rend()) throw std::runtime_error("a row has no room for the groove");
    freeCell->effect = effect;
  }

  Song song_;
  std::map<std::string, Cell> cells_;
  std::map<std::string, Track> tracks_;
  std::map<std::string, std::size_t> patterns_;
  std::string trackName_;
  int trackInstrument_ = 0;
  std::vector<Cell> rows_;
  std::uint16_t tempo_ = 125;
  std::array<std::uint16_t, 2> groove_{6, 6};
};

}  // namespace

Song ReadScore(std::istream& text, std::vector<Instrument> instruments) {
  Reader reader(std::move(instruments));
  int number = 0;
  try {
    for (std::string line; std::getline(text, line);) {
      ++number;
      reader.Line(line);
    }
    return reader.Finish();
  } catch (const std::runtime_error& failure) {
    throw std::runtime_error("line " + std::to_string(number) + ": " + failure.what());
  }
}
