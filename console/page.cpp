// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "page.h"

void Page::setModel(UpsModel *newModel)
{
    if (model)
        model->disconnect(this);
    model = newModel;
    followModel(model);
    if (model) {
        connect(model, &UpsModel::changed, this, [this] { showUps(*model); });
        connect(model, &UpsModel::commandsChanged, this, [this] { offerCommands(); });
        showUps(*model);
    } else {
        showUps(UpsModel(QString()));
    }
    offerCommands();
}

bool Page::supports(Command command) const
{
    return model && model->supports(command);
}

void Page::give(Command command)
{
    // A refused command changes nothing: the page goes back to what is.
    if (model && !model->command(command) && model)
        showUps(*model);
}

void Page::refresh()
{
    if (model)
        showUps(*model);
}

void Page::applyScale()
{}

void Page::offerCommands()
{}

void Page::followModel(UpsModel *)
{}
