// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

// A condition gets more time than Qt's five seconds, which may pass while the processors are busy.
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, 30000)
#undef QTRY_VERIFY
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 30000)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(condition, message) QTRY_VERIFY2_WITH_TIMEOUT(condition, message, 30000)

/// Fixes what images depend on: platform, style, font. Called before and after the application is
/// made.
void prepareTestEnvironment();
void prepareTestApplication();

/// The main function of a test program.
#define KIV_TEST_MAIN(TestClass)                                                                   \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        prepareTestEnvironment();                                                                  \
        QApplication application(argc, argv);                                                      \
        prepareTestApplication();                                                                  \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
