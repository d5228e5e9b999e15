#include "com/late_call.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "com/host_argument.h"
#include "com/variant_value.h"

namespace orv::com {
namespace {

using engine::Argument;
using engine::kMaxParameters;
using engine::Member;

/// How many arguments a member needs where some have a sensible default: no formula, whole cells
/// with letter case ignored, no context, a title of the cell's own, results that nobody asks for.
struct Required {
  std::string_view member;
  std::size_t count;
};
constexpr std::array kRequired = {
    Required{"PutMatrix", 3},    Required{"Cmd", 1},          Required{"GetCellValue", 3},
    Required{"MtxFindFirst", 4}, Required{"GetTypeValue", 4}, Required{"CmdNewOrvDB", 1},
    Required{"GetFldStyle", 2},  Required{"ExecCmd", 1},      Required{"CopyCell", 6},
    Required{"ValueMatrix", 4},
};

std::size_t RequiredOf(const Member& member) {
  const auto* row = std::ranges::find(kRequired, member.name(), &Required::member);
  return row == kRequired.end() ? member.parameters().size() : row->count;
}

/// The position of a parameter, letter case ignored.
std::optional<std::size_t> FindParameter(const Member& member, std::wstring_view name) {
  constexpr auto lower = [](wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
  };
  const auto matches = [&](const engine::Parameter& parameter) {
    return std::ranges::equal(parameter.name, name, [&](char ours, wchar_t theirs) {
      return lower(static_cast<wchar_t>(ours)) == lower(theirs);
    });
  };
  const auto found = std::ranges::find_if(member.parameters(), matches);
  if (found == member.parameters().end()) return std::nullopt;
  return static_cast<std::size_t>(found - member.parameters().begin());
}

bool IsOmitted(const VARIANT& place) {
  return place.vt == VT_ERROR && place.scode == DISP_E_PARAMNOTFOUND;
}

/// The arguments of one call, by parameter.
class Call {
 public:
  Call(const Member& member, DISPPARAMS& parameters) : member_(member), parameters_(parameters) {}

  HRESULT Prepare(UINT* badArgument) {
    const HRESULT sorted = Sort(badArgument);
    return FAILED(sorted) ? sorted : ReadAll(badArgument);
  }

  void Run(Engine& engine, VARIANT* result) {
    std::array<Argument, kMaxParameters> arguments;
    const std::size_t count = member_.parameters().size();
    for (std::size_t i = 0; i < count; ++i) arguments[i] = places_[i].content();
    const engine::Result outcome = member_.Invoke(engine, std::span(arguments).first(count));
    for (std::size_t i = 0; i < count; ++i) places_[i].WriteBack(arguments[i]);
    if (result != nullptr) StoreValue(outcome, *result);
  }

 private:
  // A host's arguments stand in reverse order, the named ones first.
  HRESULT Sort(UINT* badArgument) {
    const UINT named = parameters_.cNamedArgs;
    if (parameters_.cArgs > member_.parameters().size() || named > parameters_.cArgs) {
      return DISP_E_BADPARAMCOUNT;
    }
    for (UINT i = 0; i < named; ++i) {
      const DISPID position = parameters_.rgdispidNamedArgs[i];
      if (position < 0 || static_cast<std::size_t>(position) >= member_.parameters().size()) {
        return Refuse(badArgument, i, DISP_E_PARAMNOTFOUND);
      }
      if (!Take(static_cast<std::size_t>(position), i)) return DISP_E_BADPARAMCOUNT;
    }
    for (UINT i = named; i < parameters_.cArgs; ++i) {
      if (!Take(parameters_.cArgs - 1 - i, i)) return DISP_E_BADPARAMCOUNT;
    }
    return CheckRequired(badArgument);
  }

  bool Take(std::size_t position, UINT index) {
    if (indexes_[position]) return false;
    indexes_[position] = index;
    VARIANT& place = parameters_.rgvarg[index];
    if (!IsOmitted(place)) {
      places_[position] = HostArgument(&place);
      given_[position] = true;
    }
    return true;
  }

  HRESULT CheckRequired(UINT* badArgument) const {
    for (std::size_t i = 0; i < RequiredOf(member_); ++i) {
      if (given_[i]) continue;
      if (!indexes_[i]) return DISP_E_BADPARAMCOUNT;
      return Refuse(badArgument, *indexes_[i], DISP_E_PARAMNOTOPTIONAL);
    }
    return S_OK;
  }

  HRESULT ReadAll(UINT* badArgument) {
    for (std::size_t i = 0; i < member_.parameters().size(); ++i) {
      const HRESULT read = places_[i].Read(member_.parameters()[i].type);
      if (FAILED(read)) return Refuse(badArgument, *indexes_[i], read);
    }
    return S_OK;
  }

  static HRESULT Refuse(UINT* badArgument, UINT index, HRESULT reason) {
    if (badArgument != nullptr) *badArgument = index;
    return reason;
  }

  const Member& member_;
  DISPPARAMS& parameters_;
  std::array<HostArgument, kMaxParameters> places_;
  std::array<bool, kMaxParameters> given_{};
  std::array<std::optional<UINT>, kMaxParameters> indexes_;
};

}  // namespace

HRESULT FindNumbers(LPOLESTR* names, UINT count, DISPID* numbers) {
  if (count == 0) return S_OK;
  std::fill_n(numbers, count, DISPID_UNKNOWN);
  const Member* member = engine::FindMember(std::wstring_view(names[0]));
  if (member == nullptr) return DISP_E_UNKNOWNNAME;
  numbers[0] = member->number();
  HRESULT outcome = S_OK;
  for (UINT i = 1; i < count; ++i) {
    if (const auto position = FindParameter(*member, names[i])) {
      numbers[i] = static_cast<DISPID>(*position);
    } else {
      outcome = DISP_E_UNKNOWNNAME;
    }
  }
  return outcome;
}

HRESULT CallLate(Engine& engine, DISPID number, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                 UINT* badArgument) {
  const Member* member = engine::FindMember(static_cast<std::int32_t>(number));
  // Script hosts that use a result ask for a method and a property at once.
  if (member == nullptr || (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) {
    return DISP_E_MEMBERNOTFOUND;
  }
  Call call(*member, parameters);
  const HRESULT prepared = call.Prepare(badArgument);
  if (FAILED(prepared)) return prepared;
  if (result != nullptr) VariantInit(result);
  call.Run(engine, result);
  return S_OK;
}

}  // namespace orv::com
