// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "cachedimage_p.h"

#include <QtGui/QImage>

#include <array>
#include <cstddef>

class QColor;

/// Images that equal widgets share: what many of them paint alike, or one of them again and again,
/// is painted once. The memory is bounded in bytes and drops what was not used for longest. It
/// serves the GUI thread only; elsewhere everything is painted each time, with the same pixels.
namespace KivPrivate {

/// What an image was made from, in words. Equal keys stand for equal pixels.
class ImageKey
{
public:
    enum Kind {
        GlassPanel,
        Trough,
        IconPlate,
        StretchedBackground,
        SwitchFace,
        BarBackground,
        BarValue,
        BarScale,
        DivisionScale,
        Pie,
        PassedQuadrants,
        DialBackground,
        DialMask,
    };
    /// What an image is painted from decides how often there is another one, so each of these has
    /// a memory of its own, in which its images drive out only each other.
    enum Source {
        Settings, ///< of a widget
        Pixmaps,  ///< of the application
        Values,   ///< of a gauge
    };

    template <typename... Parts>
    explicit ImageKey(Kind kind, const Parts &...parts)
    {
        append(qint64(kind));
        (append(parts), ...);
    }

    void append(qint64 word);
    void append(int number);
    void append(double number);
    void append(QPoint point);
    void append(QSize size);
    /// By its colour model too, since a painter may treat equal components differently.
    void append(const QColor &color);
    /// All of @p image that a painter on it takes into account.
    void appendDevice(const QImage &image);

    bool operator==(const ImageKey &other) const;
    uint hash() const;
    Source source() const;

private:
    std::array<qint64, 20> words{};
    std::size_t count = 0;
};

uint qHash(const ImageKey &key, uint seed = 0);

/// The image remembered under @p key; a null image when there is none.
QImage rememberedImage(const ImageKey &key);

/// An image with the pixels of @p known and an identity of its own. It shares the pixels until it
/// is painted on.
QImage copyOf(const QImage &known);

/// Whether an image of @p bytes is not too large to be remembered under @p key.
bool isRememberable(const ImageKey &key, qsizetype bytes);

/// Remembers @p image, if it is not too large for that.
void rememberImage(const ImageKey &key, const QImage &image);

/// The bytes that the remembered images take at most, by their source.
constexpr int mostImageBytes[] = {1024 * 1024, 384 * 1024, 384 * 1024};
/// The same for packed images.
constexpr int mostPackedBytes = 640 * 1024;

/// Shares *@p image with an image that was painted before with the same @p key. If there is none,
/// @p paint fills *@p image.
template <typename Paint>
void paintShared(QImage *image, ImageKey key, Paint paint)
{
    // The layers of a gauge are shared at 1 alone.
    const bool isOurs = image->format() == QImage::Format_ARGB32_Premultiplied &&
                        (image->devicePixelRatio() == 1.0 || key.source() != ImageKey::Values);
    key.appendDevice(*image);
    if (isOurs) {
        const QImage known = rememberedImage(key);
        if (!known.isNull()) {
            *image = copyOf(known);
            return;
        }
    }
    paint();
    if (isOurs)
        rememberImage(key, *image);
}

/// Fills *@p image with what @p paint draws with an ImagePainter on it, which is painted only when
/// an image like it was not with the same @p key.
template <typename Paint>
void paintOnce(QImage *image, const ImageKey &key, ImagePainter::Edges edges, Paint paint)
{
    paintShared(image, key, [&] {
        ImagePainter painter(image, edges);
        paint(&painter);
    });
}

/// Whether an image's rows of 32-bit pixels follow each other without a gap, as those of all cached
/// images do; a class derived from a widget may bring others.
inline bool isGapless(const QImage &image)
{
    return image.bytesPerLine() == image.width() * 4;
}

/// Fills *@p image with the packed image that is remembered under @p key.
/// @return whether there is one.
bool unpackRemembered(QImage *image, const ImageKey &key);

/// Whether an image with @p key, which is not cached, was requested before. Most are requested only
/// once, and are not worth packing.
bool isWorthPacking(const ImageKey &key);

/// Packs and remembers @p image.
void rememberPacked(const ImageKey &key, const QImage &image);

inline bool isPackable(const QImage &image)
{
    return image.format() == QImage::Format_ARGB32_Premultiplied && isGapless(image);
}

/// The same as paintOnce() for an image that is of one colour in large parts, and of which there
/// are many. @p paint fills *@p image itself.
template <typename Paint>
void paintPacked(QImage *image, ImageKey key, Paint paint)
{
    key.appendDevice(*image);
    if (isPackable(*image) && unpackRemembered(image, key))
        return;
    paint();
    if (isPackable(*image) && isWorthPacking(key))
        rememberPacked(key, *image);
}

} // namespace KivPrivate
