#include "orv/engine.h"

#include "engine/creation.h"
#include "engine/member_call.h"
#include "engine/record_members.h"
#include "engine/titles.h"
#include "engine/type_properties.h"
#include "engine/value_matrix.h"
#include "exchange/matrix_export.h"
#include "platform/code_page.h"
#include "storage/matrix.h"
#include "storage/nested_matrix.h"

namespace orv {

using engine::CallMember;
using engine::Component;
using platform::ToBytes;
using platform::ToWide;

namespace {

storage::FieldStyle ToStyle(std::int16_t freeSize, std::int16_t cellSize, Boolean fixedType,
                            Boolean unique, std::int16_t dataType) {
  return {freeSize, cellSize, IsTrue(fixedType), IsTrue(unique), dataType};
}

}  // namespace

Engine::Engine() { Component::Instance(); }

void Engine::UnloadServer() {}

void Engine::SortData(std::wstring& Pth, std::int16_t& f) {
  CallMember([&](Component& component) { component.sort.SortData(Pth, f); });
}

Value Engine::dBASEFldSize(std::wstring& Pth, std::int16_t& f) {
  return CallMember(Value(), [&](Component& component) {
    const storage::Location at = component.storage.resolver.ResolvePath(Pth);
    if (component.storage.error.IsSet() || at.file == nullptr) return Value();
    return Value(component.storage.ports.dbase->FieldWidth(*at.file, f));
  });
}

std::int16_t Engine::IsORVorDBF(std::wstring& Pth) {
  return CallMember(std::int16_t{0}, [&](Component& component) {
    constexpr std::int16_t kContainer = 1;
    constexpr std::int16_t kDbase = 2;
    const storage::Location at = component.storage.resolver.ResolvePath(Pth);
    if (at.file == nullptr) return std::int16_t{0};
    if (storage::CheckOwnFormat(*at.file)) return kContainer;
    return storage::CheckDbaseFormat(*at.file) ? kDbase : std::int16_t{0};
  });
}

void Engine::InsFirstLvlMtx(std::wstring& Pth) {
  CallMember([&](Component& component) { engine::InsFirstLvlMtx(component.storage, Pth); });
}

std::wstring Engine::GetTitle(std::wstring& Pth) {
  return CallMember(std::wstring(),
                    [&](Component& component) { return engine::GetTitle(component.storage, Pth); });
}

void Engine::SaveMtxAs(std::wstring& Pth, std::wstring& file, Boolean& WithProp,
                       std::int16_t& FileType) {
  CallMember([&](Component& component) {
    exchange::SaveMtxAs(component.storage, component.services, Pth, file, IsTrue(WithProp),
                        FileType);
  });
}

void Engine::PutMatrix(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::wstring& MtxName) {
  CallMember([&](Component& component) {
    std::string title = ToBytes(MtxName);
    const bool takesText = title.empty();
    storage::PutMatrix(component.storage, Pth, r, f, title);
    if (takesText) MtxName = ToWide(title);
  });
}

std::int32_t Engine::Records(std::wstring& p) {
  return CallMember(std::int32_t{-1},
                    [&](Component& component) { return engine::Records(component.storage, p); });
}

std::int32_t Engine::Fields(std::wstring& p) {
  return CallMember(std::int32_t{-1},
                    [&](Component& component) { return component.storage.fields.SvrFields(p); });
}

void Engine::SetCellValue(std::wstring& v, std::wstring& p, std::int32_t& Rec, std::int16_t& Fld) {
  CallMember([&](Component& component) {
    // Resolving the path can run a host's events, and a call from them writes a text of its own.
    std::string room = std::move(component.cellText);
    component.storage.cells.SvrSetCellValue(ToBytes(v, room), p, Rec, Fld);
    component.cellText = std::move(room);
  });
}

std::wstring Engine::Cmd(std::wstring&, std::int16_t&) { return {}; }

void Engine::CmdAddRecord(std::wstring& Pth, std::int32_t& Number, std::int32_t& row) {
  CallMember(
      [&](Component& component) { engine::CmdAddRecord(component.storage, Pth, Number, row); });
}

std::wstring Engine::GetCellValue(std::wstring& p, std::int32_t& Rec, std::int16_t& Fld,
                                  Boolean& isMtx, Boolean& Frml) {
  bool holdsMatrix = false;
  std::wstring text = CallMember(std::wstring(), [&](Component& component) {
    return ToWide(component.storage.cells.SvrGetCellValue(p, Rec, Fld, holdsMatrix, IsTrue(Frml)));
  });
  isMtx = ToBoolean(holdsMatrix);
  return text;
}

std::int32_t Engine::MtxFindFirst(std::wstring& Pth, std::int32_t& Rec, std::int16_t& Fld,
                                  std::wstring& Vlu, std::int16_t& Region, Boolean& inCell,
                                  std::int16_t& Direct, Boolean& Register) {
  return CallMember(query::Search::kNotFound, [&](Component& component) {
    const std::string value = ToBytes(Vlu);
    query::FindRequest request{.record = Rec,
                               .field = Fld,
                               .value = value,
                               .region = Region,
                               .inCell = IsTrue(inCell),
                               .direction = Direct,
                               .caseMatters = IsTrue(Register)};
    const std::int32_t found = component.search.MtxFindFirst(Pth, request);
    Fld = request.field;
    if (request.caseMatters) Register = Boolean::kTrue;
    return found;
  });
}

std::int32_t Engine::MtxFindMin(std::wstring& Pth, std::int16_t& Col) {
  return CallMember(query::Search::kNotFound,
                    [&](Component& component) { return component.search.MtxFindMin(Pth, Col); });
}

std::int32_t Engine::MtxFindMax(std::wstring& Pth, std::int16_t& Col) {
  return CallMember(query::Search::kNotFound,
                    [&](Component& component) { return component.search.MtxFindMax(Pth, Col); });
}

void Engine::SetTypeValue(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::wstring& Prop,
                          std::wstring& Vlu) {
  CallMember([&](Component& component) {
    engine::SetTypeValue(component.storage, Pth, r, f, ToBytes(Prop), ToBytes(Vlu));
  });
}

std::wstring Engine::GetTypeValue(std::wstring& Pth, std::int32_t& r, std::int16_t& f,
                                  std::wstring& Prop, Boolean& Frml) {
  return CallMember(std::wstring(), [&](Component& component) {
    return ToWide(engine::GetTypeValue(component.storage, Pth, r, f, ToBytes(Prop), IsTrue(Frml),
                                       component.language));
  });
}

Value Engine::ReBit(std::wstring& Pth, std::int32_t& r, std::int16_t& f, std::int16_t& b) {
  CallMember([&](Component& component) { engine::ReBit(component.storage, Pth, r, f, b); });
  return {};
}

void Engine::CmdNewOrvDB(std::wstring& file, std::wstring& MtxName) {
  CallMember([&](Component& component) { engine::CmdNewOrvDB(component.storage, file, MtxName); });
}

void Engine::SetFldStyle(std::wstring& p, std::int16_t& f, std::int16_t& FreeSize,
                         std::int16_t& cellsize, Boolean& FixedType, Boolean& Unique,
                         std::int16_t& DataType) {
  CallMember([&](Component& component) {
    component.storage.fields.SvrSetFldStyle(
        p, f, ToStyle(FreeSize, cellsize, FixedType, Unique, DataType));
  });
  CloseAll();  // whatever came of it: nothing cached may outlive a conversion
}

void Engine::GetFldStyle(std::wstring& p, std::int16_t& f, std::int16_t& FreeSize,
                         std::int16_t& cellsize, Boolean& FixedType, Boolean& Unique,
                         std::int16_t& DataType) {
  CallMember([&](Component& component) {
    storage::FieldStyle style = ToStyle(FreeSize, cellsize, FixedType, Unique, DataType);
    component.storage.fields.SvrGetFldStyle(p, f, style);
    if (component.storage.error.IsSet()) return;
    FreeSize = style.freeSize;
    cellsize = style.cellSize;
    FixedType = ToBoolean(style.fixedType);
    Unique = ToBoolean(style.unique);
    DataType = style.dataType;
  });
}

void Engine::CmdAddFld(std::wstring& Pth, std::int16_t& NumOfFields, std::int16_t& f) {
  CallMember(
      [&](Component& component) { component.storage.fields.SvrCmdAddFields(Pth, NumOfFields, f); });
}

void Engine::CmdDelFld(std::wstring& Pth, std::int16_t& f) {
  CallMember([&](Component& component) { component.storage.fields.SvrCmdDelFld(Pth, f); });
}

Value Engine::ExecCmd(std::wstring& a, std::wstring& Mtx, std::int32_t& Rec, std::int16_t& Fld) {
  return CallMember(Value(), [&](Component& component) {
    component.storage.error.Clear();
    const auto result = component.language.Run(ToBytes(a), Mtx, Rec, Fld);
    return result ? Value(ToWide(*result)) : Value();
  });
}

std::int16_t Engine::GetID(std::wstring& Pth, std::int32_t& r, std::int16_t& f) {
  return CallMember(std::int16_t{0}, [&](Component& component) {
    return engine::GetID(component.storage, Pth, r, f);
  });
}

std::int16_t Engine::GetCellDataType(std::wstring& Pth, std::int32_t& r, std::int16_t& f) {
  return CallMember(std::int16_t{0}, [&](Component& component) {
    return engine::GetCellDataType(component.storage, Pth, r, f);
  });
}

void Engine::SetTitle(std::wstring& Vlu, std::wstring& Pth) {
  CallMember([&](Component& component) { engine::SetTitle(component.storage, Vlu, Pth); });
}

void Engine::CopyCell(std::wstring&, std::int32_t&, std::int16_t&, std::wstring&, std::int32_t&,
                      std::int16_t&, Boolean&, Boolean&) {}

void Engine::ValueMatrix(TextMatrix& m, std::wstring& Pth, std::int32_t& r1, std::int32_t& r2,
                         Boolean& Frml) {
  CallMember([&](Component& component) {
    engine::ValueMatrix(component.storage, m, Pth, r1, r2, IsTrue(Frml));
  });
}

Value Engine::ErrorCode() { return Value(Component::Instance().storage.error.value()); }

void Engine::CloseAll() {
  CallMember([&](Component& component) { component.storage.CloseAll(); });
}

void Engine::gt() {}

}  // namespace orv
