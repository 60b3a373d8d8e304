// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtWidgets/QFrame>

class CountLabel;
class ElidedLabel;
class MetroSysIcon;
class QLabel;
struct SiteCount;

/// The state of a UPS in one line, on every page: how bad by colour, shape and words, the worst
/// present condition, since when, and the time left where it means something.
class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *parent = nullptr);

    void showUps(const UpsModel &ups);
    /// Shows a whole site: @p counts, or that there is nothing yet, in the style of @p severity,
    /// over @p detail.
    void showSite(Severity severity, const QVector<SiteCount> &counts, const QString &detail);
    /// Takes the scale of the theme.
    void applyScale();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void applyLook();
    void showParts();

    Severity severity = Severity::Unknown;
    bool timeIsLow = false;
    bool ofSite = false;
    MetroSysIcon *system;
    QLabel *sign;
    QString drawnSign; ///< what its image depends on
    CountLabel *headline;
    ElidedLabel *detail;
    QLabel *timeName;
    QLabel *time;
};

/// The present conditions of @p ups, the worst first; empty where its headline says one already:
/// "Battery low 21 %", "Overload".
QStringList conditionTexts(const UpsModel &ups);
/// Since when the worst condition is present: "since 14:03:22"; empty without one.
QString sinceText(const UpsModel &ups);
