#pragma once

#include <cstdint>
#include <string>

/// What the engine needs of whoever runs it: the main window, `kvpk`, a test. The engine calls
/// it often, for every block and every line; when something is drawn is the host's choice.
/// All texts are engine text (Windows-1252).
class InstallHost {
 public:
  virtual ~InstallHost() = default;

  /// The status line takes a text, and the panel that holds it is to be repainted.
  virtual void SetStatus(const std::string& text) = 0;
  /// The same for a work that tells how far it has come: `text` and the percentage.
  virtual void SetPercentStatus(const std::string& text, int percent) {
    SetStatus(text + std::to_string(percent) + "%");
  }
  /// The bar over the current script or archive rebuild: a new top of its range, which puts the
  /// position to 0.
  virtual void SetModProgressMax(std::int32_t max) = 0;
  /// A new position of that bar, never above its top.
  virtual void SetModProgress(std::int32_t value) = 0;
  /// The bar over the mods of a run: its bottom becomes 0, its top `max`.
  virtual void SetTotalProgressMax(std::int32_t max) = 0;
  virtual void SetTotalProgress(std::int32_t value) = 0;

  /// Lets pending events run. Handlers of the window may come in here.
  virtual void DoEvents() = 0;

  /// A ticked mod's turn has come: the progress page is brought to the front and slides up.
  virtual void ShowProgressPage() {}
  /// The run is over: shows `text` as information with OK, and waits for the user.
  virtual void ShowFinalMessage(const std::string& text) = 0;
  /// After the final message: the progress page slides away.
  virtual void HideProgressPage() {}
};
