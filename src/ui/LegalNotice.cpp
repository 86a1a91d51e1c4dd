#include "ui/LegalNotice.h"

QString LegalNotice() {
  return QStringLiteral(
      "KELVO ist freie Software unter der MIT-Lizenz: Copyright (c) 2026, die Autoren von KELVO. "
      "Es wird ohne jede Gewähr weitergegeben; was es an einer Installation des Spiels ändert, "
      "geschieht auf eigene Gefahr. Die Modifikationen in einem Modpack gehören ihren "
      "Autoren.\n"
      "\n"
      "GTA San Andreas und Rockstar Games sind Marken ihrer Inhaber, mit denen KELVO nichts "
      "zu tun hat.\n"
      "\n"
      "Benutzte Bibliotheken und Schriften:\n"
      "Qt 6: GNU Lesser General Public License, Version 3\n"
      "zlib: zlib-Lizenz\n"
      "SDL 2 und SDL_mixer 2: zlib-Lizenz\n"
      "libmodplug (spielt unter Linux die Musik in SDL_mixer): gemeinfrei\n"
      "libxmp (spielt sie unter Windows): GNU Lesser General Public License, "
      "Version 2.1 oder neuer\n"
      "Tahoma und Marlett aus den Schriften von Wine: GNU Lesser General Public License, "
      "Version 2.1 oder neuer\n"
      "\n"
      "Wortlaut der Lizenzen:\n"
      "https://www.gnu.org/licenses/lgpl-3.0.html\n"
      "https://www.gnu.org/licenses/old-licenses/lgpl-2.1.html\n"
      "https://zlib.net/zlib_license.html\n"
      "https://opensource.org/license/mit");
}
