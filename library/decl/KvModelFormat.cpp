#include "decl/KvModelFormat.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace kv {

std::string FloatToModelText(double Value) {
    // to_chars would write "-nan" for a NaN with its sign bit set; one spelling is enough.
    if (std::isnan(Value)) return "nan";
    char Buf[32]; // the longest shortest form is 24 characters
    auto Res = std::to_chars(Buf, Buf + sizeof Buf, Value);
    return std::string(Buf, Res.ptr);
}

std::string IntToModelText(int32_t Value) {
    char Buf[16];
    auto Res = std::to_chars(Buf, Buf + sizeof Buf, Value);
    return std::string(Buf, Res.ptr);
}

bool TryModelTextToFloat(std::string_view Text, double& Value) {
    const char* First = Text.data();
    const char* Last = First + Text.size();
    double Parsed = 0;
    auto Res = std::from_chars(First, Last, Parsed, std::chars_format::general);
    if (Res.ec != std::errc() || Res.ptr != Last) return false;
    Value = Parsed;
    return true;
}

bool TryModelTextToInt(std::string_view Text, int32_t& Value) {
    const char* First = Text.data();
    const char* Last = First + Text.size();
    int32_t Parsed = 0;
    auto Res = std::from_chars(First, Last, Parsed, 10);
    if (Res.ec != std::errc() || Res.ptr != Last) return false;
    Value = Parsed;
    return true;
}

double ModelTextToFloatDef(std::string_view Text, double Default) {
    double Value = Default;
    TryModelTextToFloat(Text, Value);
    return Value;
}

int32_t ModelTextToIntDef(std::string_view Text, int32_t Default) {
    int32_t Value = Default;
    TryModelTextToInt(Text, Value);
    return Value;
}

} // namespace kv
