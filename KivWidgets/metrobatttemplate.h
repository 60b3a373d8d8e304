// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtCore/QSize>

class QPainter;
class QPixmap;
class QWidget;

/// The battery images, one for each state colour, shared by all battery widgets of the process.
///
/// The first battery widget loads them, in the GUI thread. They stay loaded until the process ends.
class KIVWIDGETS_EXPORT MetroBattTemplate : public MetroStyle
{
public:
    /// @p owner is the widget that derives from this class.
    explicit MetroBattTemplate(QWidget *owner);
    ~MetroBattTemplate() override;

    /// Paints the battery of the present state at the origin, at its own size. Writes an error line
    /// if the images are not loaded.
    void paintBase(QPainter *painter);

    /// The size of a battery image in pixels; 22 x 22 before they are loaded.
    QSize getBackGroundSize();

protected:
    /// The images, indexed by getColorIdx().
    static QPixmap *background[7];
    static bool initialized;
};
