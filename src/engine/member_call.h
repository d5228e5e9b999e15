// What surrounds every member's work: no failure leaves the engine but through the error code.
#pragma once

#include <new>

#include "engine/component.h"

namespace orv::engine {

/// Ends a call: a map that met a page which is not there any more makes the call a device error and
/// closes its file, whatever the work made of the zeros that it read.
inline void SettleMapFaults(Component& component) {
  if (!platform::TakeMapFault()) return;
  component.storage.error.Set(platform::RunTimeError::kDeviceIo);
  component.storage.DropFaulted();
}

/// Runs a member's work and returns its result, or `failed` when it failed with an exception.
template <typename Result, typename Work>
Result CallMember(Result failed, Work work) {
  Component& component = Component::Instance();
  component.storage.files.ReleaseRetired();
  try {
    Result result = work(component);
    SettleMapFaults(component);
    return result;
  } catch (const platform::RunTimeFailure& failure) {
    component.storage.error.Set(failure.number());
  } catch (const std::bad_alloc&) {
    component.storage.error.Set(platform::RunTimeError::kOutOfMemory);
  } catch (...) {
    component.storage.error.Set(platform::RunTimeError::kUnforeseen);
  }
  SettleMapFaults(component);
  return failed;
}

/// The same for a member without a result.
template <typename Work>
void CallMember(Work work) {
  CallMember(false, [&](Component& component) {
    work(component);
    return true;
  });
}

}  // namespace orv::engine
