// A host's two-dimensional array of texts.
#pragma once

#include "orv/text_matrix.h"

#include "com/windows_headers.h"

namespace orv::com {

/// Copies an array, fields by records, of texts or variants. Fails with DISP_E_TYPEMISMATCH for
/// any other array and for elements that have no text.
HRESULT ReadTextArray(SAFEARRAY* array, TextMatrix& matrix);

/// Stores the texts that differ from what the array holds; its bounds stay the host's own.
HRESULT WriteTextArray(const TextMatrix& matrix, SAFEARRAY* array);

}  // namespace orv::com
