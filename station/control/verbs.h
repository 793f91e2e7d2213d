/** What tvctl asks a television. Each verb prints one line, or JSON where there is more to say. */
#pragma once

#include "remote/remote.h"

#include <string>
#include <vector>

namespace station {

/** How to say it. */
struct Output {
    bool json = false;
    /** Prints a line. */
    void say(const std::string& line) const;
    /** Prints words on one line, or as a list. */
    void say(const std::vector<std::string>& words) const;
};

void see(Remote& remote, const Output& output);
void radio(Remote& remote, const Output& output);
void parts(Remote& remote, const Output& output);
/** Leaves no file behind when there is no picture. */
void picture(Remote& remote, const std::string& file);
/** Prints a log from its beginning, all of them without a name. @return the status. */
int log(Remote& remote, const std::string& part, bool follow);
/** Runs a command inside, a shell without one. @return the status. */
int shell(Remote& remote, const std::vector<std::string>& command);

/** The radio's state as "NAME=VALUE" words. */
std::vector<std::string> words_of_radio(const Value& state);
/** The parts as "NAME STATE" words. */
std::vector<std::string> words_of_parts(const Value& parts);

} // namespace station
