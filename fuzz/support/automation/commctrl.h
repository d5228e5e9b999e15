// Nothing: windows.h beside this has all that is asked for.
#pragma once
