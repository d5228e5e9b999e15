#include "command/names.h"

#include <array>

#include "command/scanner.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

constexpr std::string_view kPi = "3.141592654";
constexpr std::size_t kLongestName = 7;

void SetWhole(Value& value, std::int32_t number, std::int16_t typeCode) {
  value.text.clear();
  storage::AppendNumber(value.text, number);
  value.type = typeCode;
}

void SetQuoted(Value& value, std::string_view text) {
  value.text.assign(1, kQuote).append(text) += kQuote;
  value.type = type::kString;
}

using Producer = void (*)(const Context&, Services&, Value&);

void Records(const Context& context, Services& services, Value& value) {
  SetWhole(value, services.Records(context.path), type::kInteger);
}

void Fields(const Context& context, Services& services, Value& value) {
  SetWhole(value, services.Fields(context.path), type::kInteger);
}

void Record(const Context& context, Services& /*services*/, Value& value) {
  SetWhole(value, context.record, type::kVariant);
}

void Field(const Context& context, Services& /*services*/, Value& value) {
  SetWhole(value, context.field, type::kVariant);
}

void Matrix(const Context& context, Services& /*services*/, Value& value) {
  SetQuoted(value, platform::ToBytes(context.path));
}

void Pi(const Context& /*context*/, Services& /*services*/, Value& value) {
  value.text = kPi;
  value.type = type::kReal;
}

void Title(const Context& context, Services& services, Value& value) {
  services.ReadCell(context.path, context.record, context.field, false, value.text);
  value.text.insert(0, 1, kQuote) += kQuote;
  value.type = type::kString;
}

void Date(const Context& /*context*/, Services& /*services*/, Value& value) {
  SetQuoted(value, platform::DateText());
}

void Time(const Context& /*context*/, Services& /*services*/, Value& value) {
  SetQuoted(value, platform::TimeText());
}

struct Name {
  std::string_view text;
  Producer produce;  // none for the logic values
};

constexpr std::array<Name, 11> kNames = {{{"records", Records},
                                          {"fields", Fields},
                                          {"rec", Record},
                                          {"fld", Field},
                                          {"true", nullptr},
                                          {"false", nullptr},
                                          {"mtx", Matrix},
                                          {"pi", Pi},
                                          {"title", Title},
                                          {"date", Date},
                                          {"time", Time}}};

const Name* FindName(std::string_view token) noexcept {
  if (token.empty() || token.size() > kLongestName) return nullptr;
  std::array<char, kLongestName> folded{};
  for (std::size_t i = 0; i < token.size(); ++i) folded[i] = platform::FoldCase(token[i]);
  const std::string_view lower(folded.data(), token.size());
  for (const Name& name : kNames) {
    if (name.text == lower) return &name;
  }
  return nullptr;
}

NameKind KindOf(const Name* name) noexcept {
  if (name == nullptr) return NameKind::kNoName;
  return name->produce == nullptr ? NameKind::kLogic : NameKind::kReplaced;
}

}  // namespace

NameKind KindOfName(std::string_view token) noexcept { return KindOf(FindName(token)); }

NameKind LookUpName(std::string_view token, const Context& context, Services& services,
                    Value& value) {
  const Name* const name = FindName(token);
  const NameKind kind = KindOf(name);
  if (kind == NameKind::kReplaced) name->produce(context, services, value);
  return kind;
}

}  // namespace orv::command
