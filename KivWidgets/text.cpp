// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "text_p.h"

#include "applicationmemory_p.h"
#include "qtversion_p.h"

#include <QtCore/QCache>
#include <QtCore/QString>
#include <QtGui/QFontInfo>
#include <QtGui/QFontMetrics>
#include <QtGui/QGlyphRun>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace KivPrivate {

namespace {

/// Longer texts are measured each time, so that nothing large is kept.
constexpr int longestText = 64;

/// Larger glyphs are drawn as paths, another way.
constexpr int largestPixelSize = 48;
/// Measured texts that are remembered.
constexpr int mostMeasured = 256;

/// A text in a font, as it is for a device of a resolution.
struct TextKey
{
    QFont font;
    int resolution;
    QString text;

    bool operator==(const TextKey &other) const
    {
        return text == other.text && resolution == other.resolution &&
               resolveMask(font) == resolveMask(other.font) && font == other.font;
    }
};

uint qHash(const TextKey &key, uint seed = 0)
{
    return uint(qHash(key.text, seed));
}

/// What is known of a text that was drawn.
struct ShapedText
{
    bool isPlain; ///< whether its glyphs give the same pixels as the text
    QGlyphRun glyphs;
};

struct DerivedFont
{
    bool known = false;
    QFont base;
    int change = 0;
    QFont font;
};

/// The latest results. The caches are made when they are first needed.
struct Memory
{
    std::unique_ptr<QCache<TextKey, QSize>> sizes;
    std::unique_ptr<QCache<TextKey, ShapedText>> shapes;
    std::array<DerivedFont, 8> fonts;
    std::size_t nextFont = 0;
};

Memory &memory()
{
    return fontMemory<Memory>();
}

/// The font that @p derive makes of @p base; @p change distinguishes the ways of deriving.
template <typename Derive>
QFont derivedFont(const QFont &base, int change, Derive derive)
{
    Memory &latest = memory();
    for (const DerivedFont &derived : latest.fonts) {
        if (derived.known && derived.change == change && isSameFont(derived.base, base))
            return derived.font;
    }
    const DerivedFont made{true, base, change, derive(base)};
    latest.fonts[latest.nextFont] = made;
    latest.nextFont = (latest.nextFont + 1) % latest.fonts.size();
    return made.font;
}

QSize measured(const QFont &font, const QString &text)
{
    return QFontMetrics(font).size(Qt::TextSingleLine, text);
}

/// Whether @p text runs from left to right in one piece, without anything that acts on its
/// neighbours.
bool isPlainText(const QString &text)
{
    const auto isPlain = [](QChar character) {
        const ushort code = character.unicode();
        return (0x20 <= code && code < 0x7f) || (0xa0 < code && code <= 0xff && code != 0xad);
    };
    return text.size() <= longestText && std::all_of(text.begin(), text.end(), isPlain) &&
           !text.isEmpty() && text.front() != QLatin1Char(' ') && text.back() != QLatin1Char(' ');
}

bool isWhole(double number)
{
    return number == std::floor(number);
}

/// Whether glyphs at @p place have the same fractions of pixels as at the origin.
bool isPlainPlace(QPointF place)
{
    constexpr double farthest = 1 << 20;
    return isWhole(place.x()) && isWhole(place.y()) && std::abs(place.x()) < farthest &&
           std::abs(place.y()) < farthest;
}

/// Whether @p painter draws glyphs pixel by pixel, in one colour and nothing around them.
bool isPlainPainter(QPainter *painter)
{
    const QPaintEngine *const engine = painter->paintEngine();
    const QTransform &transform = painter->deviceTransform();
    return engine && engine->type() == QPaintEngine::Raster &&
           transform.type() <= QTransform::TxTranslate && isWhole(transform.dx()) &&
           isWhole(transform.dy()) && painter->pen().style() == Qt::SolidLine &&
           painter->pen().brush().style() == Qt::SolidPattern &&
           painter->backgroundMode() == Qt::TransparentMode && painter->opacity() == 1.0 &&
           painter->compositionMode() == QPainter::CompositionMode_SourceOver &&
           painter->layoutDirection() != Qt::RightToLeft;
}

bool isPlainFont(const QFont &font)
{
    return font.capitalization() == QFont::MixedCase && !font.underline() && !font.overline() &&
           !font.strikeOut() && QFontInfo(font).pixelSize() <= largestPixelSize;
}

/// The glyphs of @p text, to be drawn on its baseline; not plain where there are none that give the
/// same pixels.
ShapedText shape(const QFont &font, const QString &text)
{
    if (!isPlainFont(font))
        return {false, {}};
    QTextLayout layout(text, font);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = line.isValid() ? line.glyphRuns() : QList<QGlyphRun>();
    if (runs.size() != 1)
        return {false, {}};
    QGlyphRun glyphs = runs.front();
    auto places = glyphs.positions();
    const double baseline = line.y() + line.ascent();
    for (QPointF &place : places)
        place.ry() -= baseline;
    glyphs.setPositions(places);
    return {true, glyphs};
}

/// Approximately, including the data that Qt keeps for it.
int bytesOf(const TextKey &key, const ShapedText &shaped)
{
    constexpr int ofOneGlyph = int(sizeof(QPointF) + sizeof(quint32));
    constexpr int ofPrivateData = 256;
    return int(sizeof key + sizeof shaped) + ofPrivateData + int(key.text.size()) * 2 +
           int(shaped.glyphs.glyphIndexes().size()) * ofOneGlyph;
}

/// What is known of @p text in the painter's font; null where it is drawn for the first time, since
/// shaping takes longer than drawing it once.
const ShapedText *shapedText(const QPainter *painter, const QString &text)
{
    if (!mayRemember())
        return nullptr;
    auto &shapes = memory().shapes;
    if (!shapes)
        shapes = std::make_unique<QCache<TextKey, ShapedText>>(mostShapedBytes);
    const TextKey key{painter->font(), painter->device()->logicalDpiY(), text};
    const ShapedText *const known = shapes->object(key);
    if (known && (!known->isPlain || !known->glyphs.isEmpty()))
        return known;
    const bool isFirst = !known;
    auto *const entry = new ShapedText(isFirst ? ShapedText{true, {}} : shape(key.font, text));
    const bool isKept = shapes->insert(key, entry, bytesOf(key, *entry));
    return isKept && !isFirst ? entry : nullptr;
}

} // namespace

QFont withWeight(const QFont &font, bool bold)
{
    const QFont::Weight weight = bold ? QFont::Bold : QFont::Normal;
    return derivedFont(font, -weight, [weight](QFont derived) {
        derived.setWeight(weight);
        return derived;
    });
}

QFont smallerFont(const QFont &font, int percent)
{
    return derivedFont(font, percent, [percent](QFont derived) {
        derived.setPointSize(derived.pointSize() * percent / 100);
        derived.setWeight(QFont::Normal);
        return derived;
    });
}

bool isSameFont(const QFont &one, const QFont &other)
{
    // A stored copy keeps the font's data alive, so that no other font can take its address. The
    // mask counts too, because a painter takes the attributes that are not set from its device.
    return one.isCopyOf(other) && resolveMask(one) == resolveMask(other);
}

QSize singleLineSize(const QFont &font, const QString &text)
{
    if (text.size() > longestText || !mayRemember())
        return measured(font, text);
    const TextKey key{font, 0, text};
    auto &sizes = memory().sizes;
    if (!sizes)
        sizes = std::make_unique<QCache<TextKey, QSize>>(mostMeasured);
    const QSize *const known = sizes->object(key);
    if (known)
        return *known;
    const QSize size = measured(font, text);
    sizes->insert(key, new QSize(size));
    return size;
}

void drawLine(QPainter *painter, QPointF place, const QString &text)
{
    const ShapedText *const shaped =
        isPlainText(text) && isPlainPlace(place) && isPlainPainter(painter)
            ? shapedText(painter, text)
            : nullptr;
    if (shaped && shaped->isPlain)
        painter->drawGlyphRun(place, shaped->glyphs);
    else
        painter->drawText(place, text);
}

int centredBaseline(const QFontMetrics &metrics, int height)
{
    return (height - metrics.height()) / 2 + metrics.ascent();
}

} // namespace KivPrivate
