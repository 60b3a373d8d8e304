// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetcollection.h"

#include "customwidget.h"

WidgetCollection::WidgetCollection(QObject *parent)
    : QObject(parent)
{
    for (const WidgetDescription &description : widgetCatalogue())
        widgets.append(new CustomWidget(description, this));
}

QList<QDesignerCustomWidgetInterface *> WidgetCollection::customWidgets() const
{
    return widgets;
}
