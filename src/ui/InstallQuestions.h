#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "install/PackCheck.h"
#include "install/ScriptReach.h"

struct Catalogue;

/// What the player is asked ahead of an install.
namespace InstallQuestions {

/// The question about what a check has found; nothing if there is none to ask.
std::optional<QString> AboutFindings(const std::vector<PackFinding>& findings);

/// A line for each deed, with the mod's name.
QStringList LinesOf(const Catalogue& catalogue, const std::vector<OutsideDeed>& deeds);

}  // namespace InstallQuestions
