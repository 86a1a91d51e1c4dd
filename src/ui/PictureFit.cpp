#include "ui/PictureFit.h"

#include "controls/Twips.h"
#include "platform/Failure.h"

namespace PictureFit {

QRect Fit(const QSize& picture, const QSize& surface) {
  if (picture.isEmpty()) {
    Fail("fit a picture: ", picture.width(), " x ", picture.height(), " pixels have no shape");
  }
  const auto SW = static_cast<float>(surface.width());
  const auto SH = static_cast<float>(surface.height());
  const float Ratio = static_cast<float>(picture.width()) / static_cast<float>(picture.height());
  const int W = RoundToEven(SH * Ratio);
  if (W > surface.width()) {
    const int H = RoundToEven(SW / Ratio);
    return {0, RoundToEven((surface.height() - H) / 2.0), surface.width(), H};
  }
  return {RoundToEven((surface.width() - W) / 2.0), 0, W, surface.height()};
}

}  // namespace PictureFit
