#pragma once

#include "foreign/foundation/except.hpp"
