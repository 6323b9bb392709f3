#pragma once

#include "foreign/fl/i18n.hpp"
