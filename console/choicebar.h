// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QPaintEvent;
class QWidget;

/// Draws a bar at the bottom of the checked button @p button, from within its paint event: some
/// styles hardly show the difference.
void paintChoiceBar(QWidget *button);

/// A @p Button with a bar below its text while it is checked.
template <typename Button>
class ChoiceButton : public Button
{
public:
    using Button::Button;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        Button::paintEvent(event);
        if (this->isChecked())
            paintChoiceBar(this);
    }
};
