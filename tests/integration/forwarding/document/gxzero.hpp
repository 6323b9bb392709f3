#pragma once

#include "foreign/document/gxzero.hpp"
