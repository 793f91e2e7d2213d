#include "input.h"
#include "ncp_host/ncp_host.h"

void fuzz(const std::string& input) { simulator::parse_behaviour(input); }
