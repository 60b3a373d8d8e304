// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetcatalogue.h"

#include <QtGui/QIcon>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// One widget as Qt Designer sees it.
class CustomWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    CustomWidget(const WidgetDescription &shown, QObject *parent);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    /// Drawn by the widget itself.
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface *editor) override;
    QString domXml() const override;

private:
    const WidgetDescription &description;
    mutable QIcon drawnIcon;
    bool initialized = false;
};
