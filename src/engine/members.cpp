#include "engine/members.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace orv::engine {
namespace {

// The position of T among the alternatives of a variant.
template <typename T, typename Variant>
struct AlternativeOf;
template <typename T, typename... Ts>
struct AlternativeOf<T, std::variant<Ts...>> {
  static constexpr std::size_t Find() {
    constexpr std::array<bool, sizeof...(Ts)> same{std::is_same_v<T, Ts>...};
    return static_cast<std::size_t>(std::ranges::find(same, true) - same.begin());
  }
  static constexpr std::size_t kIndex = Find();
  static_assert(kIndex < sizeof...(Ts), "no binding knows this type");
};

template <typename T>
constexpr ParameterType kParameterType =
    static_cast<ParameterType>(AlternativeOf<T, Argument>::kIndex);

template <typename R>
constexpr ResultType ResultTypeOf() {
  if constexpr (std::is_void_v<R>) {
    return ResultType::kNone;
  } else {
    return static_cast<ResultType>(AlternativeOf<R, Result>::kIndex);
  }
}

// What a member function pointer tells about its member. Parameters that are no plain references
// match nothing and do not compile.
template <auto Method>
struct Signature;
template <typename R, typename... Ps, R (Engine::*Method)(Ps&...)>
struct Signature<Method> {
  static constexpr std::size_t kCount = sizeof...(Ps);
  static constexpr std::array<ParameterType, kCount> kTypes{kParameterType<Ps>...};
  static constexpr ResultType kResult = ResultTypeOf<R>();

  static Result Call(Engine& engine, std::span<Argument> arguments) {
    return CallWith(engine, arguments, std::index_sequence_for<Ps...>());
  }

 private:
  template <std::size_t... Is>
  static Result CallWith(Engine& engine, [[maybe_unused]] std::span<Argument> arguments,
                         std::index_sequence<Is...>) {
    if constexpr (std::is_void_v<R>) {
      (engine.*Method)(std::get<Ps>(arguments[Is])...);
      return {};
    } else {
      return Result(std::in_place_type<R>, (engine.*Method)(std::get<Ps>(arguments[Is])...));
    }
  }
};

template <auto Method>
constexpr Member Row(std::string_view name) {
  static_assert(Signature<Method>::kCount == 0, "every parameter needs its name");
  return Member(name, Signature<Method>::kResult, &Signature<Method>::Call);
}

template <auto Method, std::size_t N>
constexpr Member Row(std::string_view name, const char* const (&parameterNames)[N]) {
  static_assert(Signature<Method>::kCount == N, "every parameter needs its name");
  static_assert(N <= kMaxParameters);
  Member member(name, Signature<Method>::kResult, &Signature<Method>::Call);
  for (std::size_t i = 0; i < N; ++i) {
    member.AddParameter({parameterNames[i], Signature<Method>::kTypes[i]});
  }
  return member;
}

template <std::size_t N>
constexpr std::array<Member, N> Numbered(std::array<Member, N> members) {
  for (std::size_t i = 0; i < N; ++i) members[i].SetNumber(static_cast<std::int32_t>(i + 1));
  return members;
}

// The order is the interface: dispatch numbers follow from it. New members go to the end.
constexpr std::array kMembers = Numbered(std::array{
    Row<&Engine::UnloadServer>("UnloadServer"),
    Row<&Engine::SortData>("SortData", {"Pth", "f"}),
    Row<&Engine::dBASEFldSize>("dBASEFldSize", {"Pth", "f"}),
    Row<&Engine::IsORVorDBF>("IsORVorDBF", {"Pth"}),
    Row<&Engine::InsFirstLvlMtx>("InsFirstLvlMtx", {"Pth"}),
    Row<&Engine::GetTitle>("GetTitle", {"Pth"}),
    Row<&Engine::SaveMtxAs>("SaveMtxAs", {"Pth", "file", "WithProp", "FileType"}),
    Row<&Engine::PutMatrix>("PutMatrix", {"Pth", "r", "f", "MtxName"}),
    Row<&Engine::Records>("Records", {"p"}),
    Row<&Engine::Fields>("Fields", {"p"}),
    Row<&Engine::SetCellValue>("SetCellValue", {"v", "p", "Rec", "Fld"}),
    Row<&Engine::Cmd>("Cmd", {"a", "Tp"}),
    Row<&Engine::CmdAddRecord>("CmdAddRecord", {"Pth", "Number", "row"}),
    Row<&Engine::GetCellValue>("GetCellValue", {"p", "Rec", "Fld", "isMtx", "Frml"}),
    Row<&Engine::MtxFindFirst>(
        "MtxFindFirst", {"Pth", "Rec", "Fld", "Vlu", "Region", "inCell", "Direct", "Register"}),
    Row<&Engine::MtxFindMin>("MtxFindMin", {"Pth", "Col"}),
    Row<&Engine::MtxFindMax>("MtxFindMax", {"Pth", "Col"}),
    Row<&Engine::SetTypeValue>("SetTypeValue", {"Pth", "r", "f", "Prop", "Vlu"}),
    Row<&Engine::GetTypeValue>("GetTypeValue", {"Pth", "r", "f", "Prop", "Frml"}),
    Row<&Engine::ReBit>("ReBit", {"Pth", "r", "f", "b"}),
    Row<&Engine::CmdNewOrvDB>("CmdNewOrvDB", {"file", "MtxName"}),
    Row<&Engine::SetFldStyle>(
        "SetFldStyle", {"p", "f", "FreeSize", "cellsize", "FixedType", "Unique", "DataType"}),
    Row<&Engine::GetFldStyle>(
        "GetFldStyle", {"p", "f", "FreeSize", "cellsize", "FixedType", "Unique", "DataType"}),
    Row<&Engine::CmdAddFld>("CmdAddFld", {"Pth", "NumOfFields", "f"}),
    Row<&Engine::CmdDelFld>("CmdDelFld", {"Pth", "f"}),
    Row<&Engine::ExecCmd>("ExecCmd", {"a", "Mtx", "Rec", "Fld"}),
    Row<&Engine::GetID>("GetID", {"Pth", "r", "f"}),
    Row<&Engine::GetCellDataType>("GetCellDataType", {"Pth", "r", "f"}),
    Row<&Engine::SetTitle>("SetTitle", {"Vlu", "Pth"}),
    Row<&Engine::CopyCell>("CopyCell",
                           {"Mtx", "r1", "f1", "toMtx", "r2", "f2", "WhatToCopy", "WithNested"}),
    Row<&Engine::ValueMatrix>("ValueMatrix", {"m", "Pth", "r1", "r2", "Frml"}),
    Row<&Engine::ErrorCode>("ErrorCode"),
    Row<&Engine::CloseAll>("CloseAll"),
    Row<&Engine::gt>("gt"),
});

// Member names are plain Latin letters; no other character has a case to fold here.
template <typename Char>
constexpr Char LowerLatin(Char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<Char>(letter - 'A' + 'a') : letter;
}

template <typename Char>
const Member* Find(std::basic_string_view<Char> name) {
  const auto matches = [name](const Member& member) {
    return std::ranges::equal(member.name(), name, [](char ours, Char theirs) {
      return static_cast<Char>(LowerLatin(ours)) == LowerLatin(theirs);
    });
  };
  const auto found = std::ranges::find_if(kMembers, matches);
  return found == kMembers.end() ? nullptr : &*found;
}

}  // namespace

bool Member::Accepts(std::span<const Argument> arguments) const {
  return std::ranges::equal(arguments, parameters(), {}, TypeOf, &Parameter::type);
}

std::span<const Member> Members() { return kMembers; }

const Member* FindMember(std::string_view name) { return Find(name); }
const Member* FindMember(std::wstring_view name) { return Find(name); }

const Member* FindMember(std::int32_t number) {
  const bool known = number >= 1 && number <= static_cast<std::int32_t>(kMembers.size());
  return known ? &kMembers[static_cast<std::size_t>(number - 1)] : nullptr;
}

}  // namespace orv::engine
