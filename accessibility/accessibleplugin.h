// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QAccessiblePlugin>

/// Makes the accessible interfaces of the library's widgets. Qt finds it by the class names in its
/// meta data, for subclasses too.
class AccessiblePlugin : public QAccessiblePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QAccessibleFactoryInterface_iid FILE "kivwidgets.json")

public:
    using QAccessiblePlugin::QAccessiblePlugin;

    /// The interface of @p object as a widget of the class @p key; null for another object.
    QAccessibleInterface *create(const QString &key, QObject *object) override;
};
