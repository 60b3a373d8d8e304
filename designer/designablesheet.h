// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionFactory>

#include <QtCore/QPointer>

class QDesignerFormEditorInterface;
class QWidget;

/// A widget's property sheet that enables what acts on the widget's look in its present state; for
/// the rest it is Designer's own sheet.
class DesignableSheet : public QObject, public QDesignerPropertySheetExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerPropertySheetExtension)

public:
    DesignableSheet(QWidget *shown, QObject *designersOwn, QObject *parent);

    int count() const override;
    int indexOf(const QString &name) const override;
    QString propertyName(int index) const override;
    QString propertyGroup(int index) const override;
    void setPropertyGroup(int index, const QString &group) override;
    bool hasReset(int index) const override;
    bool reset(int index) override;
    bool isVisible(int index) const override;
    void setVisible(int index, bool visible) override;
    bool isAttribute(int index) const override;
    void setAttribute(int index, bool attribute) override;
    QVariant property(int index) const override;
    void setProperty(int index, const QVariant &value) override;
    bool isChanged(int index) const override;
    void setChanged(int index, bool changed) override;
    bool isEnabled(int index) const override;

private:
    QWidget *widget;
    QDesignerPropertySheetExtension *own;
};

/// Makes such sheets for the boxes, and leaves all else to the factories before it.
class DesignableSheetFactory : public QExtensionFactory
{
    Q_OBJECT

public:
    /// Registers a factory with @p editor, which owns it.
    static void registerWith(QDesignerFormEditorInterface *editor);

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;

private:
    using QExtensionFactory::QExtensionFactory;

    mutable bool askingOthers = false;
};
