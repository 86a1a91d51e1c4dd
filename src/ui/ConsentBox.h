#pragma once

#include <QStringList>

class QWidget;

/// Lists what a pack will do outside the game, a line each, and asks whether it shall be installed
/// all the same: Yes and No, No the default. A list that is too long for the box scrolls. True for
/// Yes.
bool AskConsent(QWidget* owner, const QStringList& deeds, const QString& title);
