// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtWidgets/QScrollArea>

#include <functional>
#include <vector>

class QGridLayout;
class QLabel;
class ValueEditor;

/// The properties of a widget in a list, each with an editor of its type; a property that cannot be
/// written is shown greyed. Those of the widget's own classes come first, class by class, then some
/// of QWidget's.
class PropertyEditor : public QScrollArea
{
    Q_OBJECT

public:
    /// Something that is edited like a property, by functions of its own.
    struct Setting
    {
        QString name;
        ValueEditor *editor; ///< owned by the list from here on
        std::function<QVariant()> read;
        std::function<void(const QVariant &)> write;
    };

    explicit PropertyEditor(QWidget *parent = nullptr);

    /// Lists @p settings under @p title, unless there are none, and then the properties of @p
    /// widget, which may be deleted at any time; null for none.
    void present(QWidget *widget, const QString &title = QString(),
                 const std::vector<Setting> &settings = {});

    /// The properties of @p widget in the order of the list, whether they apply now or not.
    static std::vector<QMetaProperty> propertiesOf(const QWidget *widget);

    /// Brings the editors to the present values, and shows those that apply now.
    void refresh();

    /// The names of what is listed, in its order.
    QStringList names() const;
    /// The editor of the property or setting @p name; null where there is none.
    ValueEditor *editor(const QString &name) const;

private:
    struct Row
    {
        QString name;
        QLabel *label;
        QWidget *field;      ///< the editor, or the text of a value that cannot be written
        ValueEditor *editor; ///< null for a value that cannot be written
        QVariant shown;
        std::function<QVariant()> read;
        std::function<bool()> applies;
    };

    void clear();
    void addHeading(const QString &title);
    void addRow(Row row, const QString &toolTip);
    void addSetting(const Setting &setting);
    void addProperty(const QMetaProperty &property);

    QPointer<QWidget> presented;
    QGridLayout *grid = nullptr;
    std::vector<Row> rows;
};
