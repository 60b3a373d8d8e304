// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sample.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

namespace {

// A packed sample: milliseconds within its minute, quantity, value.
constexpr int timeBytes = 2;
constexpr int packedBytes = timeBytes + 1 + 4;

quint32 bitsOf(float value)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float valueOf(quint32 bits)
{
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

auto order(const Sample &sample)
{
    return std::make_tuple(sample.at, sample.quantity, bitsOf(sample.value));
}

} // namespace

qint64 floorTo(qint64 at, qint64 step)
{
    const qint64 rest = at % step;
    return at - (rest < 0 ? rest + step : rest);
}

bool Sample::isGap() const
{
    return std::isnan(value);
}

bool operator==(const Sample &a, const Sample &b)
{
    return order(a) == order(b);
}

void putInOrder(QVector<Sample> *samples)
{
    std::sort(samples->begin(), samples->end(),
              [](const Sample &a, const Sample &b) { return order(a) < order(b); });
    samples->erase(std::unique(samples->begin(), samples->end()), samples->end());
}

QByteArray packed(const QVector<Sample> &samples, qint64 minute)
{
    QByteArray bytes(int(samples.size()) * packedBytes, Qt::Uninitialized);
    char *place = bytes.data();
    for (const Sample &sample : samples) {
        qToLittleEndian(quint16(sample.at - minute), place);
        place[timeBytes] = char(sample.quantity);
        qToLittleEndian(bitsOf(sample.value), place + timeBytes + 1);
        place += packedBytes;
    }
    return bytes;
}

QVector<Sample> unpacked(const QByteArray &bytes, qint64 minute)
{
    QVector<Sample> samples;
    samples.reserve(bytes.size() / packedBytes);
    const char *place = bytes.constData();
    for (const char *end = place + bytes.size(); end - place >= packedBytes; place += packedBytes) {
        const int offset = qFromLittleEndian<quint16>(place);
        const int quantity = quint8(place[timeBytes]);
        const float value = valueOf(qFromLittleEndian<quint32>(place + timeBytes + 1));
        if (offset < minuteMsecs && quantity < quantityCount && !std::isinf(value))
            samples.append({minute + offset, Quantity(quantity), value});
    }
    return samples;
}

bool operator==(const Rollup &a, const Rollup &b)
{
    return a.low == b.low && a.high == b.high && a.mean == b.mean && a.covered == b.covered;
}

std::optional<Rollup> rollUp(const QVector<Sample> &samples, qint64 end)
{
    std::optional<Rollup> result;
    double sum = 0.0;
    for (int i = 0; i < samples.size(); ++i) {
        const Sample &sample = samples.at(i);
        if (sample.isGap())
            continue;
        const auto value = double(sample.value);
        const qint64 until = i + 1 < samples.size() ? samples.at(i + 1).at : end;
        const qint64 time = std::max<qint64>(until - sample.at, 0);
        if (!result)
            result = Rollup{value, value, value, 0};
        result->low = std::min(result->low, value);
        result->high = std::max(result->high, value);
        result->covered += time;
        sum += value * double(time);
    }
    // Rounding may lead out of what was measured.
    if (result && result->covered > 0)
        result->mean = std::clamp(sum / double(result->covered), result->low, result->high);
    return result;
}

std::optional<Rollup> rollUp(const QVector<Rollup> &parts)
{
    std::optional<Rollup> result;
    double sum = 0.0;
    for (const Rollup &part : parts) {
        if (!result)
            result = Rollup{part.low, part.high, part.mean, 0};
        result->low = std::min(result->low, part.low);
        result->high = std::max(result->high, part.high);
        result->covered += part.covered;
        sum += part.mean * double(part.covered);
    }
    if (result && result->covered > 0)
        result->mean = std::clamp(sum / double(result->covered), result->low, result->high);
    return result;
}
