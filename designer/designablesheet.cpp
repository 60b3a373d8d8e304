// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "designablesheet.h"

#include "designable.h"

#include <aerogroupbox.h>

#include <QtCore/QMetaProperty>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QExtensionManager>

DesignableSheet::DesignableSheet(QWidget *shown, QObject *designersOwn, QObject *parent)
    : QObject(parent)
    , widget(shown)
    , own(qobject_cast<QDesignerPropertySheetExtension *>(designersOwn))
{}

int DesignableSheet::count() const
{
    return own->count();
}

int DesignableSheet::indexOf(const QString &name) const
{
    return own->indexOf(name);
}

QString DesignableSheet::propertyName(int index) const
{
    return own->propertyName(index);
}

QString DesignableSheet::propertyGroup(int index) const
{
    return own->propertyGroup(index);
}

void DesignableSheet::setPropertyGroup(int index, const QString &group)
{
    own->setPropertyGroup(index, group);
}

bool DesignableSheet::hasReset(int index) const
{
    return own->hasReset(index);
}

bool DesignableSheet::reset(int index)
{
    return own->reset(index);
}

bool DesignableSheet::isVisible(int index) const
{
    return own->isVisible(index);
}

void DesignableSheet::setVisible(int index, bool visible)
{
    own->setVisible(index, visible);
}

bool DesignableSheet::isAttribute(int index) const
{
    return own->isAttribute(index);
}

void DesignableSheet::setAttribute(int index, bool attribute)
{
    own->setAttribute(index, attribute);
}

QVariant DesignableSheet::property(int index) const
{
    return own->property(index);
}

void DesignableSheet::setProperty(int index, const QVariant &value)
{
    own->setProperty(index, value);
}

bool DesignableSheet::isChanged(int index) const
{
    return own->isChanged(index);
}

void DesignableSheet::setChanged(int index, bool changed)
{
    own->setChanged(index, changed);
}

bool DesignableSheet::isEnabled(int index) const
{
    const int known =
        widget->metaObject()->indexOfProperty(propertyName(index).toLatin1().constData());
    return own->isEnabled(index) &&
           (known < 0 || isDesignable(*widget, widget->metaObject()->property(known)));
}

void DesignableSheetFactory::registerWith(QDesignerFormEditorInterface *editor)
{
    QExtensionManager *manager = editor->extensionManager();
    manager->registerExtensions(new DesignableSheetFactory(manager),
                                Q_TYPEID(QDesignerPropertySheetExtension));
}

QObject *DesignableSheetFactory::createExtension(QObject *object, const QString &iid,
                                                 QObject *parent) const
{
    auto *box = qobject_cast<AeroGroupbox *>(object);
    if (!box || askingOthers)
        return nullptr;
    // The manager asks this factory first, too, when it looks for Designer's own sheet.
    askingOthers = true;
    QObject *own = extensionManager()->extension(object, iid);
    askingOthers = false;
    return own ? new DesignableSheet(box, own, parent) : nullptr;
}
