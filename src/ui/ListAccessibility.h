#pragma once

#include <QAccessible>
#include <QString>
#include <Qt>
#include <cstddef>
#include <utility>
#include <vector>

class ListSurface;

/// The rows that are painted on a surface, for assistive technology. Rows count from 1.
class AccessibleRows {
 public:
  virtual ~AccessibleRows() = default;
  [[nodiscard]] virtual int Count() const = 0;
  /// Number of what stands in a row now, among all that may stand there.
  [[nodiscard]] virtual std::ptrdiff_t Item(int row) const = 0;
  [[nodiscard]] virtual QString Name(int row) const = 0;
  [[nodiscard]] virtual QString Description(int row) const = 0;
  [[nodiscard]] virtual Qt::CheckState Tick(int row) const = 0;
  /// The selected row, 0 for none.
  [[nodiscard]] virtual int Current() const = 0;
  /// Upper edge of a row on the surface; it may lie off it.
  [[nodiscard]] virtual int Top(int row) const = 0;
  [[nodiscard]] virtual int Height() const = 0;
  /// What is shown in place of rows.
  [[nodiscard]] virtual QString EmptyText() const = 0;
  /// A click on the row's text, and one on its tick.
  virtual void Press(int row) = 0;
  virtual void Toggle(int row) = 0;
};

namespace ListAccessibility {

/// Makes the toolkit ask here for surfaces. They call it themselves.
void Install();

/// What has changed on a list, seen from one look at it to the next.
class Changes {
 public:
  struct Change {
    QAccessible::Event kind;
    int row;  // 0 for the whole list
  };
  /// `ObjectReorder` if there are other rows now, else `StateChanged` for each tick that is
  /// another; then `Selection` if another row is selected.
  std::vector<Change> Since(const AccessibleRows& rows);

 private:
  std::vector<std::pair<QString, Qt::CheckState>> seen_;
  int current_ = 0;
};

/// Tells listeners what has changed on a surface since the last time. Call it after each repaint.
void TellChanges(ListSurface* surface, Changes& changes);
/// Tells listeners that the surface's selected row has the focus. Nothing without one.
void TellFocus(ListSurface* surface);

}  // namespace ListAccessibility
