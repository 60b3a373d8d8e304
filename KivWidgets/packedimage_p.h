// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QVector>

class QImage;

namespace KivPrivate {

/// The pixels of a 32-bit image that is of one colour in large parts, as runs: a layer with one arc
/// takes a tenth of its bytes.
class PackedImage
{
public:
    /// No pixels.
    PackedImage() = default;
    explicit PackedImage(const QImage &image);

    bool isEmpty() const;
    int byteCount() const;
    /// Writes all pixels of *@p image, which has the size of the packed one.
    void unpackTo(QImage *image) const;

private:
    void appendRun(quint32 pixel, int length);
    void appendPixels(const quint32 *pixels, int length);

    /// A run's length times two and its pixel, or the number of single pixels times two plus one
    /// and these pixels.
    QVector<quint32> words;
};

} // namespace KivPrivate
