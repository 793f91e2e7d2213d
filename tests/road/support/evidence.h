/** What a failed test leaves behind for whoever looks into it. */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

constexpr auto last_picture = "/tmp/last_picture.png";

/**
 * Keeps the logs of the station, other files and the keys pressed in build/failures/SUITE.TEST of the test
 * that runs; what was kept of an earlier failure of it goes.
 *
 * @param files those that are there are kept.
 * @param keys  the keys pressed, in order.
 * @return that folder.
 */
std::filesystem::path keep_evidence(const std::vector<std::filesystem::path>& files,
                                    const std::vector<std::string>& keys);
