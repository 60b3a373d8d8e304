// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>

#include <functional>

class QPainter;
class QWidget;

/// Images in tests: what a widget shows, what it should show, and how the two differ.

/// What @p widget itself shows, without the window behind it and without its children.
QImage imageOf(QWidget *widget);

/// What the screen shows of @p widget, which lies in a shown window, and what it should show: the
/// same part of the window painted from scratch.
QImage screenOf(QWidget *widget);
QImage repaintedScreenOf(QWidget *widget);

/// A transparent image of @p size in the format of all images here.
QImage emptyImage(QSize size);

/// An empty image drawn on by @p draw, with antialiasing set.
QImage drawnImage(QSize size, const std::function<void(QPainter *)> &draw);

/// @p source drawn whole at the origin of an empty image of its size with @p opacity.
QImage faded(const QImage &source, double opacity);

/// Empty when the images are equal to the last bit; else says how and where they differ first.
/// Both are saved in the directory named by KIV_TEST_IMAGES, if that is set.
QString differenceOf(const QImage &actual, const QImage &expected);

/// Fails the test where the images differ in any pixel.
#define COMPARE_IMAGES(actual, expected) QCOMPARE(differenceOf(actual, expected), QString())
