// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QWidget;

// What the pages of the documentation show, each on a page of its own.

void showAero(QWidget *page);
void showGauges(QWidget *page);
void showApplication(QWidget *page);
void showMetro(QWidget *page);
void showStates(QWidget *page);
void showSwitches(QWidget *page);

class MetroCirclerate;
class QVBoxLayout;

// Pieces of the page on using the widgets.
void addDial(QVBoxLayout *layout);
void showMissingValue(MetroCirclerate *dial);
void showFocus(QWidget *window);
void scaleOnDenseScreens(); // on Qt 5
