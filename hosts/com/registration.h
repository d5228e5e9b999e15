// The entries by which hosts find the class: per machine or per user.
#pragma once

#include "com/windows_headers.h"

namespace orv::com {

enum class RegistrationScope { kMachine, kUser };

/// Writes the class, its two programmatic ids and the type library, pointing to this DLL where it
/// lies now.
HRESULT Register(RegistrationScope scope);
/// Removes them; entries that are not there are no failure.
HRESULT Unregister(RegistrationScope scope);

}  // namespace orv::com
