#pragma once

#include "foundation/com_values.h"
