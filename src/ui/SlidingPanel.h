#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>

/// The panel that waits below the lower edge of the window and slides up over the button bar. It
/// holds pages that cover it exactly, of which the one in front is seen.
///
/// The interval of each of the two timers is the animation's step counter as well: it runs from
/// 15 to 28 milliseconds, and 0 marks that this direction can't run now.
class SlidingPanel : public QObject {
  Q_OBJECT

 public:
  static constexpr int kWidth = 330;

  /// `DisableForPanel` gets true while the panel is away, and false when it has come up.
  SlidingPanel(QWidget* form, std::function<void(bool Enable)> DisableForPanel);

  /// The surface. A page is a child of it at (0, 0).
  QWidget* const picPanel;

  void SetHeight(int height) const;
  void BringToFront(QWidget* page);
  /// Puts the panel where it belongs in a form of that inner size, shown or away.
  void Place(int W, int H) const;

  /// Whether the panel is there with that page in front, and not on its way down.
  [[nodiscard]] bool Shows(const QWidget* page) const;

  /// Starts to slide up, unless the panel is up or on its way down. When it has come up, the page
  /// in front takes the focus, and gives it back when it goes.
  void EnableUp();
  /// Stops on the way up.
  void DisableUp();
  /// Starts to slide away, also from half-way up; nothing if the panel is away.
  void EnableDown();

  /// One step of the slide.
  void tmrPanelUp_Timer();
  void tmrPanelDown_Timer();

  struct Timer {
    int Interval;
    bool Enabled;
    bool operator==(const Timer&) const = default;
  };
  [[nodiscard]] Timer tmrPanelUp() const { return {upInterval_, up_.isActive()}; }
  [[nodiscard]] Timer tmrPanelDown() const { return {downInterval_, down_.isActive()}; }

 private:
  [[nodiscard]] bool HasFocus() const;
  void TakeFocus() const;
  void GiveFocusBack() const;
  void PlaceInForm() const;

  std::function<void(bool)> DisableForPanel_;
  QTimer up_;
  QTimer down_;
  int upInterval_;
  int downInterval_;
  QPointer<QWidget> front_;
  QPointer<QWidget> former_;  // had the focus when the panel set out
};
