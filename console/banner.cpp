// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "banner.h"

#include "countlabel.h"
#include "display.h"
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

/// Whether @p headline says @p text, which is that of @p condition. What the UPS words itself is
/// never taken for a part of it.
bool isSaid(const QString &text, const Condition &condition, const Headline &headline)
{
    if (condition.id.startsWith(QLatin1String("alarm:")))
        return text.compare(headline.text, Qt::CaseInsensitive) == 0;
    // In other words, too.
    if (condition.id == QLatin1String("bypass") && headline.protection == Protection::NotProtected)
        return true;
    return headline.text.contains(text, Qt::CaseInsensitive);
}

} // namespace

QString sinceText(const UpsModel &ups)
{
    const Condition *worst = ups.worst();
    return worst && worst->since.isValid() ? Banner::tr("since %1")
                                                 .arg(momentText(worst->since.toMSecsSinceEpoch(),
                                                                 QDateTime::currentDateTime()))
                                           : QString();
}

QStringList conditionTexts(const UpsModel &ups)
{
    QStringList texts;
    for (const Condition &condition : ups.conditions()) {
        const QString prefix = ups.headline().text + QStringLiteral(": ");
        QString text = condition.text;
        // "No communication: reason" below "No communication" is the reason.
        if (ups.snapshot().isLost() && text.startsWith(prefix))
            text = sentence(text.mid(prefix.size()));
        // The headline says it already, but not since when.
        if (isSaid(text, condition, ups.headline()))
            text.clear();
        else if (!condition.valueText.isEmpty())
            text += QLatin1Char(' ') + condition.valueText;
        texts.append(text);
    }
    return texts;
}

Banner::Banner(QWidget *parent)
    : QFrame(parent)
    , system(new MetroSysIcon(this))
    , sign(new QLabel(this))
    , headline(new CountLabel(this))
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
    constexpr int besideTime = 4;
    time->setContentsMargins(besideTime, 0, besideTime, 0);
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
    // A plate of its own, not a part of the banner's.
    layout->addWidget(time, 0, Qt::AlignVCenter);
    applyLook();
}

void Banner::showSite(Severity newSeverity, const QVector<SiteCount> &counts,
                      const QString &newDetail)
{
    ofSite = true;
    severity = newSeverity;
    timeIsLow = false;
    headline->setCounts(counts);
    if (counts.isEmpty())
        headline->setText(tr("No UPS is known yet"));
    detail->setText(newDetail);
    time->setText(QString());
    sign->setToolTip(nameOf(severity));
    sign->setAccessibleName(nameOf(severity));
    setAccessibleName(nameOf(severity) + QStringLiteral(": ") + headline->text());
    showParts();
    applyLook();
}

void Banner::showUps(const UpsModel &ups)
{
    ofSite = false;
    system->setState(shownState(ups.snapshot().system));
    headline->setCounts({});
    headline->setText(ups.headline().text);
    QStringList parts = conditionTexts(ups);
    if (!parts.isEmpty())
        parts.insert(1, sinceText(ups));
    parts.removeAll(QString());
    QString below = parts.join(Theme::separator());
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
    // Nothing of the headline is cut for what goes without saying: the figure's name gives way
    // first, then the image of the UPS.
    const QMargins around = layout()->contentsMargins();
    const int spacing = layout()->spacing();
    const int text =
        QFontMetrics(Theme::font(Theme::Large, true)).horizontalAdvance(headline->text());
    int room = width() - around.left() - around.right() - sign->sizeHint().width() - spacing -
               (timed ? time->sizeHint().width() + spacing : 0);
    const auto showIfRoom = [&](QWidget *part, bool wanted, int least, int partWidth) {
        const bool shown =
            wanted && width() >= Theme::px(least) && text + partWidth + spacing <= room;
        part->setVisible(shown);
        if (shown)
            room -= partWidth + spacing;
    };
    constexpr int roomForName = 560;
    constexpr int roomForIcon = 420;
    showIfRoom(system, !ofSite, roomForIcon, system->width());
    showIfRoom(timeName, timed, roomForName, timeName->sizeHint().width());
    detail->setVisible(!detail->text().isEmpty());
    // Rather small than cut; counts have forms of their own.
    const auto fits = [room](const QString &words, Theme::TextSize size, bool bold) {
        const QFontMetrics metrics(Theme::font(size, bold));
        return metrics.elidedText(words, Qt::ElideRight, room) == words;
    };
    Theme::TextSize size = Theme::Large;
    for (const Theme::TextSize smaller : {Theme::Normal, Theme::Small}) {
        if (!ofSite && !fits(headline->text(), size, true))
            size = smaller;
    }
    Theme::setText(headline, size, true);
    Theme::setText(detail, fits(detail->text().simplified(), Theme::Normal, false) ? Theme::Normal
                                                                                   : Theme::Small);
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
    const int lines = QFontMetrics(Theme::font(Theme::Large, true)).height() +
                      QFontMetrics(Theme::font(Theme::Normal)).height();
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
