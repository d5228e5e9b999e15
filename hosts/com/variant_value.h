// Single values between a host's VARIANTs and the engine's types.
#pragma once

#include <string>

#include "com/windows_headers.h"
#include "engine/members.h"

namespace orv::com {

/// Converts a plain value (no reference, no array, no object) into a text, number or boolean, as
/// kindly as the automation library can: numbers from texts, texts from numbers. Numbers in texts
/// have a point and dates stand as dd.mm.yyyy hh:mm:ss whatever the user's settings, as the engine
/// itself writes them. Fails with DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW.
HRESULT ReadValue(const VARIANT& value, engine::ParameterType type, engine::Argument& argument);

/// Stores an argument or a result in its natural type: VT_BSTR, VT_I2, VT_I4, VT_BOOL, VT_EMPTY.
/// What the VARIANT held before is not released.
void StoreValue(const engine::Argument& argument, VARIANT& target);
void StoreValue(const engine::Result& result, VARIANT& target);
void StoreValue(const Value& value, VARIANT& target);

/// Stores an argument through a reference to a variable of a fixed type, converting it; what cannot
/// be converted leaves the variable as it is.
void StoreThroughReference(const engine::Argument& argument, VARIANT& reference);

}  // namespace orv::com
