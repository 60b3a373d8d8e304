// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerobutton.h"

/// A checkable AeroButton whose panel has the `highlight` colour in place of `color` while it is
/// checked.
///
/// Both looks are cached, so a click or setChecked() only shows the other image. Whatever drops the
/// image of an AeroButton drops both images, with two exceptions: `colorText` and `bold` drop only
/// the unchecked image, and `highlight` only the checked one.
///
/// The switch has no size hint. Recommended minimum size: 80 x 32 pixels. An `&` in the text acts
/// as in AeroButton.
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

    /// Checks the switch, rebuilds both images and repaints at once. Does nothing if the switch is
    /// checked. Emits toggled(), but not clicked().
    void selectSwitch();
    /// Unchecks the switch in the same way. Does nothing if the switch is unchecked.
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
