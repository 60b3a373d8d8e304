// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "diagram.h"

#include "display.h"
#include "theme.h"

#include <QtCore/QCoreApplication>

namespace {

struct Ends
{
    Node from;
    Node to;
};

// In the order of Flow.
constexpr std::array<Ends, flowCount> ends = {{
    {Node::Mains, Node::Rectifier},
    {Node::Rectifier, Node::Inverter},
    {Node::Inverter, Node::Load},
    {Node::Rectifier, Node::Battery},
    {Node::Battery, Node::Inverter},
    {Node::Mains, Node::Bypass},
    {Node::Bypass, Node::Load},
}};

QString tr(const char *text)
{
    return QCoreApplication::translate("Diagram", text);
}

QString titleOf(Node node)
{
    switch (node) {
    case Node::Mains:
        return tr("Mains");
    case Node::Bypass:
        return nameOf(Element::Bypass);
    case Node::Rectifier:
        return nameOf(Element::Rectifier);
    case Node::Battery:
        return nameOf(Element::Battery);
    case Node::Inverter:
        return nameOf(Element::Inverter);
    case Node::Load:
        return nameOf(Element::Load);
    }
    return {};
}

/// How the mains are.
enum class Supply { Unknown, Present, OutOfLimits, Failed };

Supply supplyOf(const Snapshot &snapshot, const Reading &voltage)
{
    // A voltage this far below its scale's limits is none at all.
    constexpr double deadShare = 0.3;
    const Measure &measure = snapshot.measure(Quantity::InputVoltage);
    const double usual = measure.nominal.value_or(measure.low.value_or(0.0));
    if (voltage.state != Reading::State::Missing) {
        if (voltage.value <= usual * deadShare)
            return Supply::Failed;
        return voltage.outsideLimits ? Supply::OutOfLimits : Supply::Present;
    }
    if (snapshot.tokens & StatusToken::OnLine)
        return Supply::Present;
    const bool onBattery = snapshot.tokens & StatusToken::OnBattery;
    return onBattery && !(snapshot.tokens & StatusToken::Calibrating) ? Supply::Failed
                                                                      : Supply::Unknown;
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(Theme::separator().simplified().prepend(QLatin1Char(' ')) + QLatin1Char(' '));
}

/// What an element does, without how it is.
QString doingOf(Node node, const Snapshot &snapshot)
{
    const StatusTokens tokens = snapshot.tokens;
    const OperatingState operating = snapshot.element(Element::Inverter).operating;
    const auto stateOf = [&](Element element) { return snapshot.element(element).operating; };
    switch (node) {
    case Node::Rectifier:
        switch (stateOf(Element::Rectifier)) {
        case OperatingState::On:
            // What it does follows from the flows.
            return tr("Runs");
        case OperatingState::Precharge:
            return tr("Precharges");
        case OperatingState::Calibration:
            return tr("Calibrates");
        case OperatingState::WaitBatteryVoltage:
            return tr("Waits for the battery");
        case OperatingState::Unknown:
            return tr("State unknown");
        default:
            return tr("Off");
        }
    case Node::Inverter:
        switch (operating) {
        case OperatingState::On:
            return tr("Feeds the load");
        case OperatingState::OnBattery:
            return tr("Feeds from the battery");
        case OperatingState::Precharge:
        case OperatingState::Calibration:
        case OperatingState::WaitBatteryVoltage:
            return tr("Starts");
        case OperatingState::Unknown:
            return tr("State unknown");
        default:
            return tr("Off");
        }
    case Node::Battery:
        if (stateOf(Element::Battery) == OperatingState::OnBattery ||
            tokens & StatusToken::Discharging)
            return tr("Discharges");
        if (tokens & StatusToken::Charging)
            return tr("Charges");
        return stateOf(Element::Battery) == OperatingState::Unknown ? tr("State unknown")
                                                                    : tr("Ready");
    case Node::Bypass:
        if (snapshot.element(Element::Bypass).alarm != AlarmState::None &&
            stateOf(Element::Bypass) == OperatingState::StandBy)
            return tr("Not available");
        return stateOf(Element::Bypass) == OperatingState::OnBypass ||
                       stateOf(Element::Bypass) == OperatingState::On
                   ? tr("Feeds the load")
                   : tr("Ready");
    case Node::Load:
        switch (stateOf(Element::Load)) {
        case OperatingState::On:
            return tr("Fed");
        case OperatingState::OnBattery:
            return tr("Fed by the battery");
        case OperatingState::OnBypass:
            return tr("Fed, not protected");
        case OperatingState::Unknown:
            return tr("State unknown");
        default:
            return tr("Off");
        }
    case Node::Mains:
        break;
    }
    return {};
}

/// Why an element is not in order.
QString reasonOf(Node node, const Snapshot &snapshot, ElementState state, Supply supply)
{
    const StatusTokens tokens = snapshot.tokens;
    if (node == Node::Rectifier && supply == Supply::Failed)
        return tr("mains failed");
    if (node == Node::Rectifier && supply == Supply::OutOfLimits)
        return tr("mains out of limits");
    if (state.alarm == AlarmState::None)
        return {};
    if (tokens & StatusToken::Locked)
        return tr("locked");
    if (node == Node::Bypass && supply == Supply::Failed)
        return tr("mains failed");
    if (node == Node::Bypass && supply == Supply::OutOfLimits)
        return tr("out of limits");
    if (node == Node::Battery && tokens & StatusToken::ReplaceBattery)
        return tr("replace it");
    if (node == Node::Battery && tokens & StatusToken::LowBattery)
        return tr("nearly empty");
    if (node == Node::Battery && tokens & StatusToken::HighBattery)
        return tr("voltage high");
    if (node == Node::Load && tokens & StatusToken::Overload)
        return tr("overload");
    // A load without its usual feed is a warning that its caption says already.
    if (node == Node::Load && state.alarm == AlarmState::Warning &&
        (state.operating == OperatingState::OnBattery ||
         state.operating == OperatingState::OnBypass))
        return {};
    return nameOf(state.alarm).toLower();
}

/// @p doing in fewer words.
QString shortened(const QString &doing)
{
    const QPair<QString, QString> pairs[] = {
        {tr("Feeds from the battery"), tr("From the battery")},
        {tr("Fed, not protected"), tr("Not protected")},
        {tr("Waits for the battery"), tr("Waits for battery")},
    };
    for (const auto &[words, fewer] : pairs) {
        if (doing == words)
            return fewer;
    }
    return doing;
}

/// What an element does, and why it is not in order. Where there is little room, the reason goes
/// before the doing, which the lines show.
void describe(DiagramNode *node, const QString &doing, const QString &reason)
{
    node->caption = joined({doing, reason});
    node->shorter = QStringList{joined({shortened(doing), reason}),
                                reason.isEmpty() ? QString() : sentence(reason)};
    node->shorter.removeAll(QString());
}

DiagramNode mainsOf(const Snapshot &snapshot, Supply supply)
{
    DiagramNode mains;
    switch (supply) {
    case Supply::Present:
        mains.state = {AlarmState::None, OperatingState::On};
        mains.caption = tr("Present");
        break;
    case Supply::OutOfLimits:
        mains.state = {AlarmState::Warning, OperatingState::On};
        mains.caption = tr("Out of limits");
        break;
    case Supply::Failed:
        mains.state = {AlarmState::Fault, OperatingState::StandBy};
        mains.caption = tr("Failed");
        break;
    case Supply::Unknown:
        mains.state = {AlarmState::None, OperatingState::Unknown};
        mains.caption = tr("State unknown");
        break;
    }
    if (snapshot.tokens & StatusToken::Boosting)
        mains.caption = tr("Low, boosted");
    else if (snapshot.tokens & StatusToken::Trimming)
        mains.caption = tr("High, trimmed");
    return mains;
}

std::optional<Element> elementOf(Node node)
{
    switch (node) {
    case Node::Mains:
        return {};
    case Node::Bypass:
        return Element::Bypass;
    case Node::Rectifier:
        return Element::Rectifier;
    case Node::Battery:
        return Element::Battery;
    case Node::Inverter:
        return Element::Inverter;
    case Node::Load:
        return Element::Load;
    }
    return {};
}

/// The readings at an element that there are.
QStringList valuesOf(const UpsModel &ups, Node node, bool inverterFeeds)
{
    // The output is measured at the inverter only while it feeds the load.
    const QVector<Quantity> output = {Quantity::OutputVoltage, Quantity::OutputFrequency};
    const QVector<Quantity> shown[nodeCount] = {
        {Quantity::InputVoltage, Quantity::InputFrequency},
        {Quantity::BypassVoltage, Quantity::BypassFrequency},
        {},
        {Quantity::BatteryCharge, Quantity::BatteryVoltage},
        inverterFeeds ? output : QVector<Quantity>(),
        inverterFeeds
            ? QVector<Quantity>{Quantity::Load, Quantity::OutputPower, Quantity::OutputCurrent}
            : QVector<Quantity>{Quantity::OutputVoltage, Quantity::Load},
    };
    QStringList texts;
    for (const Quantity quantity : shown[int(node)]) {
        const Reading reading = ups.reading(quantity);
        if (reading.state != Reading::State::Missing && texts.size() < 2)
            texts.append(reading.text);
    }
    const bool expected = node == Node::Mains || node == Node::Load || node == Node::Battery;
    if (texts.isEmpty() && expected)
        texts.append(Values::noData());
    return texts;
}

/// Every element without communication. It is there if it is in @p before, which may be empty.
Diagram silentDiagram(const Diagram &before)
{
    Diagram diagram;
    const bool known = before.node(Node::Load).present;
    for (int i = 0; i < nodeCount; ++i) {
        DiagramNode &node = diagram.nodes[std::size_t(i)];
        node.title = titleOf(Node(i));
        node.present = known ? before.nodes[std::size_t(i)].present : Node(i) != Node::Bypass;
        node.state = {AlarmState::CommunicationLost, OperatingState::Unknown};
        node.caption = tr("No communication");
    }
    return diagram;
}

/// An element without its values.
DiagramNode nodeOf(Node which, const Snapshot &snapshot, Supply supply)
{
    DiagramNode node;
    if (const std::optional<Element> element = elementOf(which)) {
        node.state = snapshot.element(*element);
        describe(&node, doingOf(which, snapshot), reasonOf(which, snapshot, node.state, supply));
    } else {
        node = mainsOf(snapshot, supply);
    }
    // A bypass of which nothing is known is none.
    node.present = which != Node::Bypass || node.state.operating != OperatingState::Unknown ||
                   node.state.alarm != AlarmState::None;
    node.title = titleOf(which);
    return node;
}

std::array<bool, flowCount> flowsOf(const Snapshot &snapshot, Supply supply, bool hasBypass)
{
    const StatusTokens tokens = snapshot.tokens;
    const auto is = [&](Element element, OperatingState state) {
        return snapshot.element(element).operating == state;
    };
    const bool bypassed = is(Element::Bypass, OperatingState::OnBypass) ||
                          is(Element::Bypass, OperatingState::On) || tokens & StatusToken::Bypass;
    const bool fromBattery = is(Element::Inverter, OperatingState::OnBattery) ||
                             (tokens & StatusToken::Discharging && !bypassed);
    const bool inverts = is(Element::Inverter, OperatingState::On) ||
                         is(Element::Inverter, OperatingState::OnBattery);
    const bool fed =
        !is(Element::Load, OperatingState::StandBy) && !is(Element::Load, OperatingState::Unknown);
    const bool rectifies = is(Element::Rectifier, OperatingState::On) && supply != Supply::Failed;
    const bool charges = tokens & StatusToken::Charging && supply != Supply::Failed;
    const bool inverterFeeds = !bypassed && inverts && fed;
    const bool rectifierFeeds = inverterFeeds && !fromBattery && rectifies;

    std::array<bool, flowCount> flows = {};
    const auto set = [&](Flow flow, bool flowing) { flows[std::size_t(flow)] = flowing; };
    set(Flow::MainsToRectifier, charges || rectifierFeeds);
    set(Flow::RectifierToInverter, rectifierFeeds);
    set(Flow::InverterToLoad, inverterFeeds);
    set(Flow::RectifierToBattery, charges);
    set(Flow::BatteryToInverter, inverterFeeds && fromBattery);
    set(Flow::MainsToBypass, bypassed && hasBypass);
    set(Flow::BypassToLoad, bypassed && hasBypass && fed);
    return flows;
}

/// What a running rectifier does follows from the flows.
void describeFlowsOfRectifier(Diagram *diagram, const Snapshot &snapshot, Supply supply)
{
    DiagramNode &rectifier = diagram->nodes[std::size_t(Node::Rectifier)];
    const bool feeds = diagram->isFlowing(Flow::RectifierToInverter);
    const bool charges = diagram->isFlowing(Flow::RectifierToBattery);
    if (rectifier.state.operating != OperatingState::On || !(feeds || charges))
        return;
    const QString doing = feeds && charges ? tr("Feeds and charges")
                          : feeds          ? tr("Feeds")
                                           : tr("Charges");
    describe(&rectifier, doing, reasonOf(Node::Rectifier, snapshot, rectifier.state, supply));
}

void showValues(Diagram *diagram, const UpsModel &ups)
{
    const bool inverterFeeds = diagram->isFlowing(Flow::InverterToLoad);
    for (int i = 0; i < nodeCount; ++i) {
        DiagramNode &node = diagram->nodes[std::size_t(i)];
        const QStringList values = valuesOf(ups, Node(i), inverterFeeds);
        node.value = joined(values);
        node.shortValue = values.value(0);
    }
}

} // namespace

bool DiagramNode::operator==(const DiagramNode &other) const
{
    return present == other.present && state == other.state && title == other.title &&
           caption == other.caption && shorter == other.shorter && value == other.value &&
           shortValue == other.shortValue;
}

const DiagramNode &Diagram::node(Node which) const
{
    return nodes.at(std::size_t(which));
}

bool Diagram::isFlowing(Flow which) const
{
    return flows.at(std::size_t(which));
}

bool Diagram::operator==(const Diagram &other) const
{
    return nodes == other.nodes && flows == other.flows;
}

QString Diagram::flowText() const
{
    QStringList texts;
    for (int i = 0; i < flowCount; ++i) {
        if (flows[std::size_t(i)])
            texts.append(
                tr("%1 to %2")
                    .arg(titleOf(ends[std::size_t(i)].from), titleOf(ends[std::size_t(i)].to)));
    }
    return texts.isEmpty() ? tr("No energy flows") : texts.join(QStringLiteral(", "));
}

Diagram diagramOf(const UpsModel &ups, const Diagram &before)
{
    const Snapshot &snapshot = ups.snapshot();
    if (snapshot.isLost())
        return silentDiagram(before);

    const Supply supply = supplyOf(snapshot, ups.reading(Quantity::InputVoltage));
    Diagram diagram;
    for (int i = 0; i < nodeCount; ++i)
        diagram.nodes[std::size_t(i)] = nodeOf(Node(i), snapshot, supply);
    diagram.flows = flowsOf(snapshot, supply, diagram.node(Node::Bypass).present);
    describeFlowsOfRectifier(&diagram, snapshot, supply);
    showValues(&diagram, ups);
    return diagram;
}
