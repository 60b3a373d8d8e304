// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "imagememory_p.h"

#include "applicationmemory_p.h"
#include "packedimage_p.h"

#include <QtCore/QCache>
#include <QtGui/QColor>
#include <QtGui/QRgba64>

#include <cstring>
#include <iterator>
#include <memory>

namespace KivPrivate {

namespace {

using Images = QCache<ImageKey, QImage>;

/// By source. They are created when they are first needed; a cache itself cannot be assigned.
using ImageMemory = std::array<std::unique_ptr<Images>, std::size(mostImageBytes)>;

using PackedImages = QCache<ImageKey, PackedImage>;

struct PackedMemory
{
    std::unique_ptr<PackedImages> images;
};

PackedImages &packedImages()
{
    std::unique_ptr<PackedImages> &images = applicationMemory<PackedMemory>().images;
    if (!images)
        images = std::make_unique<PackedImages>(mostPackedBytes);
    return *images;
}

/// In bytes, about, with what the memory itself needs.
int packedCost(const PackedImage &packed)
{
    return packed.byteCount() + int(sizeof(ImageKey)) + 64;
}

Images &imagesLike(const ImageKey &key)
{
    const ImageKey::Source source = key.source();
    std::unique_ptr<Images> &images = applicationMemory<ImageMemory>()[source];
    if (!images)
        images = std::make_unique<Images>(mostImageBytes[source]);
    return *images;
}

} // namespace

void ImageKey::append(qint64 word)
{
    Q_ASSERT(count < words.size());
    words[count] = word;
    ++count;
}

void ImageKey::append(int number)
{
    append(qint64(number));
}

void ImageKey::append(double number)
{
    qint64 bits = 0;
    static_assert(sizeof bits == sizeof number);
    std::memcpy(&bits, &number, sizeof bits);
    append(bits);
}

void ImageKey::append(QPoint point)
{
    append(qint64(quint64(quint32(point.x())) << 32 | quint32(point.y())));
}

void ImageKey::append(QSize size)
{
    append(QPoint(size.width(), size.height()));
}

void ImageKey::append(const QColor &color)
{
    append(qint64(color.spec()));
    append(qint64(quint64(color.rgba64())));
}

void ImageKey::appendDevice(const QImage &image)
{
    append(image.size());
    append(image.devicePixelRatio());
    append(QSize(image.dotsPerMeterX(), image.dotsPerMeterY()));
}

bool ImageKey::operator==(const ImageKey &other) const
{
    return count == other.count && words == other.words;
}

uint ImageKey::hash() const
{
    quint64 mixed = count;
    for (std::size_t i = 0; i < count; ++i)
        mixed = (mixed ^ quint64(words[i])) * 0x9e3779b97f4a7c15U;
    return uint(mixed >> 32);
}

uint qHash(const ImageKey &key, uint seed)
{
    return key.hash() ^ seed;
}

ImageKey::Source ImageKey::source() const
{
    if (words[0] >= BarBackground)
        return Values;
    return words[0] >= StretchedBackground ? Pixmaps : Settings;
}

QImage rememberedImage(const ImageKey &key)
{
    const QImage *const known = mayRemember() ? imagesLike(key).object(key) : nullptr;
    return known ? *known : QImage();
}

QImage copyOf(const QImage &known)
{
    auto *const source = new QImage(known);
    QImage copy(
        source->constBits(), known.width(), known.height(), known.bytesPerLine(), known.format(),
        [](void *shared) { delete static_cast<QImage *>(shared); }, source);
    // A ratio could only be set after copying the pixels.
    const bool isAlike = known.devicePixelRatio() == copy.devicePixelRatio() &&
                         known.dotsPerMeterX() == copy.dotsPerMeterX() &&
                         known.dotsPerMeterY() == copy.dotsPerMeterY();
    return isAlike ? copy : known.copy();
}

bool isRememberable(const ImageKey &key, qsizetype bytes)
{
    // Larger ones would drive out too many others.
    return bytes <= mostImageBytes[key.source()] / 2;
}

void rememberImage(const ImageKey &key, const QImage &image)
{
    if (!mayRemember() || image.isNull())
        return;
    if (isRememberable(key, image.sizeInBytes()))
        imagesLike(key).insert(key, new QImage(image), int(image.sizeInBytes()));
}

bool unpackRemembered(QImage *image, const ImageKey &key)
{
    const PackedImage *const known = mayRemember() ? packedImages().object(key) : nullptr;
    if (!known || known->isEmpty())
        return false;
    known->unpackTo(image);
    return true;
}

bool isWorthPacking(const ImageKey &key)
{
    if (!mayRemember())
        return false;
    PackedImages &images = packedImages();
    if (images.contains(key))
        return true;
    images.insert(key, new PackedImage, packedCost(PackedImage()));
    return false;
}

void rememberPacked(const ImageKey &key, const QImage &image)
{
    if (!mayRemember() || image.isNull())
        return;
    auto packed = std::make_unique<PackedImage>(image);
    const int bytes = packedCost(*packed);
    if (bytes <= mostPackedBytes / 8)
        packedImages().insert(key, packed.release(), bytes);
}

} // namespace KivPrivate
