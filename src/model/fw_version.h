/** The version of the firmware on the radio module, as far as this device knows it. */
#pragma once

#include <string>

/**
 * Resolves the radio firmware's version, and remembers it when it changed.
 *
 * The version in the secure storage decides, unless the smart-home hub has firmware metadata: then the hub's
 * installed image decides. When nothing is stored, the sibling application's factory image does. A changed
 * version is stored and mirrored with `store_version`. The secure storage's files are given to the device's
 * owner every time.
 *
 * @return three numbers joined by ".", or empty when the deciding image has none.
 */
std::string GetVersion();

/** Writes the version to the sibling application's file "fw_version", owned by the device's owner. */
void store_version(const std::string& version);
