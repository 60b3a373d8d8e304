// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "composition_p.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QtTest>

using namespace KivPrivate;

// The ways of composing a gauge's layers, each compared with painting them one after the other.

namespace {

/// Values that layers are full of, and those between.
quint32 randomChannel(QRandomGenerator &random, quint32 most)
{
    switch (random.bounded(4)) {
    case 0:
        return 0;
    case 1:
        return most;
    default:
        return random.bounded(most + 1);
    }
}

QRgb randomPixel(QRandomGenerator &random)
{
    const quint32 alpha = randomChannel(random, 255);
    return qRgba(int(randomChannel(random, alpha)), int(randomChannel(random, alpha)),
                 int(randomChannel(random, alpha)), int(alpha));
}

/// Runs of equal alpha and single pixels, so that whole vectors are transparent or opaque, too.
QImage randomLayer(QRandomGenerator &random, QSize size)
{
    QImage layer(size, QImage::Format_ARGB32_Premultiplied);
    int left = 0;
    QRgb pixel = 0;
    for (int y = 0; y < size.height(); ++y) {
        auto *const row = reinterpret_cast<QRgb *>(layer.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            if (left == 0) {
                left = random.bounded(2) ? 1 : 1 + random.bounded(30);
                pixel = randomPixel(random);
            }
            --left;
            row[x] = pixel;
        }
    }
    return layer;
}

QImage paintedOneByOne(const QImage &background, const QImage &value, const QImage &mask)
{
    QImage image(background.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage(0, 0, background);
    painter.drawImage(0, 0, value);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, mask);
    return image;
}

const quint32 *rowOf(const QImage &image, int y)
{
    return reinterpret_cast<const quint32 *>(image.constScanLine(y));
}

} // namespace

class CompositionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWay_data();
    void everyWay();
    void onlyItsPixels_data();
    void onlyItsPixels();
    void fastestIsAvailable();
};

void CompositionTest::everyWay_data()
{
    QTest::addColumn<int>("index");
    const ComposeWays ways = composeWays();
    for (int i = 0; i < ways.count; ++i) {
        if (ways.first[i].isAvailable)
            QTest::newRow(ways.first[i].name) << i;
    }
}

void CompositionTest::everyWay()
{
    QFETCH(int, index);
    const ComposeWay &way = composeWays().first[index];
    QRandomGenerator random(20);
    for (int round = 0; round < 400; ++round) {
        const QSize size(1 + random.bounded(70), 1 + random.bounded(12));
        const QImage background = randomLayer(random, size);
        const QImage value = randomLayer(random, size);
        const QImage mask = randomLayer(random, size);
        QImage composed(size, QImage::Format_ARGB32_Premultiplied);
        composed.fill(Qt::red);
        for (int y = 0; y < size.height(); ++y) {
            way.compose(reinterpret_cast<quint32 *>(composed.scanLine(y)), rowOf(background, y),
                        rowOf(value, y), rowOf(mask, y), size.width());
        }
        QCOMPARE(composed, paintedOneByOne(background, value, mask));
    }
}

void CompositionTest::onlyItsPixels_data()
{
    everyWay_data();
}

void CompositionTest::onlyItsPixels()
{
    QFETCH(int, index);
    constexpr int most = 40;
    const quint32 layer[most] = {};
    for (int count = 0; count < most; ++count) {
        quint32 out[most + 1];
        std::fill(std::begin(out), std::end(out), 0x12345678U);
        composeWays().first[index].compose(out, layer, layer, layer, count);
        QCOMPARE(std::count(std::begin(out), std::end(out), 0U), count);
        QCOMPARE(out[count], 0x12345678U);
    }
}

void CompositionTest::fastestIsAvailable()
{
    const ComposeWays ways = composeWays();
    QVERIFY(ways.first[0].isAvailable);
    for (int i = ways.count - 1; i >= 0; --i) {
        if (ways.first[i].isAvailable) {
            QVERIFY(fastestCompose() == ways.first[i].compose);
            return;
        }
    }
}

QTEST_APPLESS_MAIN(CompositionTest)

#include "tst_composition.moc"
