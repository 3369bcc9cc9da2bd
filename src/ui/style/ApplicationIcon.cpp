#include "ui/style/ApplicationIcon.h"

#include <QFile>
#include <QImageReader>
#include <QPixmap>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr std::array pictureSizes{128, 256};

QString path(int size)
{
    return u":/TavrinIcon-%1.png"_s.arg(size);
}

/// Asks no plugin: whoever lets Qt guess the format loads the libraries of a dozen others.
QPixmap image(int size)
{
    QImageReader reader(path(size), "png");
    reader.setAutoDetectImageFormat(false);
    return QPixmap::fromImage(reader.read());
}

} // namespace

bool hasApplicationIcon()
{
    return QFile::exists(path(1024));
}

QIcon windowIcon()
{
    QIcon icon;
    for (const int size : {32, 48})
        icon.addPixmap(image(size));
    return icon;
}

QPixmap applicationPicture(int side, double devicePixelRatio)
{
    const int pixels = qRound(side * devicePixelRatio);
    const auto* const enough = std::ranges::lower_bound(pictureSizes, pixels);
    QPixmap picture = image(enough == pictureSizes.end() ? pictureSizes.back() : *enough)
                          .scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

} // namespace tavrin
