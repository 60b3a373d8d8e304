// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "keyhelp.h"

#include <QtGui/QPainter>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

KeyHelp::KeyHelp(const QVector<QPair<QString, QString>> &keys, QWidget *parent)
    : Card(parent)
{
    setObjectName(QStringLiteral("keyHelp"));
    setAccessibleName(tr("Keys"));
    auto *grid = new QGridLayout(this);
    constexpr int wide = 20;
    grid->setContentsMargins(wide, wide, wide, wide);
    grid->setHorizontalSpacing(wide);
    grid->addWidget(Theme::label(this, Theme::Large, true, tr("Keys")), 0, 0, 1, 2);
    for (const auto &[key, meaning] : keys) {
        const int row = grid->rowCount();
        grid->addWidget(Theme::label(this, Theme::Normal, true, key), row, 0);
        grid->addWidget(Theme::label(this, Theme::Normal, false, meaning), row, 1);
    }
    hide();
}

void KeyHelp::popUp()
{
    Theme::applyScale(this);
    layout()->activate();
    const QSize size = sizeHint().boundedTo(parentWidget()->size());
    setGeometry(QRect(QPoint((parentWidget()->width() - size.width()) / 2,
                             (parentWidget()->height() - size.height()) / 2),
                      size));
    raise();
    show();
}

void KeyHelp::mousePressEvent(QMouseEvent *)
{
    hide();
}

void KeyHelp::paintEvent(QPaintEvent *event)
{
    Card::paintEvent(event);
    // It lies upon other cards.
    QPainter painter(this);
    painter.setPen(QPen(Theme::accent(), 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}
