// The allocation record a portfolio owns: TPortAllocation, its variants
// (client holdings, class targets, separately managed account, fees by asset
// class) and the list TPortAllocList, with the kind labels and the library
// models an allocation may follow. The text forms are listed in
// docs/formats/allocation.md.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "decl/KvAlcClasses.h"

namespace kv {

// Unique ids as text: the 32-bit pattern as 8 upper-case hex digits. Reading
// takes 1 to 8 hex digits in either case and nothing else.
std::string UniqueIDToText(std::int32_t id);
bool TryTextToUniqueID(std::string_view text, std::int32_t& id);

// The program's date-time text, "yyyy-mm-dd hh:nn:ss.zzz", of a day count
// since 30 December 1899 (time of day as the fraction).
std::string DateTimeToText(double dateTime);
// The local date and time now as such a day count.
double NowDateTime();

// Kind labels of allocations (TPortAllocation::Kind indexes them).
std::span<const std::string_view> AllocKindLabels();
// The label of a kind; "Allocation" for a kind outside the table.
std::string_view AllocKindLabel(std::int32_t kind);
inline constexpr std::int32_t kAllocKindLibrary = 2;

// The library models an allocation of kind 2 may follow.
struct TLibModel {
    std::int32_t ID;
    std::string_view Name;
    std::array<double, kAlcClsCount> ClsShares;
};
std::span<const TLibModel> LibModels();
const TLibModel* FindLibModel(std::int32_t id);

// Fields in text order: ID, Name, Text, Reference, Flag1, Flag2, Kind, Flag4.
// Texts are joined with ";"; a ";" or "\" inside a text is written "\;" or
// "\\", and any other "\" reads as itself.
class TPortAllocation {
public:
    // A new allocation: ID from the current date and time, all else 0 or empty.
    TPortAllocation();
    // An allocation with the given ID, all else 0 or empty.
    explicit TPortAllocation(std::int32_t id);
    virtual ~TPortAllocation() = default;

    std::int32_t ID = 0;
    std::string Name;
    std::string Text;
    std::string SavedText;      // Text as last read; changes are measured against it
    std::int32_t Reference = 0; // kind 2: the library model followed
    // Flag1, Flag2 and Flag4: the text form leaves these unnamed; they are
    // kept to be written back.
    std::int32_t Flag1 = 0;
    std::int32_t Flag2 = 0;
    std::int32_t Kind = 0;
    std::int32_t Flag4 = 0;

    virtual const char* ClassName() const { return "TPortAllocation"; }

    std::string GetAsString() const;
    // Missing or unreadable fields: ID and Reference 0, texts empty, the four
    // small integers 0, 1, 1, 0. Fields past those a class reads are ignored.
    void SetAsString(std::string_view text);
    virtual std::unique_ptr<TPortAllocation> Clone() const;

    // Kind label + ": " + (kind 2: library model name + ", ") + Name. A
    // reference that names no library model gives "Unknown model".
    std::string GetFullName() const;
    bool TextChanged() const { return Text != SavedText; }

    // The id of an allocation made at that moment: the CRC-32 of its
    // date-time text (DateTimeToText), as a signed value.
    static std::int32_t IDFromDateTime(double dateTime);

protected:
    TPortAllocation(const TPortAllocation&) = default;
    TPortAllocation& operator=(const TPortAllocation&) = default;

    // Each class writes and reads its fields after those of its base.
    virtual void WriteFields(std::vector<std::string>& f) const;
    virtual void ReadFields(const std::vector<std::string>& f, std::size_t& pos);
};

// Detailed holdings: after the eight fields, a count and five fields a holding.
class TCHPortAllocation : public TPortAllocation {
public:
    struct THolding {
        std::string Symbol;
        std::int32_t Cls = 0;
        std::int32_t SubCls = 0;
        std::int32_t SubCls2 = -1; // -1: the sub-class itself
        double Value = 0;
        bool operator==(const THolding&) const = default;
    };
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TCHPortAllocation"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::vector<THolding> Holdings;
    // Sum of the holdings' values of a class.
    double ClsValue(int cls) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// Class targets: after the eight fields, the six class shares.
class TPAClass : public TPortAllocation {
public:
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TPAClass"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::array<double, kAlcClsCount> ClsShares{};

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// Separately managed account: TPAClass, then manager, fee rate (per cent a
// year) and minimum account size.
class TPASMAClass : public TPAClass {
public:
    using TPAClass::TPAClass;
    const char* ClassName() const override { return "TPASMAClass"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::string Manager;
    double FeeRate = 0;
    double MinAccount = 0;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

class TLibAllocYear;

// Fee rates by asset class (per cent a year): after the eight fields, six rates.
class TFeesAssetClassesPr : public TPortAllocation {
public:
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TFeesAssetClassesPr"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::array<double, kAlcClsCount> FeeRates{};
    // Sum over classes of total * class share * rate / 100; negative and
    // non-finite shares count as 0.
    double AnnualFee(const TLibAllocYear& year, double total) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

class TPortAllocList {
public:
    int Count() const { return static_cast<int>(items_.size()); }
    // Both raise EListError for a position outside the list.
    TPortAllocation* Get(int index) const;
    void Put(int index, std::unique_ptr<TPortAllocation> item);
    TPortAllocation* Add(std::unique_ptr<TPortAllocation> item);
    void Delete(int index);
    void Clear() { items_.clear(); }
    // First allocation with that ID, or -1 / null.
    int IndexOfID(std::int32_t id) const;
    TPortAllocation* FindByID(std::int32_t id) const;

private:
    std::vector<std::unique_ptr<TPortAllocation>> items_;
};

} // namespace kv
