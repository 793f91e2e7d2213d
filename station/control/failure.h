/** The two ways in which a verb ends without success. */
#pragma once

#include <stdexcept>

namespace station {

/** It did not come true: status 1. */
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** It was asked for wrongly: status 2. */
class WrongUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace station
