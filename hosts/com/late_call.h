// Late-bound calls: names to numbers, and members called with a host's VARIANTs.
#pragma once

#include "orv/engine.h"

#include "com/windows_headers.h"

namespace orv::com {

/// `IDispatch::GetIDsOfNames`: the member's name, then names of its parameters, whose numbers are
/// their positions. Letter case is ignored.
HRESULT FindNumbers(LPOLESTR* names, UINT count, DISPID* numbers);

/// `IDispatch::Invoke` of a method. Arguments come by position and by name, by value and by
/// reference; some trailing ones may be left out. Fails only for a call that is not well formed
/// (unknown member, number of arguments, an argument that cannot be converted: `badArgument`
/// receives its index); what becomes of the operation itself is the engine's error code.
HRESULT CallLate(Engine& engine, DISPID number, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                 UINT* badArgument);

}  // namespace orv::com
