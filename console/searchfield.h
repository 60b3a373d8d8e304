// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

class QLineEdit;
class QWidget;

/// A new field for words to search for, with a button that clears it. @p placeholder is shown while
/// it is empty.
QLineEdit *makeSearchField(const QString &placeholder, QWidget *parent);
