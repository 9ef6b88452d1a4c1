#include "decl/KvValueLists.h"

#include "KvErrors.h"
#include "decl/KvModelFormat.h"

#include <algorithm>
#include <cmath>

namespace kv {

namespace {

template <class V>
void CheckPos(const V& Items, int Pos) {
    if (Pos < 0 || static_cast<size_t>(Pos) >= Items.size()) throw EListError(Pos);
}

// The old comparison (sign of b - a, NaN counted as "greater") is not a strict
// weak ordering once a NaN or two equal infinities meet, and std::sort may then
// run past the range. This order agrees with it on every pair of numbers and
// sends NaNs to the end.
bool SortsBefore(double A, double B) {
    if (std::isnan(B)) return !std::isnan(A);
    if (std::isnan(A)) return false;
    return A > B;
}

// Calls OnPair(index text, value text) for each piece that has PairSep; the
// value text is everything after the first PairSep.
template <class F>
void ForEachPair(std::string_view Text, char ListSep, char PairSep, F OnPair) {
    size_t Start = 0;
    while (Start <= Text.size()) {
        size_t End = Text.find(ListSep, Start);
        if (End == std::string_view::npos) End = Text.size();
        std::string_view Piece = Text.substr(Start, End - Start);
        size_t Sep = Piece.find(PairSep);
        if (Sep != std::string_view::npos) OnPair(Piece.substr(0, Sep), Piece.substr(Sep + 1));
        Start = End + 1;
    }
}

// At most the number of pieces that hold the pair separator.
size_t PairCount(std::string_view Text, char ListSep, char PairSep) {
    size_t N = 0;
    ForEachPair(Text, ListSep, PairSep, [&](std::string_view, std::string_view) { ++N; });
    return N;
}

} // namespace

// ---- TIntrList ----

int32_t TIntrList::Get(int Pos) const {
    CheckPos(FItems, Pos);
    return FItems[Pos];
}

void TIntrList::Put(int Pos, int32_t Value) {
    CheckPos(FItems, Pos);
    FItems[Pos] = Value;
}

int TIntrList::Add(int32_t Value) {
    FItems.push_back(Value);
    return Count() - 1;
}

void TIntrList::Delete(int Pos) {
    CheckPos(FItems, Pos);
    FItems.erase(FItems.begin() + Pos);
}

int TIntrList::IndexOf(int32_t Value) const {
    auto It = std::find(FItems.begin(), FItems.end(), Value);
    return It == FItems.end() ? -1 : static_cast<int>(It - FItems.begin());
}

int TIntrList::AddIfUnique(int32_t Value) {
    int Pos = IndexOf(Value);
    return Pos >= 0 ? Pos : Add(Value);
}

int TIntrList::IndexOfMin() const {
    int Best = -1;
    for (int I = 0; I < Count(); ++I)
        if (Best < 0 || FItems[I] < FItems[Best]) Best = I;
    return Best;
}

// ---- TDoubleList ----

double TDoubleList::Get(int Pos) const {
    CheckPos(FItems, Pos);
    return FItems[Pos].Val;
}

void TDoubleList::Put(int Pos, double Value) {
    CheckPos(FItems, Pos);
    FItems[Pos].Val = Value;
}

void* TDoubleList::GetObject(int Pos) const {
    CheckPos(FItems, Pos);
    return FItems[Pos].Obj;
}

void TDoubleList::PutObject(int Pos, void* Obj) {
    CheckPos(FItems, Pos);
    FItems[Pos].Obj = Obj;
}

int TDoubleList::Add(double Value) { return AddObject(Value, nullptr); }

int TDoubleList::AddObject(double Value, void* Obj) {
    FItems.push_back({Value, Obj});
    return Count() - 1;
}

void TDoubleList::Delete(int Pos) {
    CheckPos(FItems, Pos);
    FItems.erase(FItems.begin() + Pos);
}

int TDoubleList::IndexOf(double Value) const {
    for (int I = 0; I < Count(); ++I)
        if (FItems[I].Val == Value) return I;
    return -1;
}

int TDoubleList::IndexOfObject(const void* Obj) const {
    for (int I = 0; I < Count(); ++I)
        if (FItems[I].Obj == Obj) return I;
    return -1;
}

int TDoubleList::IndexOfMin() const {
    int Best = -1;
    for (int I = 0; I < Count(); ++I)
        if (Best < 0 || FItems[I].Val < FItems[Best].Val) Best = I;
    return Best;
}

void TDoubleList::Assign(const TDoubleList* Other) {
    if (Other == this) return;
    if (Other)
        FItems = Other->FItems;
    else
        FItems.clear();
}

void TDoubleList::SortByValue() {
    std::stable_sort(FItems.begin(), FItems.end(),
                     [](const TEntry& A, const TEntry& B) { return SortsBefore(A.Val, B.Val); });
}

// ---- TIndListBase ----

template <class T>
typename TIndListBase<T>::TEntry& TIndListBase<T>::Items(int Pos) {
    CheckPos(FItems, Pos);
    return *FItems[Pos];
}

template <class T>
const typename TIndListBase<T>::TEntry& TIndListBase<T>::Items(int Pos) const {
    CheckPos(FItems, Pos);
    return *FItems[Pos];
}

template <class T>
bool TIndListBase<T>::SearchBelow(int32_t Ind, int End, int& Pos) const {
    int Lo = 0;
    int Hi = End;
    while (Lo < Hi) {
        int Mid = Lo + (Hi - Lo) / 2;
        if (FItems[Mid]->Ind < Ind)
            Lo = Mid + 1;
        else
            Hi = Mid;
    }
    Pos = Lo;
    return Lo < End && FItems[Lo]->Ind == Ind;
}

template <class T>
bool TIndListBase<T>::Search(int32_t Ind, int& Pos) const {
    return SearchBelow(Ind, Count(), Pos);
}

template <class T>
typename TIndListBase<T>::TEntry& TIndListBase<T>::FindOrAdd(int32_t Ind) {
    // Years usually arrive in order, so try the end before searching.
    int N = Count();
    if (N == 0 || FItems[N - 1]->Ind < Ind) {
        FItems.push_back(std::make_unique<TEntry>());
        FItems.back()->Ind = Ind;
        return *FItems.back();
    }
    if (FItems[N - 1]->Ind == Ind) return *FItems[N - 1];
    int Pos;
    if (SearchBelow(Ind, N - 1, Pos)) return *FItems[Pos];
    auto It = FItems.insert(FItems.begin() + Pos, std::make_unique<TEntry>());
    (*It)->Ind = Ind;
    return **It;
}

template <class T>
typename TIndListBase<T>::TEntry* TIndListBase<T>::Find(int32_t Ind, int& Pos) {
    if (!Search(Ind, Pos)) {
        Pos = -1;
        return nullptr;
    }
    return FItems[Pos].get();
}

template <class T>
const typename TIndListBase<T>::TEntry* TIndListBase<T>::Find(int32_t Ind, int& Pos) const {
    return const_cast<TIndListBase*>(this)->Find(Ind, Pos);
}

template <class T>
typename TIndListBase<T>::TEntry* TIndListBase<T>::Find(int32_t Ind) {
    int Pos;
    return Find(Ind, Pos);
}

template <class T>
const typename TIndListBase<T>::TEntry* TIndListBase<T>::Find(int32_t Ind) const {
    int Pos;
    return Find(Ind, Pos);
}

template <class T>
bool TIndListBase<T>::ValueExists(int32_t Ind) const {
    return Find(Ind) != nullptr;
}

template <class T>
T TIndListBase<T>::GetVal(int32_t Ind) const {
    const TEntry* E = Find(Ind);
    return E ? E->Val : T{};
}

template <class T>
void TIndListBase<T>::PutVal(int32_t Ind, T Val) {
    FindOrAdd(Ind).Val = std::move(Val);
}

template <class T>
void* TIndListBase<T>::GetObject(int32_t Ind) const {
    int Pos;
    if (!Search(Ind, Pos)) throw EListError(Pos);
    return FItems[Pos]->Obj;
}

template <class T>
void TIndListBase<T>::PutObject(int32_t Ind, void* Obj) {
    int Pos;
    if (!Search(Ind, Pos)) throw EListError(Pos);
    FItems[Pos]->Obj = Obj;
}

template <class T>
void TIndListBase<T>::Delete(int Pos) {
    CheckPos(FItems, Pos);
    FItems.erase(FItems.begin() + Pos);
}

template <class T>
void TIndListBase<T>::DelInd(int32_t Ind) {
    int Pos;
    if (Search(Ind, Pos)) FItems.erase(FItems.begin() + Pos);
}

template <class T>
int32_t TIndListBase<T>::FirstInd() const {
    return FItems.empty() ? -1 : FItems.front()->Ind;
}

template <class T>
int32_t TIndListBase<T>::LastInd() const {
    return FItems.empty() ? -1 : FItems.back()->Ind;
}

template <class T>
int32_t TIndListBase<T>::IndOfNearest(int32_t Ind) const {
    int Pos;
    if (Search(Ind, Pos)) return Ind;
    return Pos > 0 ? FItems[Pos - 1]->Ind : -1;
}

template <class T>
void TIndListBase<T>::AssignFrom(const TIndListBase* Other) {
    if (Other == this) return;
    FItems.clear();
    if (!Other) return;
    FItems.reserve(Other->FItems.size());
    for (const auto& E : Other->FItems) FItems.push_back(std::make_unique<TEntry>(*E));
}

template <class T>
void TIndListBase<T>::BuildFrom(std::vector<std::pair<int32_t, T>>&& Pairs) {
    FItems.clear();
    std::stable_sort(Pairs.begin(), Pairs.end(), [](const auto& A, const auto& B) { return A.first < B.first; });
    FItems.reserve(Pairs.size());
    for (size_t I = 0; I < Pairs.size(); ++I) {
        // Of equal indexes, stability puts the one read last at the end of its run.
        if (I + 1 < Pairs.size() && Pairs[I + 1].first == Pairs[I].first) continue;
        auto E = std::make_unique<TEntry>();
        E->Ind = Pairs[I].first;
        E->Val = std::move(Pairs[I].second);
        FItems.push_back(std::move(E));
    }
}

template class TIndListBase<double>;
template class TIndListBase<std::string>;

// ---- TIndDblList ----

void TIndDblList::AddVals(const TIndDblList* Other, int Sign) {
    if (!Other) return;
    if (Other == this) {
        for (auto& E : FItems) E->Val += Sign * E->Val;
        return;
    }
    for (const auto& E : Other->FItems) FindOrAdd(E->Ind).Val += Sign * E->Val;
}

double TIndDblList::Total() const {
    double Sum = 0;
    for (const auto& E : FItems) Sum += E->Val;
    return Sum;
}

bool TIndDblList::HasNonZiroValues() const {
    return std::any_of(FItems.begin(), FItems.end(), [](const auto& E) { return std::fabs(E->Val) > 1; });
}

bool TIndDblList::HasNonZiroValuesFromIndex(int32_t Ind) const {
    // A scan rather than a search: it stays right on a list sorted by value.
    return std::any_of(FItems.begin(), FItems.end(),
                       [Ind](const auto& E) { return E->Ind >= Ind && std::fabs(E->Val) > 1; });
}

int TIndDblList::IndexOfMin() const {
    int Best = -1;
    for (int I = 0; I < Count(); ++I)
        if (Best < 0 || FItems[I]->Val < FItems[Best]->Val) Best = I;
    return Best;
}

int TIndDblList::IndexOfMax() const {
    int Best = -1;
    for (int I = 0; I < Count(); ++I)
        if (Best < 0 || FItems[I]->Val > FItems[Best]->Val) Best = I;
    return Best;
}

int32_t TIndDblList::IndOfMin() const {
    int Pos = IndexOfMin();
    return Pos < 0 ? -1 : FItems[Pos]->Ind;
}

int32_t TIndDblList::IndOfMax() const {
    int Pos = IndexOfMax();
    return Pos < 0 ? -1 : FItems[Pos]->Ind;
}

void TIndDblList::ValsIfPlus() {
    for (auto& E : FItems)
        if (!(E->Val >= 0)) E->Val = 0;
}

void TIndDblList::SortByValue() {
    std::stable_sort(FItems.begin(), FItems.end(),
                     [](const auto& A, const auto& B) { return SortsBefore(A->Val, B->Val); });
}

std::string TIndDblList::GetAsString() const {
    std::string Text;
    for (const auto& E : FItems) {
        if (!Text.empty()) Text += ',';
        Text += IntToModelText(E->Ind);
        Text += ':';
        Text += FloatToModelText(E->Val);
    }
    return Text;
}

void TIndDblList::SetAsString(std::string_view Text) {
    // Sized once: grown by doubling, the pairs of a text of empty pairs would
    // take many times the text's own size.
    std::vector<std::pair<int32_t, double>> Pairs;
    Pairs.reserve(PairCount(Text, ',', ':'));
    ForEachPair(Text, ',', ':', [&](std::string_view IndText, std::string_view ValText) {
        int32_t Ind;
        if (TryModelTextToInt(IndText, Ind)) Pairs.emplace_back(Ind, ModelTextToFloatDef(ValText, 0));
    });
    BuildFrom(std::move(Pairs));
}

// ---- TIndStrList ----

void TIndStrList::AddVals(const TIndStrList* Other) {
    if (!Other) return;
    if (Other == this) {
        for (auto& E : FItems) E->Val += std::string(E->Val);
        return;
    }
    for (const auto& E : Other->FItems) FindOrAdd(E->Ind).Val += E->Val;
}

std::string TIndStrList::GetAsString() const {
    std::string Text;
    for (int I = 0; I < Count(); ++I) {
        if (I > 0) Text += '|';
        Text += IntToModelText(FItems[I]->Ind);
        Text += '^';
        Text += FItems[I]->Val;
    }
    return Text;
}

void TIndStrList::SetAsString(std::string_view Text) {
    std::vector<std::pair<int32_t, std::string>> Pairs;
    Pairs.reserve(PairCount(Text, '|', '^'));
    ForEachPair(Text, '|', '^', [&](std::string_view IndText, std::string_view ValText) {
        int32_t Ind;
        if (TryModelTextToInt(IndText, Ind)) Pairs.emplace_back(Ind, std::string(ValText));
    });
    BuildFrom(std::move(Pairs));
}

} // namespace kv
