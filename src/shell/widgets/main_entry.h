#pragma once
namespace fm {
// The process's entry: start-up, the event loop, and the way out.
int Main(int argc, char **argv);
}
