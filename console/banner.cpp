// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "banner.h"

#include "display.h"
#include "elidedlabel.h"
#include "pictograms.h"
#include "severitylook.h"
#include "theme.h"

#include <metrosysicon.h>

#include <QtCore/QEvent>
#include <QtCore/QVariant>
#include <QtGui/QIcon>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int heightUnits = 46;
constexpr int signUnits = 30;
constexpr int iconSide = 24;
constexpr int iconBorder = 6;

/// The time of day of an instant, with its day if that is not today.
QString since(const QDateTime &instant)
{
    const QDateTime local = instant.toLocalTime();
    const bool today = local.date() == QDate::currentDate();
    return local.toString(today ? QStringLiteral("HH:mm:ss") : QStringLiteral("d MMM HH:mm"));
}

} // namespace

QString conditionText(const UpsModel &ups)
{
    QStringList parts;
    for (const Condition &condition : ups.conditions()) {
        // The headline says it already, but not since when.
        const QString headline = ups.headline().text;
        QString text = condition.text;
        // "No communication: reason" below "No communication" is the reason.
        if (text.startsWith(headline + QStringLiteral(": ")))
            text = sentence(text.mid(headline.size() + 2));
        if (!headline.contains(text, Qt::CaseInsensitive))
            parts.append(condition.valueText.isEmpty()
                             ? text
                             : text + QLatin1Char(' ') + condition.valueText);
        if (&condition == &ups.conditions().constFirst() && condition.since.isValid())
            parts.append(Banner::tr("since %1").arg(since(condition.since)));
    }
    return parts.join(Theme::separator());
}

Banner::Banner(QWidget *parent)
    : QFrame(parent)
    , system(new MetroSysIcon(this))
    , sign(new QLabel(this))
    , headline(new ElidedLabel(this))
    , detail(new ElidedLabel(this))
    , timeName(Theme::label(this, Theme::Small, false, tr("time left")))
    , time(Theme::label(this, Theme::Figure, true))
{
    setObjectName(QStringLiteral("banner"));
    setAutoFillBackground(true);
    // An indicator, not a control.
    system->setObjectName(QStringLiteral("system"));
    system->setAccessibleName(tr("UPS"));
    system->setFocusPolicy(Qt::NoFocus);
    system->setAttribute(Qt::WA_TransparentForMouseEvents);
    system->setBorder(iconBorder);
    system->setRoundness(30);
    system->setIconSize(QSize(iconSide, iconSide));
    QIcon icon;
    addPictogram(&icon, Pictogram::Ups, iconSide, Qt::white);
    system->setIcon(icon);
    system->setFixedSize(iconSide + 2 * iconBorder, iconSide + 2 * iconBorder);
    sign->setObjectName(QStringLiteral("severity"));
    sign->setTextFormat(Qt::PlainText);
    headline->setObjectName(QStringLiteral("headline"));
    Theme::setText(headline, Theme::Large, true);
    detail->setObjectName(QStringLiteral("condition"));
    Theme::setText(detail, Theme::Normal);
    time->setObjectName(QStringLiteral("timeLeft"));
    time->setToolTip(tr("Time left on battery"));
    timeName->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(headline);
    texts->addWidget(detail);
    texts->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 0, 8, 0);
    layout->setSpacing(8);
    layout->addWidget(system);
    layout->addWidget(sign);
    layout->addLayout(texts, 1);
    layout->addWidget(timeName);
    layout->addWidget(time);
    applyLook();
}

void Banner::showSite(Severity newSeverity, const QString &newHeadline, const QString &newDetail)
{
    ofSite = true;
    severity = newSeverity;
    timeIsLow = false;
    headline->setText(newHeadline);
    detail->setText(newDetail);
    time->setText(QString());
    sign->setToolTip(nameOf(severity));
    sign->setAccessibleName(nameOf(severity));
    setAccessibleName(nameOf(severity) + QStringLiteral(": ") + newHeadline);
    showParts();
    applyLook();
}

void Banner::showUps(const UpsModel &ups)
{
    ofSite = false;
    system->setState(shownState(ups.snapshot().system));
    headline->setText(ups.headline().text);
    QString below = conditionText(ups);
    if (ups.snapshot().isLost() && !below.contains(ups.snapshot().reason, Qt::CaseInsensitive))
        below = sentence(ups.snapshot().reason) +
                (below.isEmpty() ? QString() : Theme::separator() + below);
    detail->setText(below);
    time->setText(ups.timeLeft());
    severity = worseOf(ups.severity(), ups.headline().severity);
    timeIsLow = ups.isTimeLeftLow();
    sign->setToolTip(nameOf(severity));
    sign->setAccessibleName(nameOf(severity));
    setAccessibleName(nameOf(severity) + QStringLiteral(": ") + ups.headline().text);
    showParts();
    applyLook();
}

void Banner::showParts()
{
    const bool timed = !time->text().isEmpty();
    time->setVisible(timed);
    // The figure's name gives way first, then the image of the UPS.
    constexpr int roomForName = 560;
    constexpr int roomForIcon = 420;
    timeName->setVisible(timed && width() >= Theme::px(roomForName));
    // Nothing of the headline is cut for it.
    const int around = layout()->contentsMargins().left() + layout()->contentsMargins().right();
    const int others = around + sign->sizeHint().width() + 4 * layout()->spacing() +
                       (timed ? time->sizeHint().width() : 0) + system->width();
    const int headlineWidth = headline->fontMetrics().horizontalAdvance(headline->text());
    system->setVisible(!ofSite && width() >= Theme::px(roomForIcon) &&
                       width() >= others + headlineWidth);
    detail->setVisible(!detail->text().isEmpty());
}

void Banner::applyLook()
{
    const SeverityLook look = lookOf(severity, Theme::isDark());
    QPalette colors = palette();
    if (colors.color(QPalette::Window) != look.plate ||
        colors.color(QPalette::WindowText) != look.ink) {
        colors.setColor(QPalette::Window, look.plate);
        colors.setColor(QPalette::WindowText, look.ink);
        setPalette(colors);
        for (QLabel *label :
             {static_cast<QLabel *>(headline), static_cast<QLabel *>(detail), timeName, time})
            label->setPalette(colors);
    }
    // Low time is inverted, so that it stands out on a plate of any colour.
    QPalette timeColors = colors;
    if (timeIsLow) {
        timeColors.setColor(QPalette::Window, Qt::white);
        timeColors.setColor(QPalette::WindowText, QColor(0xffb3131b));
    }
    time->setAutoFillBackground(timeIsLow);
    if (time->palette() != timeColors)
        time->setPalette(timeColors);
    const int side = Theme::px(signUnits);
    // The same image again would repaint.
    const QString drawn = QStringLiteral("%1 %2 %3")
                              .arg(int(severity))
                              .arg(side)
                              .arg(look.plate.name() + QString::number(devicePixelRatioF()));
    if (drawnSign != drawn) {
        drawnSign = drawn;
        sign->setPixmap(severitySign(severity, side, look.ink, look.plate, devicePixelRatioF()));
    }
}

void Banner::applyScale()
{
    applyLook();
    showParts();
    updateGeometry();
}

QSize Banner::sizeHint() const
{
    return {Theme::px(heightUnits) * 8, minimumSizeHint().height()};
}

QSize Banner::minimumSizeHint() const
{
    const int lines = headline->minimumSizeHint().height() + QFontMetrics(detail->font()).height();
    const int figure = QFontMetrics(time->font()).height();
    const int icon = iconSide + 2 * iconBorder;
    return {iconSide * 6, std::max({Theme::px(heightUnits), lines + 4, figure + 2, icon + 4})};
}

void Banner::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyLook();
    QFrame::changeEvent(event);
}

void Banner::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    showParts();
}
