#include "ui/ListAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "ui/ListScrollBar.h"
#include "ui/ListSurface.h"

namespace {

class RowInterface : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowInterface(ListSurface* surface, int row) : surface_(surface), row_(row) {}

  [[nodiscard]] bool isValid() const override {
    return surface_ && surface_->Rows() != nullptr && row_ <= surface_->Rows()->Count();
  }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override {
    return surface_ ? surface_->window()->windowHandle() : nullptr;
  }
  [[nodiscard]] QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(surface_);
  }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
    return nullptr;
  }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Name) return surface_->Rows()->Name(row_);
    if (kind == QAccessible::Description) return surface_->Rows()->Description(row_);
    return {};
  }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

  [[nodiscard]] QRect rect() const override {
    if (!isValid()) return {};
    const QRect box(0, surface_->Rows()->Top(row_), surface_->width(), surface_->Rows()->Height());
    return {surface_->mapToGlobal(box.topLeft()), box.size()};
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    const AccessibleRows& rows = *surface_->Rows();
    const bool isCurrent = rows.Current() == row_;
    state.selectable = true;
    state.selected = isCurrent;
    state.focusable = true;
    state.focused = isCurrent && surface_->hasFocus();
    state.checkable = true;
    state.checked = rows.Tick(row_) == Qt::Checked;
    state.checkStateMixed = rows.Tick(row_) == Qt::PartiallyChecked;
    state.disabled = !surface_->isEnabled();
    state.invisible = !surface_->isVisible();
    const int top = rows.Top(row_);
    state.offscreen = top >= surface_->height() || top + rows.Height() <= 0;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::ActionInterface) return nullptr;
    return static_cast<QAccessibleActionInterface*>(this);
  }
  [[nodiscard]] QStringList actionNames() const override {
    if (!isValid() || !surface_->isEnabled()) return {};
    return {pressAction(), toggleAction(), setFocusAction()};
  }
  // The reader has its answer before what a click sets off begins. What stood in the row when it
  // asked may have given way by then, as an action before this one has selected another type.
  void doAction(const QString& name) override {
    if (!isValid() || !surface_->isEnabled()) return;
    QMetaObject::invokeMethod(
        surface_,
        [surface = surface_, row = row_, meant = Identity(*surface_->Rows(), row_), name] {
          const AccessibleRows* const rows = surface->Rows();
          const bool isThere = rows != nullptr && row <= rows->Count();
          if (isThere && Identity(*rows, row) == meant) ActNow(*surface, row, name);
        },
        Qt::QueuedConnection);
  }
  [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override {
    return {};
  }

 private:
  // By name as well: another pack may have been opened.
  static std::pair<std::ptrdiff_t, QString> Identity(const AccessibleRows& rows, int row) {
    return {rows.Item(row), rows.Name(row)};
  }
  static void ActNow(ListSurface& surface, int row, const QString& name) {
    if (!surface.isEnabled()) return;
    if (name == setFocusAction()) surface.setFocus();
    if (name == pressAction() || name == setFocusAction()) surface.Rows()->Press(row);
    if (name == toggleAction()) surface.Rows()->Toggle(row);
  }

  QPointer<ListSurface> surface_;
  int row_;
};

// A list whose children are its rows and, behind them, the scroll bar while it is shown.
class SurfaceInterface : public QAccessibleWidget {
 public:
  explicit SurfaceInterface(ListSurface* surface) : QAccessibleWidget(surface, QAccessible::List) {}
  ~SurfaceInterface() override {
    for (const QAccessible::Id id : ids_) QAccessible::deleteAccessibleInterface(id);
  }
  SurfaceInterface(const SurfaceInterface&) = delete;
  SurfaceInterface& operator=(const SurfaceInterface&) = delete;
  SurfaceInterface(SurfaceInterface&&) = delete;
  SurfaceInterface& operator=(SurfaceInterface&&) = delete;

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const ListSurface* const surface = Surface();
    const bool isEmpty = surface != nullptr && surface->Rows() != nullptr && RowCount() == 0;
    if (kind == QAccessible::Description && isEmpty) return surface->Rows()->EmptyText();
    return QAccessibleWidget::text(kind);
  }
  [[nodiscard]] int childCount() const override { return RowCount() + (ScrollBar() ? 1 : 0); }

  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    if (index == RowCount()) return QAccessible::queryAccessibleInterface(ScrollBar());
    const auto known = ids_.constFind(index);
    if (known != ids_.constEnd()) return QAccessible::accessibleInterface(*known);
    auto* const row = new RowInterface(Surface(), index + 1);
    ids_.insert(index, QAccessible::registerAccessibleInterface(row));
    return row;
  }

  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
    if (child == nullptr) return -1;
    if (ScrollBar() && child->object() == ScrollBar()) return RowCount();
    for (auto entry = ids_.constBegin(); entry != ids_.constEnd(); ++entry) {
      if (QAccessible::accessibleInterface(entry.value()) == child) return entry.key();
    }
    return -1;
  }

  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
    const ListSurface* const surface = Surface();
    if (surface == nullptr) return nullptr;
    const QPoint place = surface->mapFromGlobal(QPoint(x, y));
    if (!surface->rect().contains(place)) return nullptr;
    if (ScrollBar() && ScrollBar()->geometry().contains(place)) return child(RowCount());
    if (RowCount() == 0) return nullptr;
    const int below = place.y() - surface->Rows()->Top(1);
    const int index = below / surface->Rows()->Height();
    return below >= 0 && index < RowCount() ? child(index) : nullptr;
  }

  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    if (Surface() == nullptr || !Surface()->hasFocus() || RowCount() == 0) return nullptr;
    const int current = Surface()->Rows()->Current();
    return current > 0 && current <= RowCount() ? child(current - 1) : nullptr;
  }

 private:
  // Asked anew each time: a widget that is being destroyed is no such surface any more.
  [[nodiscard]] ListSurface* Surface() const { return qobject_cast<ListSurface*>(object()); }
  [[nodiscard]] int RowCount() const {
    const ListSurface* const surface = Surface();
    return surface != nullptr && surface->Rows() != nullptr ? surface->Rows()->Count() : 0;
  }
  [[nodiscard]] ListScrollBar* ScrollBar() const {
    if (Surface() == nullptr) return nullptr;
    auto* const bar = Surface()->findChild<ListScrollBar*>(QString(), Qt::FindDirectChildrenOnly);
    return bar != nullptr && !bar->isHidden() ? bar : nullptr;
  }

  mutable QHash<int, QAccessible::Id> ids_;  // of the rows that were asked for, by index
};

QAccessibleInterface* Make(const QString& /*className*/, QObject* object) {
  auto* const surface = qobject_cast<ListSurface*>(object);
  return surface != nullptr ? new SurfaceInterface(surface) : nullptr;
}

void Tell(ListSurface* surface, QAccessible::Event kind, int row) {
  QAccessibleEvent event(surface, kind);
  event.setChild(row - 1);  // -1 is the list itself
  QAccessible::updateAccessibility(&event);
}

void TellTick(ListSurface* surface, int row) {
  QAccessible::State changed;
  changed.checked = true;
  changed.checkStateMixed = true;
  QAccessibleStateChangeEvent event(surface, changed);
  event.setChild(row - 1);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

namespace ListAccessibility {

void Install() {
  QAccessible::installFactory(Make);
}

std::vector<Changes::Change> Changes::Since(const AccessibleRows& rows) {
  const auto before = std::exchange(seen_, {});
  for (int row = 1; row <= rows.Count(); ++row) seen_.emplace_back(rows.Name(row), rows.Tick(row));
  const bool areSame =
      std::equal(seen_.begin(), seen_.end(), before.begin(), before.end(),
                 [](const auto& now, const auto& then) { return now.first == then.first; });

  std::vector<Change> changes;
  if (!areSame) changes.push_back({QAccessible::ObjectReorder, 0});
  for (std::size_t i = 0; areSame && i < seen_.size(); ++i) {
    if (seen_[i].second == before[i].second) continue;
    changes.push_back({QAccessible::StateChanged, static_cast<int>(i) + 1});
  }
  const int current = rows.Current();
  const bool isOther = std::exchange(current_, current) != current || !areSame;
  if (isOther && current > 0 && current <= rows.Count()) {
    changes.push_back({QAccessible::Selection, current});
  }
  return changes;
}

void TellChanges(ListSurface* surface, Changes& changes) {
  if (!QAccessible::isActive()) return;
  for (const Changes::Change& change : changes.Since(*surface->Rows())) {
    if (change.kind == QAccessible::StateChanged) {
      TellTick(surface, change.row);
    } else {
      Tell(surface, change.kind, change.row);
    }
    if (change.kind == QAccessible::Selection && surface->hasFocus()) TellFocus(surface);
  }
}

void TellFocus(ListSurface* surface) {
  if (!QAccessible::isActive() || surface->Rows() == nullptr) return;
  const int row = surface->Rows()->Current();
  if (row > 0 && row <= surface->Rows()->Count()) Tell(surface, QAccessible::Focus, row);
}

}  // namespace ListAccessibility
