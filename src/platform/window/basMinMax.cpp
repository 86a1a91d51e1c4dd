#include "platform/window/basMinMax.h"

#include <QWidget>

namespace basMinMax {

void HookMinMax(QWidget* form, int minWidth, int minHeight) {
  form->setMinimumSize(minWidth, minHeight);
}

void UnhookMinMax(QWidget* form) {
  form->setMinimumSize(0, 0);
}

}  // namespace basMinMax
