#include "shell/kernels.h"

namespace zelvo {

namespace shell_plain {
#include "shell/kernels_body.h"
}

}  // namespace zelvo
