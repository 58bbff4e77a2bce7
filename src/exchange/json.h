// The JSON values in which results travel: objects keep the order in which keys were entered.
#pragma once
#include <nlohmann/json_fwd.hpp>

namespace zelvo {

using Json = nlohmann::ordered_json;

}  // namespace zelvo
