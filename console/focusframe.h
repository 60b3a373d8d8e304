// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QFocusFrame>

/// A frame around the widget that has the focus, while the keyboard is used.
class FocusFrame : public QFocusFrame
{
    Q_OBJECT

public:
    /// Follows the focus inside of @p window.
    explicit FocusFrame(QWidget *window);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void follow(QWidget *focused);

    QWidget *window;
};
