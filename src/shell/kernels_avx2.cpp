#include "shell/kernels.h"

namespace shell_avx2 {
#include "shell/kernels_body.h"
}
