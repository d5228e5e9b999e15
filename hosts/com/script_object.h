// A script's objects as places that a call's results can go back to.
//
// JScript passes everything by value. Its programs hand in an object with a property `value`
// instead of a plain value, and an array of arrays where an array of texts is asked for.
#pragma once

#include "orv/text_matrix.h"

#include "com/windows_headers.h"

namespace orv::com {

/// Reads the property `value` of the object, else the object's default value.
HRESULT ReadObject(IDispatch* object, VARIANT& value);
/// Writes the property `value`; an object without one stays as it is.
void WriteObject(IDispatch* object, VARIANT& value);

/// Reads an array of arrays, the outer one by fields and the inner ones by records, all of them as
/// long as the first and counted from 0. Missing elements are the empty text. More than 10 million
/// elements are refused with DISP_E_OVERFLOW.
HRESULT ReadScriptArray(IDispatch* array, TextMatrix& matrix);
/// Writes every element.
void WriteScriptArray(const TextMatrix& matrix, IDispatch* array);

}  // namespace orv::com
