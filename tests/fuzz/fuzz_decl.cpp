// Hostile text as the value lists' one-line forms and as model-file numbers.
// Checks what must hold for any text: the list built in one pass equals the
// one built pair by pair with PutVal, it is ordered by index, its own text
// reads back to the same list, and every number read writes back to itself.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "decl/KvValueLists.h"
#include "decl/KvModelFormat.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

bool SameDouble(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <class F>
void Pieces(std::string_view text, char listSep, char pairSep, F onPair) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(listSep, start);
        if (end == std::string_view::npos) end = text.size();
        const std::string_view piece = text.substr(start, end - start);
        const std::size_t sep = piece.find(pairSep);
        if (sep != std::string_view::npos) onPair(piece.substr(0, sep), piece.substr(sep + 1));
        start = end + 1;
    }
}

template <class L>
void CheckOrdered(const L& list) {
    for (int i = 1; i < list.Count(); ++i) Check(list.Items(i - 1).Ind < list.Items(i).Ind);
    if (list.Count() > 0) {
        Check(list.FirstInd() == list.Items(0).Ind);
        Check(list.LastInd() == list.Items(list.Count() - 1).Ind);
        const std::int32_t mid = list.Items(list.Count() / 2).Ind;
        Check(list.IndOfNearest(mid) == mid);
        Check(list.ValueExists(mid));
    }
}

void DoubleList(std::string_view text) {
    kv::TIndDblList list;
    list.SetAsString(text);
    CheckOrdered(list);

    kv::TIndDblList byPut;
    Pieces(text, ',', ':', [&](std::string_view ind, std::string_view val) {
        std::int32_t i;
        if (kv::TryModelTextToInt(ind, i)) byPut.PutVal(i, kv::ModelTextToFloatDef(val, 0));
    });
    Check(byPut.Count() == list.Count());
    for (int i = 0; i < list.Count(); ++i) {
        Check(byPut.Items(i).Ind == list.Items(i).Ind);
        Check(SameDouble(byPut.Items(i).Val, list.Items(i).Val));
    }

    const std::string written = list.GetAsString();
    kv::TIndDblList again;
    again.SetAsString(written);
    Check(again.GetAsString() == written);

    volatile double sink = list.Total() + list.HasNonZiroValues() + list.IndOfMin() + list.IndOfMax();
    (void)sink;
    kv::TIndDblList sorted;
    sorted.Assign(&list);
    sorted.SortByValue();
    for (int i = 1; i < sorted.Count(); ++i) {
        const double a = sorted.Items(i - 1).Val, b = sorted.Items(i).Val;
        Check(std::isnan(b) || (!std::isnan(a) && a >= b));
    }
    sorted.ValsIfPlus();
    for (int i = 0; i < sorted.Count(); ++i) Check(sorted.Items(i).Val >= 0);
}

void TextList(std::string_view text) {
    kv::TIndStrList list;
    list.SetAsString(text);
    CheckOrdered(list);

    kv::TIndStrList byPut;
    Pieces(text, '|', '^', [&](std::string_view ind, std::string_view val) {
        std::int32_t i;
        if (kv::TryModelTextToInt(ind, i)) byPut.PutVal(i, std::string(val));
    });
    Check(byPut.GetAsString() == list.GetAsString());

    const std::string written = list.GetAsString();
    kv::TIndStrList again;
    again.SetAsString(written);
    Check(again.GetAsString() == written);
}

void Numbers(std::string_view text) {
    double d = 0;
    if (kv::TryModelTextToFloat(text, d)) {
        double back = 0;
        Check(kv::TryModelTextToFloat(kv::FloatToModelText(d), back));
        Check(SameDouble(d, back));
    }
    std::int32_t i = 0;
    if (kv::TryModelTextToInt(text, i)) {
        std::int32_t back = 0;
        Check(kv::TryModelTextToInt(kv::IntToModelText(i), back) && back == i);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    DoubleList(text);
    TextList(text);
    Numbers(text);
    return 0;
}
