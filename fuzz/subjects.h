// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "bytes.h"

#include <QtCore/QByteArray>

#include <vector>

class QWidget;

/// A widget class as the fuzzer drives it.
struct Subject
{
    /// The class's name in lower case.
    QByteArray name;
    QWidget *(*make)(QWidget *parent);
    /// Calls one of the public methods that no property reaches.
    void (*call)(QWidget *widget, Bytes &bytes);
};

/// One for each widget of the catalogue.
std::vector<Subject> subjects();
/// The class of that name; null if there is none.
const Subject *subjectNamed(const char *name);
