#pragma once

#include "foreign/tessel/build/json/core.hpp"
