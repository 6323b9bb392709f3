// A bundle that publishes nothing.

#include "registration.hpp"
