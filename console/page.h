// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

/// One page of the console.
class Page : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows @p model from now on, and gives it the page's commands; null: nothing any more. What
    /// the UPS does not support is not offered.
    void setModel(UpsModel *model);
    /// Takes the theme's new scale, after the fonts of its labels have followed. Here: nothing.
    virtual void applyScale();
    /// Shows the model's present state again.
    void refresh();

protected:
    /// Brings everything on the page to the state of @p ups; nothing older is left standing.
    virtual void showUps(const UpsModel &ups) = 0;
    /// Enables and disables the page's controls after a change of what the UPS supports.
    virtual void offerCommands();
    /// For pages that follow more of @p model, which may be null, than its state. Here: nothing.
    virtual void followModel(UpsModel *model);

    bool supports(Command command) const;
    void give(Command command);

private:
    QPointer<UpsModel> model;
};
