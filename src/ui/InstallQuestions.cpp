#include "ui/InstallQuestions.h"

#include "pack/Catalogue.h"
#include "ui/EngineText.h"

namespace InstallQuestions {
namespace {

/// Text of a pack within a sentence: no control character shall end its line.
QString OneLine(QString line) {
  for (QChar& letter : line) {
    if (letter.category() == QChar::Other_Control) letter = QChar::ReplacementCharacter;
  }
  return line;
}

/// A mod's name, which must not push what the mod does out of sight.
QString Shortened(const QString& name) {
  constexpr qsizetype kLongest = 40;
  const QString simple = name.simplified();
  return simple.size() > kLongest ? simple.left(kLongest) + "..." : simple;
}

/// The names of all findings of a kind; empty if there are none.
QString NamesOf(const std::vector<PackFinding>& findings, PackFinding::Kind kind) {
  constexpr int kMostNames = 5;
  QStringList names;
  for (const PackFinding& finding : findings) {
    if (finding.kind == kind) names.append(OneLine(PathToQString(finding.name)));
  }
  if (names.size() > kMostNames) names = names.mid(0, kMostNames) << "...";
  return names.join(", ");
}

QString Verb(OutsideDeed::Kind kind) {
  switch (kind) {
    case OutsideDeed::Kind::kWrites:
      return "schreibt nach";
    case OutsideDeed::Kind::kMoves:
      return "verschiebt";
    case OutsideDeed::Kind::kDeletes:
      return "löscht";
    case OutsideDeed::Kind::kRenames:
      return "benennt um:";
    case OutsideDeed::Kind::kCreatesFolder:
      return "erstellt den Ordner";
    case OutsideDeed::Kind::kRemovesFolder:
      return "löscht den Ordner";
    case OutsideDeed::Kind::kOpens:
      return "öffnet";
    case OutsideDeed::Kind::kReachesNetwork:
      return "greift ins Netzwerk nach";
  }
  return {};
}

}  // namespace

std::optional<QString> AboutFindings(const std::vector<PackFinding>& findings) {
  QStringList sentences;
  const auto say = [&](PackFinding::Kind kind, const QString& sentence) {
    const QString names = NamesOf(findings, kind);
    if (!names.isEmpty()) sentences.append(sentence.arg(names));
  };
  say(PackFinding::Kind::kDamaged, "Das Modpack ist beschädigt: %1.");
  say(PackFinding::Kind::kNoRoom, "Auf der Festplatte ist nicht genug Platz: %1.");
  say(PackFinding::Kind::kNotWritten, "In diesen Ordner darf nicht geschrieben werden: %1.");
  if (sentences.isEmpty()) return std::nullopt;
  return sentences.join(' ') + " Trotzdem installieren?";
}

QStringList LinesOf(const Catalogue& catalogue, const std::vector<OutsideDeed>& deeds) {
  QStringList lines;
  for (const OutsideDeed& deed : deeds) {
    const bool isMod = deed.mod > 0 && deed.mod < catalogue.Mods.size();
    const QString who =
        isMod ? Shortened(OneLine(ToQString(catalogue.Mods[deed.mod].Name))) : "Zum Abschluss";
    lines.append(
        QStringList{who + ":", Verb(deed.kind), OneLine(PathToQString(deed.place))}.join(' '));
  }
  return lines;
}

}  // namespace InstallQuestions
