#include "KvRptComment.h"

#include "KvErrors.h"

namespace kv {

TRptComments DecodeRptComments(std::string_view value) {
    TRptComments out;
    if (value.empty()) return out;
    std::size_t start = 0;
    for (;;) {
        const auto end = value.find(';', start);
        out.push_back({std::string(value.substr(start, end == std::string_view::npos ? value.npos : end - start))});
        if (end == std::string_view::npos) return out;
        start = end + 1;
    }
}

std::string EncodeRptComments(const TRptComments& comments) {
    std::string out;
    for (std::size_t i = 0; i < comments.size(); ++i) {
        const std::string& text = comments[i].Text;
        if (text.find_first_of(";\r\n") != std::string::npos)
            throw EKvError("A report comment cannot hold \";\" or a line end: \"" + text + "\"");
        if (i) out += ';';
        out += text;
    }
    return out;
}

} // namespace kv
