/** The two ways in which a call to a television ends without success. */
#pragma once

#include <stdexcept>

namespace simulator {

/** It did not come true; tvctl ends with 1. */
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** It was asked for wrongly; tvctl ends with 2. */
class WrongUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace simulator
