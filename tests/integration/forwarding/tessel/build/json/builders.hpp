#pragma once

#include "foreign/tessel/build/json/builders.hpp"
