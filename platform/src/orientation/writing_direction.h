/** The writing direction of languages, in a module of its own: its library is the largest of all that an application
 * loads, and one whose language was never set does not need it. */
#pragma once

extern "C" {

/**
 * Tells whether a language is written from right to left.
 *
 * @param language a POSIX locale ("ar_AE.utf8") or a language tag ("ar-AE").
 * @return false also for what is no language.
 */
bool is_right_to_left(const char* language);
}
