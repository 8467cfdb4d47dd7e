// The operations several families come in two of: a sum or a difference, the largest
// or the smallest. One name each, so that a family template takes the same parameter
// everywhere.
#pragma once

namespace zivks {

enum class AddSub { kAdd, kSub };

enum class MaxMin { kMax, kMin };

}  // namespace zivks
