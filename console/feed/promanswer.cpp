// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "promanswer.h"

#include "nutmapping.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int longestText = 200;

QString shortText(const QString &text)
{
    return plainText(text, longestText);
}

/// A value is a string: a number, "NaN", "+Inf" or "-Inf".
std::optional<double> valueOf(const QJsonValue &json)
{
    if (!json.isString())
        return std::nullopt;
    const QString text = json.toString();
    if (text == QLatin1String("NaN"))
        return std::numeric_limits<double>::quiet_NaN();
    if (text == QLatin1String("+Inf") || text == QLatin1String("-Inf"))
        return std::copysign(std::numeric_limits<double>::infinity(),
                             text.startsWith(QLatin1Char('-')) ? -1.0 : 1.0);
    return nutNumber(text);
}

std::optional<QPointF> sampleOf(const QJsonValue &json)
{
    const QJsonArray pair = json.toArray();
    if (pair.size() != 2 || !pair.at(0).isDouble())
        return std::nullopt;
    const std::optional<double> value = valueOf(pair.at(1));
    if (!value)
        return std::nullopt;
    return QPointF(pair.at(0).toDouble(), *value);
}

std::optional<PromSeries> seriesOf(const QJsonObject &json, const QStringList &labels)
{
    PromSeries series;
    const QJsonObject given = json.value(QLatin1String("metric")).toObject();
    series.labels.reserve(int(labels.size()));
    for (const QString &label : labels)
        series.labels.append(shortText(given.value(label).toString()));
    const QJsonValue single = json.value(QLatin1String("value"));
    if (!single.isUndefined()) {
        const std::optional<QPointF> sample = sampleOf(single);
        if (!sample)
            return std::nullopt;
        series.samples.append(*sample);
        return series;
    }
    const QJsonArray samples = json.value(QLatin1String("values")).toArray();
    if (samples.isEmpty() || samples.size() > PromAnswer::maxSamples)
        return std::nullopt;
    series.samples.reserve(int(samples.size()));
    for (const QJsonValue &one : samples) {
        const std::optional<QPointF> sample = sampleOf(one);
        if (!sample)
            return std::nullopt;
        series.samples.append(*sample);
    }
    return series;
}

QString reasonFor(int code, const QJsonObject &json, const QByteArray &body)
{
    const QString error = shortText(json.value(QLatin1String("error")).toString());
    if (!error.isEmpty())
        return QStringLiteral("it refuses the query: ") + error;
    // Such as "Client sent an HTTP request to an HTTPS server."
    const QString said = shortText(QString::fromUtf8(body.left(4 * longestText)).trimmed());
    const QString line = QStringLiteral("it answers HTTP %1").arg(code);
    return said.isEmpty() || said.startsWith(QLatin1Char('<')) || said.startsWith(QLatin1Char('{'))
               ? line
               : line + QStringLiteral(": ") + said;
}

} // namespace

PromAnswer PromAnswer::parse(int code, const QByteArray &body, const QStringList &labels)
{
    PromAnswer answer;
    if (body.size() > maxBytes) {
        answer.problem = QStringLiteral("its answer is too long");
        return answer;
    }
    // Empty lists are a few bytes there, and many here.
    const auto parts =
        std::count_if(body.cbegin(), body.cend(), [](char c) { return c == '[' || c == '{'; });
    if (parts > maxParts) {
        answer.problem = QStringLiteral("its answer has too many series");
        return answer;
    }
    const QJsonDocument document = QJsonDocument::fromJson(body);
    const QJsonObject json = document.object();
    constexpr int good = 200;
    if (code != good) {
        answer.problem = reasonFor(code, json, body);
        return answer;
    }
    const QJsonObject data = json.value(QLatin1String("data")).toObject();
    const QString type = data.value(QLatin1String("resultType")).toString();
    const bool isList = type == QLatin1String("vector") || type == QLatin1String("matrix");
    if (json.value(QLatin1String("status")).toString() != QLatin1String("success") || !isList) {
        answer.problem = QStringLiteral("its answer is not understood");
        return answer;
    }
    const QJsonArray result = data.value(QLatin1String("result")).toArray();
    if (result.size() > maxSeries) {
        answer.problem = QStringLiteral("its answer has too many series");
        return answer;
    }
    answer.series.reserve(int(result.size()));
    for (const QJsonValue &one : result) {
        std::optional<PromSeries> series = seriesOf(one.toObject(), labels);
        if (!series) {
            answer.series.clear();
            answer.problem = QStringLiteral("its answer is not understood");
            return answer;
        }
        answer.series.append(std::move(*series));
    }
    QStringList warnings;
    const QJsonArray given = json.value(QLatin1String("warnings")).toArray();
    for (const QJsonValue &warning : given) {
        if (warnings.size() < 3)
            warnings += shortText(warning.toString());
    }
    answer.warnings = warnings.join(QStringLiteral(", "));
    answer.succeeded = true;
    return answer;
}
