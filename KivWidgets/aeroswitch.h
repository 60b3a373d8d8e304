// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerobutton.h"

/// A checkable AeroButton whose panel takes the `highlight` colour in place of `color` while
/// checked.
///
/// Both looks are cached, so that a change of the checked state by a click or by setChecked() only
/// shows the other image. What drops the button's image drops both, with two exceptions:
/// `colorText` and `bold` drop the unchecked image only, `highlight` the checked one only.
///
/// Size and `&` are as in AeroButton: 120 x 40 pixels suit a short text.
class KIVWIDGETS_EXPORT AeroSwitch : public AeroButton
{
    Q_OBJECT
    Q_PROPERTY(QColor highlight READ getHighlight WRITE setHighlight)

public:
    explicit AeroSwitch(QWidget *parent = nullptr);
    ~AeroSwitch() override;

    /// Panel colour while checked. Default: Qt::lightGray. A change rebuilds the checked image.
    QColor getHighlight() const;
    void setHighlight(const QColor &highlight);

    /// Checks the switch, rebuilds both images and repaints at once; does nothing if it is
    /// checked. These three emit toggled(), but not clicked().
    void selectSwitch();
    /// Unchecks the switch in the same way; does nothing if it is unchecked.
    void unselectSwitch();
    /// Toggles the switch in the same way.
    void clickedSwitch();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    void createImages();
    void paintImagePressed();

    QColor highlight;
    QImage *imagePressed;
};
