// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "promanswer.h"

#include "nutmapping.h"
#include "plaintext.h"

#include <QtCore/QStringList>

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using simdjson::SUCCESS;
using simdjson::dom::array;
using simdjson::dom::element;
/// Something of a document, or that it is not there.
using Found = simdjson::simdjson_result<element>;

constexpr int longestText = 200;

QString shortText(const QString &text)
{
    return plainText(text, longestText);
}

/// Empty for all that is not a text.
QString textOf(const Found &json)
{
    constexpr std::size_t mostBytes = 16 * longestText;
    std::string_view text;
    if (json.get(text) != SUCCESS)
        return QString();
    return shortText(QString::fromUtf8(text.data(), int(std::min(text.size(), mostBytes))));
}

bool isText(const Found &json, std::string_view text)
{
    std::string_view given;
    return json.get(given) == SUCCESS && given == text;
}

/// A value is a string: a number, "NaN", "+Inf" or "-Inf".
std::optional<double> valueOf(std::string_view text)
{
    if (text == "NaN")
        return std::numeric_limits<double>::quiet_NaN();
    if (text == "+Inf" || text == "-Inf")
        return std::copysign(std::numeric_limits<double>::infinity(), text[0] == '-' ? -1.0 : 1.0);
    return nutNumber(text);
}

std::optional<QPointF> sampleOf(const element &json)
{
    array pair;
    double seconds = 0.0;
    std::string_view text;
    if (json.get(pair) != SUCCESS || pair.size() != 2 || pair.at(0).get(seconds) != SUCCESS ||
        pair.at(1).get(text) != SUCCESS)
        return std::nullopt;
    const std::optional<double> value = valueOf(text);
    if (!value)
        return std::nullopt;
    return QPointF(seconds, *value);
}

/// The samples of a series of a range, or the only one of an instant.
bool takeSamples(const element &json, QVector<QPointF> *samples)
{
    array list;
    if (json["values"].get(list) != SUCCESS) {
        element single;
        if (json["value"].get(single) != SUCCESS)
            return false;
        const std::optional<QPointF> sample = sampleOf(single);
        samples->append(sample.value_or(QPointF()));
        return sample.has_value();
    }
    if (list.size() == 0 || list.size() > PromAnswer::maxSamples)
        return false;
    samples->reserve(int(list.size()));
    for (const element one : list) {
        const std::optional<QPointF> sample = sampleOf(one);
        if (!sample)
            return false;
        samples->append(*sample);
    }
    return true;
}

QString reasonFor(int code, const Found &json, const QByteArray &body)
{
    const QString error = textOf(json["error"]);
    if (!error.isEmpty())
        return QStringLiteral("it refuses the query: ") + error;
    // Such as "Client sent an HTTP request to an HTTPS server."
    const QString said = shortText(QString::fromUtf8(body.left(4 * longestText)).trimmed());
    const QString line = QStringLiteral("it answers HTTP %1").arg(code);
    return said.isEmpty() || said.startsWith(QLatin1Char('<')) || said.startsWith(QLatin1Char('{'))
               ? line
               : line + QStringLiteral(": ") + said;
}

bool takeSeries(const array &json, const QStringList &labels, QVector<PromSeries> *all)
{
    std::vector<std::string> names;
    for (const QString &label : labels)
        names.push_back(label.toStdString());
    all->reserve(int(json.size()));
    for (const element one : json) {
        PromSeries series;
        series.labels.reserve(int(names.size()));
        const Found given = one["metric"];
        for (const std::string &name : names)
            series.labels.append(textOf(given[name]));
        if (!takeSamples(one, &series.samples))
            return false;
        all->append(std::move(series));
    }
    return true;
}

QString warningsOf(const Found &json)
{
    constexpr int most = 3;
    QStringList warnings;
    array given;
    if (json.get(given) == SUCCESS) {
        for (const element warning : given) {
            if (warnings.size() < most)
                warnings += textOf(Found(element(warning)));
        }
    }
    return warnings.join(QStringLiteral(", "));
}

} // namespace

PromAnswer PromAnswer::parse(int code, const QByteArray &body, const QStringList &labels)
{
    PromAnswer answer;
    if (body.size() > maxBytes) {
        answer.problem = QStringLiteral("its answer is too long");
        return answer;
    }
    // What is two bytes there takes many here.
    const auto parts = std::count_if(body.cbegin(), body.cend(),
                                     [](char c) { return c == '[' || c == '{' || c == ','; });
    if (parts > maxParts) {
        answer.problem = QStringLiteral("its answer has too many series");
        return answer;
    }
    simdjson::dom::parser parser;
    const Found json = parser.parse(body.constData(), std::size_t(body.size()));
    constexpr int good = 200;
    if (code != good) {
        answer.problem = reasonFor(code, json, body);
        return answer;
    }
    const Found data = json["data"];
    array result;
    const bool isList =
        isText(data["resultType"], "vector") || isText(data["resultType"], "matrix");
    if (!isText(json["status"], "success") || !isList) {
        answer.problem = QStringLiteral("its answer is not understood");
        return answer;
    }
    // A server may leave out an empty list.
    const bool isFilled = data["result"].get(result) == SUCCESS && result.size() > 0;
    if (isFilled && result.size() > maxSeries) {
        answer.problem = QStringLiteral("its answer has too many series");
        return answer;
    }
    if (isFilled && !takeSeries(result, labels, &answer.series)) {
        answer.series.clear();
        answer.problem = QStringLiteral("its answer is not understood");
        return answer;
    }
    answer.warnings = warningsOf(json["warnings"]);
    answer.succeeded = true;
    return answer;
}
