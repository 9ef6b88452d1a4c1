// Small value lists shared by the item classes: plain integer and float lists,
// and the year-indexed float and text lists that items keep in their special
// properties as one line of text.
//
// Positions are 0-based ints; a bad position raises EListError naming it.
// An object beside a value is a plain reference (void*) that the list never
// frees; the caller keeps it alive.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kv {

class TIntrList {
public:
    int Count() const { return static_cast<int>(FItems.size()); }
    int32_t Get(int Pos) const;
    void Put(int Pos, int32_t Value);
    int Add(int32_t Value);
    void Delete(int Pos);
    void Clear() { FItems.clear(); }

    int IndexOf(int32_t Value) const;
    int AddIfUnique(int32_t Value);
    int IndexOfMin() const;

private:
    std::vector<int32_t> FItems;
};

// Kept in insertion order.
class TDoubleList {
public:
    int Count() const { return static_cast<int>(FItems.size()); }
    double Get(int Pos) const;
    void Put(int Pos, double Value);
    void* GetObject(int Pos) const;
    void PutObject(int Pos, void* Obj);
    int Add(double Value);
    int AddObject(double Value, void* Obj);
    void Delete(int Pos);
    void Clear() { FItems.clear(); }

    // Exact equality, so a NaN is never found.
    int IndexOf(double Value) const;
    int IndexOfObject(const void* Obj) const;
    int IndexOfMin() const;
    // A null Other leaves the list empty.
    void Assign(const TDoubleList* Other);
    // Largest first; NaNs last; equal values keep their order.
    void SortByValue();

private:
    struct TEntry {
        double Val;
        void* Obj;
    };
    std::vector<TEntry> FItems;
};

template <class T>
struct TIndEntry {
    int32_t Ind = 0;
    T Val{};
    void* Obj = nullptr;
};
using TIndDbl = TIndEntry<double>;
using TIndStr = TIndEntry<std::string>;

// Entries sorted by index ascending, one per index, each owned by the list.
// Entries live on the heap so that a pointer or reference from Find, FindOrAdd
// or Items stays valid while other entries come and go; it dies with its own
// entry (Delete, DelInd, Clear, Assign, SetAsString).
template <class T>
class TIndListBase {
public:
    using TEntry = TIndEntry<T>;

    int Count() const { return static_cast<int>(FItems.size()); }
    TEntry& Items(int Pos);
    const TEntry& Items(int Pos) const;

    // Lowest position whose index is not smaller than Ind; true when that
    // entry has Ind.
    bool Search(int32_t Ind, int& Pos) const;

    TEntry& FindOrAdd(int32_t Ind);
    TEntry* Find(int32_t Ind);
    const TEntry* Find(int32_t Ind) const;
    // Pos is the entry's position, -1 when absent.
    TEntry* Find(int32_t Ind, int& Pos);
    const TEntry* Find(int32_t Ind, int& Pos) const;
    bool ValueExists(int32_t Ind) const;

    // The default value (0 or empty text) when absent.
    T GetVal(int32_t Ind) const;
    void PutVal(int32_t Ind, T Val);
    // Both raise EListError naming the insertion position when Ind is absent.
    void* GetObject(int32_t Ind) const;
    void PutObject(int32_t Ind, void* Obj);

    void Delete(int Pos);
    void DelInd(int32_t Ind);
    void Clear() { FItems.clear(); }

    // -1 when empty.
    int32_t FirstInd() const;
    int32_t LastInd() const;
    // Largest index not above Ind, -1 when none.
    int32_t IndOfNearest(int32_t Ind) const;

protected:
    TIndListBase() = default;
    TIndListBase(const TIndListBase& Other) { AssignFrom(&Other); }
    TIndListBase& operator=(const TIndListBase& Other) {
        AssignFrom(&Other);
        return *this;
    }
    TIndListBase(TIndListBase&&) noexcept = default;
    TIndListBase& operator=(TIndListBase&&) noexcept = default;
    ~TIndListBase() = default;

    void AssignFrom(const TIndListBase* Other);
    // Same result as PutVal of each pair in turn on an empty list, in
    // n log n, so that a long descending text cannot take quadratic time.
    void BuildFrom(std::vector<std::pair<int32_t, T>>&& Pairs);

    std::vector<std::unique_ptr<TEntry>> FItems;

private:
    bool SearchBelow(int32_t Ind, int End, int& Pos) const;
};

class TIndDblList : public TIndListBase<double> {
public:
    // Copies index, value and object of every entry; null Other empties the list.
    void Assign(const TIndDblList* Other) { AssignFrom(Other); }
    // Adds Sign * value of each entry of Other to the value of the same index.
    void AddVals(const TIndDblList* Other, int Sign);

    double Total() const;
    // Whether some value is non-zero ("NonZiro" is the library's own spelling).
    // Values within [-1, 1] count as zero: a tolerance of one currency unit.
    bool HasNonZiroValues() const;
    bool HasNonZiroValuesFromIndex(int32_t Ind) const;

    // Positions; the first of equal values wins, -1 when empty.
    int IndexOfMin() const;
    int IndexOfMax() const;
    // Indexes of the same entries, -1 when empty.
    int32_t IndOfMin() const;
    int32_t IndOfMax() const;

    // Negative values and NaNs become 0.
    void ValsIfPlus();
    // Largest first, NaNs last, equal values keep their order. The list is no
    // longer ordered by index afterwards; sort only working copies.
    void SortByValue();

    // "2024:1500,2025:250.5"
    std::string GetAsString() const;
    // Pieces without ":" or with an unreadable index are skipped; an
    // unreadable value reads as 0; a repeated index keeps the last value.
    void SetAsString(std::string_view Text);
};

class TIndStrList : public TIndListBase<std::string> {
public:
    void Assign(const TIndStrList* Other) { AssignFrom(Other); }
    // Appends the text of each entry of Other to the text of the same index.
    void AddVals(const TIndStrList* Other);

    // "2024^text|2025^more". Not escaped: a "|" in a text splits it on reading.
    std::string GetAsString() const;
    // The text is everything after the first "^" of a piece.
    void SetAsString(std::string_view Text);
};

} // namespace kv
