// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

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
