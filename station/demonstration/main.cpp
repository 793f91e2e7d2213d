#include "session.h"

#include <iostream>

namespace {

void demonstrate(station::Session& session) {
    try {
        session.see_first_page();
        session.page("start");
        station::do_tx_test(session);
        station::do_rx_test(session);
        session.leave();
    } catch (const station::NotSeen& error) {
        throw station::NotSeen(error.what() + ("; " + session.application_state()));
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr
            << "Usage: demonstration PROGRAM FOLDER\n\n"
               "Does a TX test and an RX test with PROGRAM on the simulated television, by keys alone, and\n"
               "leaves a picture of every page in FOLDER. Ends with 0 only when every step was seen on the\n"
               "screen and by the NCP host.\n";
        return 2;
    }
    try {
        station::Session session(arguments[1], arguments[2]);
        demonstrate(session);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "demonstration: " << error.what() << '\n';
        return 1;
    }
}
