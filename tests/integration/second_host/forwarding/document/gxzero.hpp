#pragma once

#include "own/classes.hpp"
