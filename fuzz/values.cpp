// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "values.h"

#include "qtversion_p.h"

#include <QtCore/QLocale>
#include <QtGui/QBitmap>
#include <QtGui/QCursor>
#include <QtGui/QIconEngine>
#include <QtGui/QKeySequence>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::min();
constexpr double denormal = std::numeric_limits<double>::denorm_min();
constexpr int intMax = std::numeric_limits<int>::max();
constexpr int intMin = std::numeric_limits<int>::min();

/// An icon whose answers do not fit together.
class HostileEngine : public QIconEngine
{
public:
    HostileEngine(QSize offeredSize, QSize givenSize)
        : offered(offeredSize)
        , given(givenSize)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->fillRect(rect, Qt::green);
    }
    QPixmap pixmap(const QSize &, QIcon::Mode, QIcon::State) override
    {
        QPixmap pixmap(given);
        pixmap.fill(Qt::green);
        return pixmap;
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) KIV_CONST_IN_QT5 override
    {
        return {offered, QSize(16, 16)};
    }
    QSize actualSize(const QSize &, QIcon::Mode, QIcon::State) override
    {
        return offered;
    }
    QIconEngine *clone() const override
    {
        return new HostileEngine(*this);
    }

private:
    QSize offered;
    QSize given;
};

QSize someImageSize(Bytes &bytes)
{
    static const QSize sizes[] = {{0, 0},       {1, 1},    {16, 16},   {78, 27},  {27, 27},
                                  {300, 200},   {4096, 1}, {1, 4096},  {50, 52},  {72, 72},
                                  {1024, 1024}, {17, 90},  {65535, 2}, {2, 65535}};
    return bytes.oneOf(sizes);
}

bool isWidgetSize(const char *name)
{
    static const char *const names[] = {"minimumSize", "geometry"};
    for (const char *known : names) {
        if (std::strcmp(name, known) == 0)
            return true;
    }
    return false;
}

bool isWidgetLength(const char *name)
{
    return std::strcmp(name, "minimumWidth") == 0 || std::strcmp(name, "minimumHeight") == 0;
}

} // namespace

namespace Values {

int someInt(Bytes &bytes)
{
    static const int numbers[] = {
        0,     1,    -1,     2,      3,      5,          10,         50,       99,
        100,   101,  127,    128,    150,    180,        200,        255,      256,
        270,   300,  359,    360,    1000,   4096,       32767,      32768,    65535,
        65536, -100, -32768, intMax, intMin, intMax - 1, intMin + 1, 16777215, 16777216};
    const std::uint8_t choice = bytes.byte();
    if (choice < 200)
        return numbers[choice % std::size(numbers)];
    if (choice < 240)
        return bytes.byte();
    // Large radii, borders and icons.
    static const int large[] = {600, 2000, 4000, 8191, 10000, 20000, 40000};
    const std::uint32_t word = bytes.word();
    return choice < 248 ? large[word % std::size(large)] : static_cast<int>(word);
}

double someDouble(Bytes &bytes)
{
    static const double numbers[] = {0.0,
                                     -0.0,
                                     1.0,
                                     -1.0,
                                     0.5,
                                     0.2,
                                     2.0,
                                     45.0,
                                     89.999,
                                     90.0,
                                     90.001,
                                     100.0,
                                     101.0,
                                     125.0,
                                     126.0,
                                     180.0,
                                     270.0,
                                     360.0,
                                     1e-9,
                                     1e9,
                                     -1e9,
                                     1e15,
                                     1e18,
                                     1e19,
                                     -1e19,
                                     1e300,
                                     -1e300,
                                     largest,
                                     -largest,
                                     smallest,
                                     denormal,
                                     -denormal,
                                     infinity,
                                     -infinity,
                                     notANumber,
                                     double(intMax),
                                     double(intMax) + 1,
                                     double(intMin) - 1};
    const std::uint8_t choice = bytes.byte();
    if (choice < 160)
        return numbers[choice % std::size(numbers)];
    if (choice < 240)
        return someInt(bytes) / 16.0;
    double number;
    const std::uint64_t bits = std::uint64_t(bytes.word()) << 32 | bytes.word();
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

QString someString(Bytes &bytes)
{
    static const char *const texts[] = {"",
                                        " ",
                                        "a",
                                        "Inverter",
                                        "%d%%",
                                        "%d",
                                        "%.02f%%",
                                        "%f",
                                        "%n",
                                        "%s",
                                        "%*d",
                                        "%1000000d",
                                        "%ls",
                                        "%.*f",
                                        "%-+ #010.3f",
                                        "%03d",
                                        "%",
                                        "%%",
                                        "%z",
                                        "%hhd",
                                        "%lld",
                                        "%Lf",
                                        "%a",
                                        "%e",
                                        "%G",
                                        "%x",
                                        "%o",
                                        "%u",
                                        "%i",
                                        "%c",
                                        "%p",
                                        "%d%d",
                                        "%1$d",
                                        "%2$s",
                                        "%.999999999f",
                                        "%99999999999d",
                                        "%.1000f",
                                        "%'d",
                                        "%I64d",
                                        "% d",
                                        "&Text",
                                        "a\nb\nc",
                                        "a\tb",
                                        "%hs",
                                        "%S",
                                        "%C",
                                        "%jd",
                                        "%td"};
    const std::uint8_t choice = bytes.byte();
    if (choice < 200)
        return QString::fromLatin1(texts[choice % std::size(texts)]);
    switch (choice) {
    case 200:
        return QString();
    case 201:
        return QString(10000, QLatin1Char('W'));
    case 202:
        return QString::fromUtf8("\u20ac \u0416\u4e2d\u05d0\u0644 \U0001F600 a\u0301");
    case 203:
        return QString(QChar(0)) + QLatin1Char('%') + QChar(0xd800) + QChar(0xffff);
    case 204:
        return QString(5000, QLatin1Char('\n'));
    case 205:
        return QString(5000, QLatin1Char('%'));
    case 206:
        return QStringLiteral("%") + QString(5000, QLatin1Char('0')) + QLatin1Char('d');
    default:
        break;
    }
    QString text(QLatin1Char('%'));
    for (int length = bytes.below(12); length > 0; --length)
        text += QLatin1Char(static_cast<char>(bytes.byte()));
    return text;
}

QColor someColor(Bytes &bytes)
{
    switch (bytes.below(8)) {
    case 0:
        return QColor();
    case 1:
        return QColor(0, 0, 0, 0);
    case 2:
        return QColor::fromHsv(bytes.below(256), 255, 255, bytes.byte());
    case 3:
        return QColor::fromCmyk(1, 2, 3, 4);
    case 4:
        return QColor(Qt::white);
    case 5:
        return QColor::fromRgbF(0.125, 1.0, 0.5, 0.5);
    case 6:
        return QColor(300, -1, 0);
    default:
        return QColor::fromRgba(bytes.word());
    }
}

QPixmap somePixmap(Bytes &bytes)
{
    const int kind = bytes.below(5);
    const QSize size = someImageSize(bytes);
    if (kind == 0 || size.isEmpty())
        return QPixmap();
    if (kind == 1)
        return QBitmap(size);
    QPixmap pixmap(size);
    pixmap.fill(someColor(bytes));
    if (kind == 2)
        pixmap.setDevicePixelRatio(2.0);
    return pixmap;
}

QIcon someIcon(Bytes &bytes)
{
    switch (bytes.below(6)) {
    case 0:
        return QIcon();
    case 1:
        return QIcon(QStringLiteral(":/no/such/image.png"));
    case 2: {
        const QSize offered = someSize(bytes);
        return QIcon(new HostileEngine(offered, someImageSize(bytes)));
    }
    case 3: {
        QIcon icon;
        icon.addPixmap(somePixmap(bytes), QIcon::Disabled, QIcon::On);
        icon.addPixmap(somePixmap(bytes), QIcon::Active, QIcon::Off);
        return icon;
    }
    default:
        return QIcon(somePixmap(bytes));
    }
}

QFont someFont(Bytes &bytes)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    switch (bytes.below(6)) {
    case 0:
        font.setPixelSize(1);
        break;
    case 1:
        font.setPixelSize(300);
        break;
    case 2:
        font.setPointSizeF(0.01);
        break;
    case 3:
        font.setLetterSpacing(QFont::AbsoluteSpacing, someInt(bytes) % 5000);
        break;
    case 4:
        font.setStretch(1 + bytes.below(200));
        font.setUnderline(true);
        break;
    default: {
        // Some are larger than any screen.
        const int choice = bytes.byte();
        font.setPointSize(choice < 240 ? 1 + choice % 40 : 250 * (choice - 239));
        font.setItalic(bytes.flag());
        break;
    }
    }
    return font;
}

QPalette somePalette(Bytes &bytes)
{
    QPalette palette;
    palette.setColor(QPalette::Window, someColor(bytes));
    palette.setColor(QPalette::WindowText, someColor(bytes));
    return palette;
}

QSize someSize(Bytes &bytes)
{
    const int width = someInt(bytes);
    return {width, someInt(bytes)};
}

QPoint somePoint(Bytes &bytes)
{
    const int x = someInt(bytes);
    return {x, someInt(bytes)};
}

QRect someRect(Bytes &bytes)
{
    constexpr int farthest = 1 << 30;
    const int width = std::clamp(someInt(bytes), -farthest, farthest);
    return {0, 0, width, std::clamp(someInt(bytes), -farthest, farthest)};
}

QSize someWidgetSize(Bytes &bytes)
{
    static const QSize sizes[] = {{0, 0},     {0, 30},    {30, 0},    {1, 1},    {1, 60},
                                  {2, 2},     {3, 3},     {18, 18},   {100, 30}, {60, 60},
                                  {200, 40},  {40, 200},  {190, 60},  {78, 27},  {4096, 16},
                                  {16, 4096}, {400, 300}, {512, 512}, {5, 300},  {800, 42}};
    const std::uint8_t choice = bytes.byte();
    if (choice < 220)
        return sizes[choice % std::size(sizes)];
    const int width = bytes.byte();
    return {width, bytes.byte()};
}

QPointF somePlace(Bytes &bytes, QSize size)
{
    const int kind = bytes.below(6);
    const double across = bytes.byte() / 255.0;
    const double down = bytes.byte() / 255.0;
    switch (kind) {
    case 0:
        return {-1.0, down * size.height()};
    case 1: {
        const double x = someDouble(bytes);
        return {x, someDouble(bytes)};
    }
    case 2:
        return {double(size.width()), double(size.height())};
    default:
        return {across * size.width(), down * size.height()};
    }
}

QVariant someValue(const QMetaProperty &property, Bytes &bytes)
{
    if (isWidgetSize(property.name())) {
        const QSize size = someWidgetSize(bytes);
        if (property.userType() == QMetaType::QSize)
            return size;
        const int x = someInt(bytes) % 1000;
        return QRect(QPoint(x, someInt(bytes) % 1000), size);
    }
    if (isWidgetLength(property.name()))
        return someWidgetSize(bytes).width();
    if (property.isEnumType())
        return someInt(bytes);
    switch (static_cast<QMetaType::Type>(property.userType())) {
    case QMetaType::Bool:
        return bytes.flag();
    case QMetaType::Int:
        return someInt(bytes);
    case QMetaType::Double:
        return someDouble(bytes);
    case QMetaType::QString:
        return someString(bytes);
    case QMetaType::QColor:
        return someColor(bytes);
    case QMetaType::QPixmap:
        return somePixmap(bytes);
    case QMetaType::QIcon:
        return someIcon(bytes);
    case QMetaType::QFont:
        return someFont(bytes);
    case QMetaType::QPalette:
        return somePalette(bytes);
    case QMetaType::QCursor:
        return QCursor(static_cast<Qt::CursorShape>(bytes.below(Qt::LastCursor)));
    case QMetaType::QSize:
        return std::strcmp(property.name(), "size") == 0 ? someRect(bytes).size() : someSize(bytes);
    case QMetaType::QPoint:
        // Qt's own widgets cannot stand further off than a rectangle can represent.
        return std::strcmp(property.name(), "pos") == 0 ? someRect(bytes).bottomRight()
                                                        : somePoint(bytes);
    case QMetaType::QLocale:
        return bytes.flag() ? QLocale(QLocale::Arabic) : QLocale::c();
    case QMetaType::QKeySequence:
        return QKeySequence(Qt::Key_F1);
    default:
        return {};
    }
}

} // namespace Values
