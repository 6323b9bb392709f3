#pragma once

/// @file
/// Export macro of the Declarative Services classes.

#include "cppmicroservices/GlobalConfig.h"

#define US_ServiceComponent_EXPORT US_ABI_EXPORT
