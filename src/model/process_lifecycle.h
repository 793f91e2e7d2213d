/** Configures and starts the radio host stack, which is part of another application on the television. */
#pragma once

#include <string>

/**
 * Selects the `cpcd` configuration for the serial speed of the radio firmware.
 *
 * @param version three numbers joined by "."; may be empty.
 * @return "cpcd_921600.conf" if the text after the last dot begins with a number of at least 9, else
 *         "cpcd_115200.conf"; an invalid number is logged.
 */
std::string get_cpcd_conf_name(const std::string& version);

/** Stops the radio stack and the application's main loop. */
void req_terminate_main_loop();

/**
 * Waits for the radio's serial device, starts `cpcd` and `socat`, waits for the link that `socat` creates, and starts
 * `zigbeed`. Stop an old stack first.
 *
 * @return 1 if all three were started; 0 if the link does not appear within 3 s (`cpcd` and `socat` are not stopped).
 * @throw std::runtime_error "wait condition error" if the serial device does not appear within 3 s. Before the
 *        throw, writes the failure report and stops the stack and the main loop.
 */
int prepare_background_app();
