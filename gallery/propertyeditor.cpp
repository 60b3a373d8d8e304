// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "propertyeditor.h"

#include "designable.h"
#include "hostsetters.h"
#include "propertybounds.h"
#include "slimscrollbars.h"
#include "theme.h"
#include "valueeditor.h"

#include <QtCore/QMetaProperty>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace {

constexpr int nameColumnWidth = 112;

/// What of QWidget's own is worth a look in every widget.
constexpr const char *commonProperties[] = {"enabled", "font", "toolTip", "layoutDirection"};

QString textOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QSize:
        return QStringLiteral("%1 x %2").arg(value.toSize().width()).arg(value.toSize().height());
    case QMetaType::Bool:
        return value.toBool() ? PropertyEditor::tr("yes") : PropertyEditor::tr("no");
    default:
        return value.toString();
    }
}

} // namespace

PropertyEditor::PropertyEditor(QWidget *parent)
    : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    useSlimScrollBars(this);
    clear();
}

void PropertyEditor::present(QWidget *widget, const QString &title,
                             const std::vector<Setting> &settings)
{
    clear();
    presented = widget;
    if (!widget)
        return;
    if (!settings.empty())
        addHeading(title);
    for (const Setting &setting : settings)
        addSetting(setting);
    const QMetaObject *group = nullptr;
    for (const QMetaProperty &property : propertiesOf(widget)) {
        if (property.enclosingMetaObject() != group) {
            group = property.enclosingMetaObject();
            addHeading(QString::fromLatin1(group->className()));
        }
        addProperty(property);
    }
    // All spare height goes below the last row.
    grid->setRowStretch(grid->rowCount(), 1);
    refresh();
}

std::vector<QMetaProperty> PropertyEditor::propertiesOf(const QWidget *widget)
{
    std::vector<QMetaProperty> all;
    const auto add = [&](const QMetaProperty &property) {
        // A derived class's property hides one of the same name.
        const bool isHidden = std::any_of(all.begin(), all.end(), [&](const QMetaProperty &other) {
            return qstrcmp(other.name(), property.name()) == 0;
        });
        if (!isHidden && property.isReadable())
            all.push_back(property);
    };
    for (const QMetaObject *meta = widget->metaObject(); meta != &QWidget::staticMetaObject;
         meta = meta->superClass()) {
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
            add(meta->property(i));
    }
    const QMetaObject &common = QWidget::staticMetaObject;
    for (const char *name : commonProperties)
        add(common.property(common.indexOfProperty(name)));
    return all;
}

void PropertyEditor::refresh()
{
    if (!presented)
        return;
    for (Row &row : rows) {
        const bool applies = row.applies();
        row.label->setVisible(applies);
        row.field->setVisible(applies);
        const QVariant value = row.read();
        if (row.editor)
            row.editor->setValue(value);
        else
            static_cast<QLabel *>(row.field)->setText(textOf(value));
    }
}

QStringList PropertyEditor::names() const
{
    QStringList names;
    for (const Row &row : rows)
        names.append(row.name);
    return names;
}

ValueEditor *PropertyEditor::editor(const QString &name) const
{
    for (const Row &row : rows) {
        if (row.name == name)
            return row.editor;
    }
    return nullptr;
}

void PropertyEditor::clear()
{
    presented.clear();
    rows.clear();
    // Deletes the list before.
    setWidget(new QWidget);
    widget()->setAutoFillBackground(false);
    grid = new QGridLayout(widget());
    grid->setContentsMargins(Theme::margin, 0, Theme::margin, Theme::margin);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(5);
    grid->setColumnMinimumWidth(0, nameColumnWidth);
    grid->setColumnStretch(1, 1);
}

void PropertyEditor::addHeading(const QString &title)
{
    QLabel *heading = Theme::label(widget(), Theme::Normal, true, title);
    heading->setContentsMargins(0, Theme::spacing, 0, 2);
    grid->addWidget(heading, grid->rowCount(), 0, 1, 2);
}

void PropertyEditor::addRow(Row row, const QString &toolTip)
{
    const int place = grid->rowCount();
    row.label = Theme::label(widget(), Theme::Small, false, row.name);
    row.label->setToolTip(toolTip);
    row.field->setParent(widget());
    row.field->setObjectName(row.name);
    row.field->setFont(Theme::font(Theme::Small));
    row.label->setEnabled(row.editor);
    grid->addWidget(row.label, place, 0);
    grid->addWidget(row.field, place, 1);
    rows.push_back(std::move(row));
}

void PropertyEditor::addSetting(const Setting &setting)
{
    Row row;
    row.name = setting.name;
    row.editor = setting.editor;
    row.field = setting.editor;
    row.read = setting.read;
    row.applies = [] { return true; };
    connect(setting.editor, &ValueEditor::edited, this,
            [this, write = setting.write](const QVariant &value) {
                if (!presented)
                    return;
                write(value);
                refresh();
            });
    addRow(std::move(row), QString());
}

void PropertyEditor::addProperty(const QMetaProperty &property)
{
    const QString name = QString::fromLatin1(property.name());
    Row row;
    row.name = name;
    row.editor = nullptr;
    if (property.isWritable()) {
        row.editor =
            property.isEnumType()
                ? ValueEditor::create(property.enumerator())
                : ValueEditor::create(property.userType(), boundsOf(presented, property.name()));
    }
    row.field = row.editor;
    if (!row.editor) {
        row.field = new QLabel;
        row.field->setEnabled(false);
    }
    row.read = [this, property] { return property.read(presented); };
    row.applies = [this, property] { return presented && isDesignable(*presented, property); };
    if (row.editor) {
        connect(row.editor, &ValueEditor::edited, this, [this, property](const QVariant &value) {
            if (!presented)
                return;
            writeAsHost(presented, property, value);
            refresh();
        });
    }
    addRow(std::move(row), QString::fromLatin1(property.typeName()));
}
