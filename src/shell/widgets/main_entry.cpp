#include "shell/widgets/main_entry.h"
namespace fm {
int Main(int, char **) { return 0; }
}
