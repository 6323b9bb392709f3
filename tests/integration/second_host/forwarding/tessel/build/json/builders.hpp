#pragma once

#include "own/services.hpp"
