// The filtered views: eight slots, shared by everything that reads through a path.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "query/filter_slot.h"
#include "storage/ports.h"

namespace orv::query {

class FilterBuilder;

/// Keeps up to eight filtered views. A view is known by its path: the canonical path of the matrix
/// it shows,
/// "/" and its condition. One for the engine.
///
/// Slots are numbered 1 to 8; every operation that takes an index raises 9 outside them, if nothing
/// else is said.
class FilterClass final : public storage::FilterPort {
 public:
  static constexpr std::int16_t kSlots = 8;

  /// The builder that `CreateFilter` runs; it must live as long as views are created.
  void SetBuilder(FilterBuilder* builder) { builder_ = builder; }

  float CashTimerSetGet(std::int16_t index) const { return At(index).timer; }
  void CashTimerSetGet(std::int16_t index, float value) { At(index).timer = value; }
  const std::wstring& CashPthSetGet(std::int16_t index) const { return At(index).path; }
  void CashPthSetGet(std::int16_t index, const std::wstring& value) { At(index).path = value; }
  std::int32_t CashRecsSetGet(std::int16_t index) const { return At(index).records; }
  void CashRecsSetGet(std::int16_t index, std::int32_t value) { At(index).records = value; }
  std::int16_t CashFldsSetGet(std::int16_t index) const { return At(index).fields; }
  void CashFldsSetGet(std::int16_t index, std::int16_t value) { At(index).fields = value; }
  const std::wstring& Pth(std::int16_t index) const { return At(index).path; }
  /// Takes the slot its path, whatever the text; everything else of the slot stays.
  void Pth(std::int16_t index, const std::wstring& ignored);

  /// The first slot whose path equals the text, letter case counting; -1 when none does.
  std::int16_t GetFilterID(const std::wstring& pthVlu) const override;
  /// Frees the slot. An index outside the slots is told to the user.
  void ClearFilter(std::int16_t index);
  /// Builds the view `pth`, whose condition is `flt`, behind a dialog. Whether it came about shows
  /// in `GetFilterID` and the error code.
  void CreateFilter(const std::wstring& pth, const std::wstring& flt) override;

  /// Makes the field cache as long as the slot's field count, all 0. Nothing outside the slots.
  void ReDimCashFld(std::int16_t index);
  /// Makes the record cache `vlu` runs long, all (0, 0).
  void ReDimCashRec(std::int16_t index, std::int32_t vlu);
  /// Stores an entry of the field cache; 9 beyond the cache, 6 for a number beyond 16 bits. Nothing
  /// outside the slots.
  void SetCashFld(std::int16_t index, std::int32_t pos, std::int32_t vlu);
  /// The underlying field of visible field `pos`; 0 outside the slots and beyond the cache.
  std::int16_t GetCashFld(std::int16_t index, std::int32_t pos) const override;
  /// Stores run `pos`; 9 beyond the cache. Nothing outside the slots.
  void SetCashRec(std::int16_t index, std::int32_t pos, std::int32_t vluUp, std::int32_t vluEnd);
  /// The end of run `pos`, or its first record; 0 outside the slots, 9 beyond the cache.
  std::int32_t GetCashRec(std::int16_t index, std::int32_t pos, bool end) const;
  /// The underlying record of visible record `r`, -1 beyond the view.
  std::int32_t GetFilterValue(std::int16_t index, std::int32_t r) const override;

  /// The counts and numbers of the view `pth` as decimal texts. Raise 5 when there is no such view.
  std::string Records(const std::wstring& pth) const;
  std::string Fields(const std::wstring& pth) const;
  std::string RecUndFlt(const std::wstring& pth, std::int32_t r) const;
  std::string FldUndFlt(const std::wstring& pth, std::int16_t r) const;

  void EraseCash() override;

  std::int32_t RecordCount(std::int16_t slot) const override { return At(slot).records; }
  std::int16_t FieldCount(std::int16_t slot) const override { return At(slot).fields; }
  void DropFile(const std::wstring& fileName) override;

  /// A slot taken for the construction of a view, for as long as the object lives. While it lives
  /// neither the slot nor one that the view stands on is chosen for another view.
  class Claim {
   public:
    Claim(FilterClass& filters, const std::wstring& pth);
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;

    /// The slot, freed and given the path; 0 when none could be chosen.
    std::int16_t slot() const { return slot_; }
    /// Whether the slot still waits for this view: a host call in between may have freed it.
    bool Stands() const;
    /// Marks the view as complete.
    void Complete();
    /// Frees the slot if it still waits for this view.
    void GiveUp();

   private:
    FilterClass& filters_;
    std::int16_t slot_;
    std::uint64_t number_ = 0;
  };

 private:
  FilterSlot& At(std::int16_t index);
  const FilterSlot& At(std::int16_t index) const;
  /// Where the slot stands in `slots_`; raises 9 when there is none of that number.
  static std::size_t PlaceOf(std::int16_t index);
  static bool IsSlot(std::int16_t index) { return index >= 1 && index <= kSlots; }
  /// The slot of a view that must be there.
  const FilterSlot& Named(const std::wstring& pth) const;

  std::int16_t ChooseSlot(const std::wstring& pth) const;
  bool IsNeeded(std::int16_t index, const std::wstring& pth) const;
  float NewStamp() const;

  std::array<FilterSlot, kSlots> slots_;
  std::array<std::uint64_t, kSlots> underConstruction_{};  ///< claims, 0 where none is being filled
  std::uint64_t claims_ = 0;
  float lastStamp_ = 0;
  float lastReading_ = 0;  ///< of the clock, when the last stamp was given
  FilterBuilder* builder_ = nullptr;
};

}  // namespace orv::query
