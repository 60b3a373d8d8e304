// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <vector>

struct WidgetDescription;

/// A widget in all its states at once, live, each under its caption. Disabled, pressed and focused
/// widgets follow where they look different; a line at the foot names those that do not.
class StateSheet : public QWidget
{
    Q_OBJECT

public:
    static constexpr int gap = 14; ///< between cells, and around them

    explicit StateSheet(const WidgetDescription &description, QWidget *parent = nullptr);

    /// The captions of the cells, in their order.
    QStringList captions() const;
    /// What is written at the foot; empty where there is nothing to say.
    QString remark() const;
    bool hasHeightForWidth() const override;
    /// As wide as the widest cell.
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Cell
    {
        QString caption;
        QWidget *widget;
        bool beginsRow;
    };

    int captionHeight() const;
    int layOut(int width, bool move) const;

    std::vector<Cell> cells;
    QString foot;
    bool needsLight;
};
