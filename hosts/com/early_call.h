// Early-bound calls: the engine's member functions behind the methods of the dual interface.
#pragma once

#include <new>
#include <tuple>
#include <utility>

#include "orv/engine.h"

#include "com/bstr.h"
#include "com/text_array.h"
#include "com/variant_value.h"
#include "com/windows_headers.h"

namespace orv::com {

/// How a type of the engine's is passed by reference: what the host's parameter is, how it is read,
/// and how it is stored again. Texts that the call did not change keep their BSTR.
template <typename Type>
struct Passed;

template <>
struct Passed<std::wstring> {
  using Host = BSTR;
  static HRESULT Read(const BSTR& from, std::wstring& to) {
    to = TextOf(from);
    return S_OK;
  }
  static HRESULT Write(const std::wstring& from, BSTR& to) {
    if (TextOf(to) == from) return S_OK;
    BSTR old = std::exchange(to, NewBstr(from));
    SysFreeString(old);
    return S_OK;
  }
};

template <typename Number, typename HostNumber>
struct PassedNumber {
  using Host = HostNumber;
  static HRESULT Read(const HostNumber& from, Number& to) {
    to = static_cast<Number>(from);
    return S_OK;
  }
  static HRESULT Write(const Number& from, HostNumber& to) {
    to = static_cast<HostNumber>(from);
    return S_OK;
  }
};
template <>
struct Passed<std::int16_t> : PassedNumber<std::int16_t, short> {};
template <>
struct Passed<std::int32_t> : PassedNumber<std::int32_t, long> {};
template <>
struct Passed<Boolean> : PassedNumber<Boolean, VARIANT_BOOL> {};

template <>
struct Passed<TextMatrix> {
  using Host = SAFEARRAY*;
  static HRESULT Read(SAFEARRAY* const& from, TextMatrix& to) { return ReadTextArray(from, to); }
  static HRESULT Write(const TextMatrix& from, SAFEARRAY*& to) { return WriteTextArray(from, to); }
};

inline void StoreResult(const std::wstring& from, BSTR& to) { to = NewBstr(from); }
inline void StoreResult(std::int16_t from, short& to) { to = from; }
inline void StoreResult(std::int32_t from, long& to) { to = from; }
inline void StoreResult(const Value& from, VARIANT& to) {
  VariantInit(&to);
  StoreValue(from, to);
}

/// Calls a member function with the host's parameters. Fails only for null pointers, an array that
/// is no two-dimensional array of texts, and want of memory.
template <auto Method>
struct EarlyCall;
template <typename Outcome, typename... Types, Outcome (Engine::*Method)(Types&...)>
struct EarlyCall<Method> {
  static HRESULT Run(Engine& engine,
                     typename Passed<Types>::Host*... places) requires std::is_void_v<Outcome> {
    return Guarded(
        engine, [](auto&& call) { call(); }, places...);
  }
  template <typename HostResult>
  static HRESULT Run(Engine& engine, typename Passed<Types>::Host*... places, HostResult* result) {
    if (result == nullptr) return E_POINTER;
    *result = {};
    return Guarded(
        engine, [result](auto&& call) { StoreResult(call(), *result); }, places...);
  }

 private:
  template <typename Use>
  static HRESULT Guarded(Engine& engine, Use use, typename Passed<Types>::Host*... places) {
    if (((places == nullptr) || ...)) return E_POINTER;
    try {
      return Pass(engine, use, std::index_sequence_for<Types...>(), places...);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      return E_UNEXPECTED;
    }
  }

  template <typename Use, std::size_t... Is>
  static HRESULT Pass(Engine& engine, Use use, std::index_sequence<Is...>,
                      typename Passed<Types>::Host*... places) {
    std::tuple<Types...> arguments;
    HRESULT outcome = S_OK;
    // In order, and none after one that has failed.
    ((outcome = FAILED(outcome) ? outcome : Passed<Types>::Read(*places, std::get<Is>(arguments))),
     ...);
    if (FAILED(outcome)) return outcome;
    use([&] { return (engine.*Method)(std::get<Is>(arguments)...); });
    ((outcome = FAILED(outcome) ? outcome : Passed<Types>::Write(std::get<Is>(arguments), *places)),
     ...);
    return outcome;
  }
};

}  // namespace orv::com
