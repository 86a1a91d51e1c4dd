#include "ui/PictureLoader.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

#include "platform/Failure.h"

namespace {

// Of all the formats that the toolkit's plug-ins may know, those that are pictures and no more.
constexpr std::array<const char*, 4> kFormats = {"png", "jpeg", "bmp", "gif"};

// The lines of a BMP stand in the file from bottom to top, or the other way round if its height is
// negative.
QSize SizeOf(const QImageReader& reader) {
  const QSize size = reader.size();
  if (size.height() == std::numeric_limits<int>::min()) return {};
  return {size.width(), std::abs(size.height())};
}

}  // namespace

namespace PictureLoader {

QImage FromBytes(const QByteArray& bytes, const std::string& source, std::int64_t mostPixels) {
  QBuffer file;
  file.setData(bytes);
  file.open(QIODevice::ReadOnly);
  const QByteArray format = QImageReader::imageFormat(&file);
  if (std::find(kFormats.begin(), kFormats.end(), format) == kFormats.end()) {
    Fail("picture \"", source, "\": the file is no PNG, JPEG, BMP or GIF");
  }
  QImageReader reader(&file, format);
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  const QSize size = SizeOf(reader);
  const std::int64_t pixels = std::int64_t{size.width()} * size.height();
  if (size.isEmpty() || pixels > mostPixels) {
    Fail("picture \"", source, "\": ", size.width(), " x ", size.height(), " pixels, of which ",
         mostPixels, " can be loaded");
  }
  QImage picture = reader.read();
  if (picture.isNull()) {
    Fail("picture \"", source, "\": ", reader.errorString().toStdString(), " (",
         static_cast<int>(reader.error()), ")");
  }
  picture.setDevicePixelRatio(1);  // a pixel of the file is a pixel of the layout
  return picture;
}

}  // namespace PictureLoader
