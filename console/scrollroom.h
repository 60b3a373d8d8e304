// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QScrollArea>

/// Lets @p area scroll by finger, with a flick too.
void scrollByFinger(QAbstractScrollArea *area);

/// Room for a page's content, which fills it, and which scrolls where the room is too low: by
/// wheel, by finger, and to whatever takes the focus.
class ScrollRoom : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollRoom(QWidget *parent = nullptr);

    /// The parent of the content's widgets.
    QWidget *content() const;

    QSize minimumSizeHint() const override;
};
