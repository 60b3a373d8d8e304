// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QApplication>

/// Informs the thread sanitizer about the order that Qt keeps between threads: Qt itself is not
/// instrumented, so the sanitizer sees neither its locks nor its posted events. Without the
/// sanitizer nothing of this does anything.
namespace ThreadAnnotations {

#ifdef __SANITIZE_THREAD__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

/// An application in which the delivery of an event comes after whatever its poster did before.
class Application : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override;
};

} // namespace ThreadAnnotations
