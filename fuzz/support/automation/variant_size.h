// How large a variable of an automation type is.
#pragma once

#include <cstddef>

#include <windows.h>

/// In bytes; 0 for a type that has no variable or that no host passes.
std::size_t ByteSize(VARTYPE type);
