/** What tvctl asks a television. Each verb prints one line, or JSON where there is more to say. */
#pragma once

#include "client/client.h"

#include <string>
#include <vector>

namespace simulator {

/** How to say it. */
struct Output {
    bool json = false;
    /** Prints a line. */
    void say(const std::string& line) const;
    /** Prints words on one line, or as a list. */
    void say(const std::vector<std::string>& words) const;
};

void see(Client& client, const Output& output);
void radio(Client& client, const Output& output);
void components(Client& client, const Output& output);
/** Leaves no file behind when there is no picture. */
void picture(Client& client, const std::string& file);
/** Prints a log from its beginning, all of them without a name. @return the status. */
int log(Client& client, const std::string& component, bool follow);
/** Runs a command inside, a shell without one. @return the status. */
int shell(Client& client, const std::vector<std::string>& command);

/** The radio's state as "NAME=VALUE" words. */
std::vector<std::string> words_of_radio(const Value& state);
/** The components as "NAME STATE" words. */
std::vector<std::string> words_of_components(const Value& components);

} // namespace simulator
