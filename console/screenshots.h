// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QStringList>

class ConsoleWindow;
class SiteModel;
class UpsModel;
struct Options;

/// Images of every page as PNG files; the path of each is printed.
/// @return false with the reason in @p error when a file cannot be written.

/// At the scenario instants of the options, or at some that show the most.
bool takeScenarioScreenshots(ConsoleWindow &window, UpsModel &ups, const Options &options,
                             QString *error);
/// How takeLiveScreenshots() ended: the files are there unless it failed; of no UPS, they show that
/// it is not reached.
enum class LiveScreenshots { Taken, OfNoUps, Failed };

/// Of the first data that the UPSes of @p site get, or of the lost communication when none come for
/// a while.
/// @p lines are for the operator: why it failed, or what is wrong with the site; may be empty.
LiveScreenshots takeLiveScreenshots(ConsoleWindow &window, SiteModel &site, const Options &options,
                                    QStringList *lines);
