// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QLabel>

/// A label for plain text that may be longer than its room: it wraps at words into as many lines as
/// it may have, and elides the last. text() stays whole, and so does the tool tip of an elided one.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// 1 unless set.
    void setLines(int lines);
    /// Where the last line is elided; at its end unless set.
    void setElideMode(Qt::TextElideMode mode);
    /// How many lines the present text takes in a label of @p width.
    int linesAt(int width) const;
    /// Whether the present text does not fit.
    bool isElided() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    /// The text in at most @p mostLines lines as they fit into @p width; @p isCut: that was not
    /// all.
    QStringList fitted(int width, int mostLines, bool *isCut = nullptr) const;

    int most = 1;
    Qt::TextElideMode mode = Qt::ElideRight;
};
