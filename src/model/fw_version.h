/** Determines the version of the radio module's firmware. */
#pragma once

#include <string>

/**
 * Determines the radio firmware's version, and stores it if it changed.
 *
 * If the secure storage contains no version, reads the version of the factory firmware image. Otherwise, if the
 * smart-home hub has firmware metadata, reads the version of the hub's image. Otherwise returns the stored version. A
 * changed version is saved in the secure storage and with `store_version`. Every call gives the secure storage's files
 * to the device's owner.
 *
 * @return three numbers joined by ".", or empty if the image cannot be read or is too short.
 */
std::string GetVersion();

/** Writes the version to the file "fw_version", for other programs, and gives the file to the device's owner. */
void store_version(const std::string& version);
