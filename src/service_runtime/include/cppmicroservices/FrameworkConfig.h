#pragma once

/// @file
/// Kept for sources that include it by this name; the configuration is all in GlobalConfig.h.

#include "cppmicroservices/FrameworkExport.h"
