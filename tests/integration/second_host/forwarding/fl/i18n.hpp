#pragma once

#include "own/text.hpp"
