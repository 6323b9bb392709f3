#pragma once

/// @file
/// Export macro of the framework's classes.

#include "cppmicroservices/GlobalConfig.h"

#define US_Framework_EXPORT US_ABI_EXPORT
