#pragma once

#include <QRect>
#include <QSize>

namespace PictureFit {

/// Where a picture goes in a surface, both sizes in pixels: as large as its shape allows, also when
/// that means enlarging it, and in the middle along the other axis. Fails on a picture without
/// width or height. The box of a very flat picture may have no height.
QRect Fit(const QSize& picture, const QSize& surface);

}  // namespace PictureFit
