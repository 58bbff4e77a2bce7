#include "shell/kernels.h"

namespace shell_plain {
#include "shell/kernels_body.h"
}
