// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class ConsoleWindow;
class QString;
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
LiveScreenshots takeLiveScreenshots(ConsoleWindow &window, SiteModel &site, const Options &options,
                                    QString *error);
