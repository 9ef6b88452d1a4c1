// Report comments: what an adviser wrote to go with a solution's reports. A
// model keeps them in its setting "RptComments", separated by ";" as every
// setting of several parts is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct TRptComment {
    std::string Text;
    bool operator==(const TRptComment&) const = default;
};

using TRptComments = std::vector<TRptComment>;

// The comments of a setting value, in order. An empty value holds none; an
// empty part is a comment left empty, kept so the others keep their places.
TRptComments DecodeRptComments(std::string_view value);
// The setting value of the comments. A text that holds ";" or a line end
// cannot be kept in this form and raises EKvError.
std::string EncodeRptComments(const TRptComments& comments);

} // namespace kv
