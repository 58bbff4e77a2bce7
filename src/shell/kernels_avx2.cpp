#include "shell/kernels.h"

namespace zelvo {

namespace shell_avx2 {
#include "shell/kernels_body.h"
}

}  // namespace zelvo
