/** The radio host stack of the sibling application: choosing its configuration and bringing it up. */
#pragma once

#include <string>

/**
 * Chooses the `cpcd` configuration of the serial speed that the radio firmware speaks, by its last number.
 *
 * @param version three numbers joined by "."; may be empty.
 * @return "cpcd_921600.conf" when the text after the last dot begins with a number of 9 or more, else
 *         "cpcd_115200.conf", also when there is no number or it is out of range (logged).
 */
std::string get_cpcd_conf_name(const std::string& version);

/** Stops the radio stack and asks the application's main loop to quit. */
void req_terminate_main_loop();

/**
 * Starts `cpcd`, `socat` and `zigbeed`: waits for the radio module's serial device first, and for the relay's
 * terminal link before `zigbeed`. An old stack is to be stopped before.
 *
 * @return 1 when all three were started, 0 when the relay link did not appear within 3 s; then `cpcd` and
 *         `socat` are left running.
 * @throw std::runtime_error "wait condition error" when the serial device did not appear within 3 s; the
 *        failure report is written, the stack stopped and the main loop asked to quit.
 */
int prepare_background_app();
