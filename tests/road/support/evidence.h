/** What a failed test leaves behind for whoever looks into it. */
#pragma once

#include "operator/operator.h"

#include <filesystem>
#include <string>
#include <vector>

/** The screen as it is now, for `keep_evidence`. */
void take_last_picture(const station::Operator& from);

/**
 * Keeps the logs of the station and of the application, the last picture and the keys pressed in
 * build/failures/SUITE.TEST of the test that runs; what was kept of an earlier failure of it goes.
 *
 * @return that folder.
 */
std::filesystem::path keep_evidence(const std::filesystem::path& log, const std::vector<std::string>& keys);
