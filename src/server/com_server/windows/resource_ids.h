// Numbers of the module's resources, for the code and the resource compiler.
#pragma once

#define QUILLON_APP_ID_SCRIPT 101
#define QUILLON_CLASS_SCRIPT 102
