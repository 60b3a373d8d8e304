// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "elidedlabel.h"
#include "model/severity.h"

#include <optional>

/// A text that may have a severity: then its sign stands before it, and both are in its colours.
class SignLabel : public ElidedLabel
{
    Q_OBJECT

public:
    /// @p plainPlate is behind a text without severity; invalid: nothing is.
    explicit SignLabel(const QColor &plainPlate, QWidget *parent = nullptr);

    void setMessage(const QString &text, std::optional<Severity> severity);
    std::optional<Severity> severity() const;
    /// Takes the scale of the theme.
    void applyScale();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QColor plain;
    std::optional<Severity> shown;
};
