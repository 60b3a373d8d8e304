#pragma once

#include "bytes.h"

#include <vector>

class QWidget;

/// A widget class as the fuzzer drives it.
struct Subject
{
    /// The class's name in lower case.
    const char *name;
    QWidget *(*make)(QWidget *parent);
    /// Calls one of the public methods that no property reaches.
    void (*call)(QWidget *widget, Bytes &bytes);
};

const std::vector<Subject> &subjects();
/// The class of that name; null if there is none.
const Subject *subjectNamed(const char *name);
