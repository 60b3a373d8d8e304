// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtWidgets/QFrame>

class ElidedLabel;
class MetroSysIcon;
class QLabel;

/// The state of a UPS in one line, on every page: how bad by colour, shape and words, the worst
/// present condition, since when, and the time left where it means something.
class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *parent = nullptr);

    void showUps(const UpsModel &ups);
    /// Shows a whole site: @p headline in the style of @p severity, over @p detail.
    void showSite(Severity severity, const QString &headline, const QString &detail);
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
    ElidedLabel *headline;
    ElidedLabel *detail;
    QLabel *timeName;
    QLabel *time;
};

/// The present conditions of @p ups that its headline does not say already, the worst first, and
/// since when that one is: "Battery low 21 % · since 14:03:22 · Overload".
QString conditionText(const UpsModel &ups);
