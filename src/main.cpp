#include "shell/widgets/main_entry.h"

int main(int argc, char **argv) { return fm::Main(argc, argv); }
