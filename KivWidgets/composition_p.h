// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QtGlobal>

/// The composition of a gauge's three layers, in one pass over the pixels. All pixels are in the
/// format of cached images, premultiplied ARGB of 32 bits.
namespace KivPrivate {

/// Computes @p count pixels of @p out: those of @p value over those of @p background, less the ink
/// of @p mask over them.
using ComposePixels = void (*)(quint32 *out, const quint32 *background, const quint32 *value,
                               const quint32 *mask, int count);

/// One way of doing that, for processors that have the instructions. All give the same bits.
struct ComposeWay
{
    const char *name;
    bool isAvailable;
    ComposePixels compose;
};

/// The ways that this build has, the slowest first.
struct ComposeWays
{
    const ComposeWay *first;
    int count;
};
ComposeWays composeWays();

/// The fastest way for this processor.
ComposePixels fastestCompose();

/// @p pixel times @p factor / 255, each channel rounded as the raster paint engine does it.
inline quint32 scaledPixel(quint32 pixel, quint32 factor)
{
    quint32 even = (pixel & 0xff00ff) * factor;
    even = ((even + ((even >> 8) & 0xff00ff) + 0x800080) >> 8) & 0xff00ff;
    quint32 odd = ((pixel >> 8) & 0xff00ff) * factor;
    odd = (odd + ((odd >> 8) & 0xff00ff) + 0x800080) & 0xff00ff00;
    return odd | even;
}

} // namespace KivPrivate
